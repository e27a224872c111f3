// SPDX-License-Identifier: MIT
// Random sequences of every operation, on a disk that answers late and on which files come and go,
// against what holds whatever happens.
#include "library/playback/transport_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace halvane;
using namespace halvane::test;

namespace {

class Walk : TransportFixture {
  public:
    explicit Walk(unsigned seed)
        : TransportFixture(seed)
        , m_choices(seed + 1) {
        engine.formatOf[path('d')] = 96;
        QObject::connect(&transport, &Transport::playStarted, [this](const QString& started) {
            EXPECT_EQ(started, engine.file) << "counted without being opened";
        });
        QObject::connect(&transport, &Transport::isPlayingChanged, [this] { ++m_playingChanges; });
        append("abcdefga"); // one file twice
    }

    void step() {
        const int playingChanges = m_playingChanges;
        const bool wasPlaying = transport.isPlaying();
        act();
        if (testing::Test::HasFatalFailure())
            return;
        if (wasPlaying == transport.isPlaying()) {
            EXPECT_EQ(m_playingChanges, playingChanges) << "flickers";
        }
        check();
        if (m_choices() % 2 == 0) {
            settle();
            check();
        }
    }

  private:
    void act() {
        switch (m_choices() % 13) {
        case 0:
        case 1:
        case 2:
            if (engine.playing)
                engine.reachEnd();
            break;
        case 3:
        case 4:
            transport.playNext(m_choices() % 4 != 0);
            break;
        case 5:
            transport.playPrevious();
            break;
        case 6:
            transport.togglePlayback();
            break;
        case 7:
            transport.playItem(queue.idAt(anyRow()), m_choices() % 3 != 0);
            break;
        case 8:
            m_choices() % 2 == 0 ? transport.toggleShuffle() : transport.advanceRepeatMode();
            break;
        case 9:
            if (m_choices() % 5 == 0)
                engine.scheduleFailure = QStringLiteral("refused");
            transport.seek(0.5);
            engine.scheduleFailure.reset(); // nothing was loaded
            break;
        case 10:
            queue.move(queue.idAt(anyRow()), queue.idAt(anyRow()));
            transport.replanSuccessor();
            break;
        case 11:
            changeWorld();
            break;
        default:
            changeQueue();
        }
    }
    std::size_t anyRow() { return m_choices() % queue.size(); }
    void append(const char* letters) {
        TrackRows rows;
        for (const char* letter = letters; *letter; ++letter)
            rows.push_back(makeRow(trackAt(path(*letter))));
        queue.append(rows);
    }
    /// A file comes, goes or is evicted; or a look at the disk finds out what is there.
    void changeWorld() {
        const QString file = path(static_cast<char>('a' + m_choices() % 7));
        QSet<QString>& set = m_choices() % 2 == 0 ? engine.evicted : engine.broken;
        if (!set.remove(file) && m_choices() % 2 == 0)
            set.insert(file);
        if (m_choices() % 3 == 0) {
            files.missing = engine.broken - engine.evicted;
            files.inCloud = engine.evicted;
        }
    }
    void changeQueue() {
        if (queue.size() <= 3)
            return append("bdfg");
        const QString file = queue.record(anyRow()).path();
        if (queue.currentPath() == file)
            transport.stopPlayer(true);
        queue.remove({file});
        transport.replanSuccessor();
    }

    void check() {
        int marked = 0;
        for (std::size_t i = 0; i < queue.size(); ++i)
            marked += queue.item(i).isPlaying ? 1 : 0;
        ASSERT_LE(marked, 1);
        // The current entry is what the engine has or is asked for, and nothing else sounds.
        const QString engaged = engine.hasFile() ? engine.file : engine.opening;
        ASSERT_EQ(transport.hasLoadedFile(), !engaged.isEmpty());
        if (!engaged.isEmpty()) {
            ASSERT_EQ(engaged, queue.currentPath());
        }
        // The engine plays when the transport says so, or will; and the clock beats only then.
        ASSERT_EQ(engine.playing || (transport.isPlaying() && !engine.opening.isEmpty()),
                  transport.isPlaying());
        ASSERT_EQ(progress.isRunning(), transport.isPlaying());
        // What is to follow is an entry, and neither shuffle nor repeating leads elsewhere.
        if (!engine.pending.isEmpty()) {
            ASSERT_TRUE(queue.rowOfPath(engine.pending));
            ASSERT_FALSE(transport.isShuffleEnabled());
            ASSERT_NE(transport.repeatMode(), PlaybackRepeatMode::one);
        }
    }

    std::mt19937 m_choices;
    int m_playingChanges = 0;
};

} // namespace

TEST(TransportModel, RandomSequencesNeverSayAnythingButWhatPlays) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        Walk walk(seed);
        for (int i = 0; i < 300; ++i) {
            walk.step();
            if (testing::Test::HasFailure())
                FAIL() << "seed " << seed << ", step " << i;
        }
    }
}

/// Without failures and user's choices, a shuffle cycle plays every playable entry exactly once.
TEST(TransportModel, EveryCycleIsAPermutation) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        TransportFixture real(seed);
        real.queueOf("abcdefgh");
        real.files.missing = {real.path('c')};
        real.transport.toggleShuffle();
        real.transport.setRepeatMode(PlaybackRepeatMode::all);
        real.transport.playNext(false);
        char last = '-';
        for (int cycle = 0; cycle < 5; ++cycle) {
            std::string order;
            for (int i = 0; i < 7; ++i) {
                order += real.current();
                real.transport.playNext(false);
            }
            ASSERT_NE(order.front(), last);
            last = order.back();
            std::sort(order.begin(), order.end());
            ASSERT_EQ(order, "abdefgh");
        }
    }
}
