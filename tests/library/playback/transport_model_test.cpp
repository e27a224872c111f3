// SPDX-License-Identifier: MIT
// Compares random sequences of operations with a reference that states the rules in their plainest
// form, and checks invariants that always hold.
#include "library/playback/transport_reference.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace halvane;
using namespace halvane::test;

namespace {

class Walk {
  public:
    explicit Walk(unsigned seed)
        : m_real(seed)
        , m_reference(m_real.engine, m_real.files, seed)
        , m_choices(seed + 1) {
        m_real.engine.formatOf[m_real.path('d')] = 96;
        append("abcdefga"); // one file twice
    }

    void step() {
        const unsigned operation = m_choices() % 20;
        Transport& transport = m_real.transport;
        switch (operation) {
        case 0:
        case 1:
        case 2:
        case 3:
            if (m_real.engine.playing)
                endTrack();
            break;
        case 4:
        case 5: {
            const bool manual = m_choices() % 4 != 0;
            m_reference.next(manual);
            transport.playNext(manual);
            break;
        }
        case 6:
            m_reference.previous();
            transport.playPrevious();
            break;
        case 7:
        case 8:
            m_reference.toggle();
            transport.togglePlayback();
            break;
        case 9:
        case 10:
            if (!m_reference.entries.empty()) {
                const std::size_t row = anyRow();
                const bool user = m_choices() % 3 != 0;
                m_reference.playItem(row, user);
                transport.playItem(m_reference.entries[row].id, user);
            }
            break;
        case 11:
            m_reference.toggleShuffle();
            transport.toggleShuffle();
            break;
        case 12:
            m_reference.advanceRepeat();
            transport.advanceRepeatMode();
            break;
        case 13:
            seek();
            break;
        case 14:
        case 15:
            if (!m_reference.entries.empty())
                move(anyRow(), anyRow());
            break;
        case 16:
        case 17:
        case 18:
            changeWorld();
            break;
        default:
            changeQueue();
            break;
        }
        compare();
    }

  private:
    std::size_t anyRow() { return m_choices() % m_reference.entries.size(); }
    char anyLetter() { return static_cast<char>('a' + m_choices() % 7); }

    void append(const char* letters) {
        TrackRows rows;
        for (const char* letter = letters; *letter; ++letter)
            rows.push_back(makeRow(trackAt(m_real.path(*letter))));
        for (std::size_t row = m_real.queue.append(rows); row < m_real.queue.size(); ++row)
            m_reference.entries.push_back(
                {m_real.queue.idAt(row), m_real.queue.record(row).path()});
    }
    void endTrack() {
        m_real.engine.reachEnd();
        m_reference.trackEnded();
        m_real.transport.trackEnded();
    }
    void seek() {
        const bool fails = m_choices() % 5 == 0;
        if (fails)
            m_real.engine.scheduleFailure = QStringLiteral("refused");
        m_reference.seek(fails);
        m_real.transport.seek(0.5);
        m_real.engine.scheduleFailure.reset(); // nothing was loaded
    }
    void move(std::size_t from, std::size_t to) {
        const QUuid target = m_reference.entries[to].id;
        const QUuid moved = m_reference.entries[from].id;
        m_reference.move(from, to);
        m_real.queue.move(moved, target);
        m_reference.replan();
        m_real.transport.replanSuccessor();
    }
    // A file comes, goes, breaks or is evicted, or a look at the disk finds what is there.
    void changeWorld() {
        const QString path = m_real.path(anyLetter());
        QSet<QString>* const sets[] = {&m_real.files.gone, &m_real.files.evicted,
                                       &m_real.engine.broken};
        QSet<QString>& set = *sets[m_choices() % 3];
        if (!set.remove(path) && m_choices() % 2 == 0)
            set.insert(path);
        if (m_choices() % 3 == 0) {
            m_real.files.missing = m_reference.missing = m_real.files.gone - m_real.files.evicted;
            m_real.files.inCloud = m_reference.inCloud = m_real.files.evicted;
        }
    }
    void changeQueue() {
        if (m_reference.entries.size() > 3) {
            const QString path = m_reference.entries[anyRow()].path;
            m_reference.remove(path);
            if (m_real.queue.currentPath() == path)
                m_real.transport.stopPlayer(true);
            m_real.queue.remove({path});
            m_real.transport.replanSuccessor();
        } else {
            append("bdfg");
        }
    }

    void compare() {
        const PlayQueue& queue = m_real.queue;
        ASSERT_EQ(queue.size(), m_reference.entries.size());
        int marked = 0;
        for (std::size_t i = 0; i < queue.size(); ++i) {
            ASSERT_EQ(queue.idAt(i), m_reference.entries[i].id);
            marked += queue.item(i).isPlaying ? 1 : 0;
        }
        ASSERT_EQ(queue.currentRow(), m_reference.current);
        ASSERT_EQ(m_real.engine.file, m_reference.loaded);
        ASSERT_EQ(m_real.engine.pending, m_reference.pending);
        ASSERT_EQ(m_real.transport.isPlaying(), m_reference.playing);
        ASSERT_EQ(m_real.playCounts, m_reference.counts);
        ASSERT_EQ(m_real.files.missing, m_reference.missing);
        ASSERT_EQ(m_real.files.inCloud, m_reference.inCloud);

        // At most one entry is current, and it is what the engine has loaded.
        ASSERT_LE(marked, 1);
        if (m_real.engine.hasFile()) {
            ASSERT_EQ(m_real.engine.file, queue.currentPath());
        }
        // The engine plays when the transport says so, and the clock beats only then.
        ASSERT_EQ(m_real.engine.playing, m_real.transport.isPlaying());
        ASSERT_EQ(m_real.progress.isRunning(), m_real.transport.isPlaying());
    }

    TransportFixture m_real;
    Reference m_reference;
    std::mt19937 m_choices;
};

} // namespace

TEST(TransportModel, RandomSequencesFollowTheReference) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        Walk walk(seed);
        for (int i = 0; i < 300; ++i) {
            walk.step();
            if (testing::Test::HasFatalFailure())
                FAIL() << "seed " << seed << ", step " << i;
        }
    }
}

// Without failures and user's choices, a shuffle cycle plays every playable entry exactly once.
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
