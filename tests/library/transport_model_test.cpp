// SPDX-License-Identifier: MIT
// Random sequences of every operation against a reference that states the rules in the plainest
// way, and against invariants that hold whatever happens.
#include "library/transport_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace halvane;
using namespace halvane::test;

namespace {

/// The rules, recursive and with nothing but lists.
class Reference {
  public:
    struct Entry {
        QUuid id;
        QString path;
    };

    Reference(const FakeEngine& world, const FakeFiles& disk, unsigned seed)
        : m_world(world)
        , m_disk(disk)
        , m_generator(seed) {}

    std::vector<Entry> entries;
    std::optional<std::size_t> current;
    QString loaded, pending;
    bool playing = false;
    bool shuffle = false;
    PlaybackRepeatMode repeat = PlaybackRepeatMode::off;
    QSet<QString> missing, inCloud;
    QSet<QUuid> played;
    QHash<QString, int> counts;

    bool playable(std::size_t i) const {
        return !missing.contains(entries[i].path) && !inCloud.contains(entries[i].path);
    }

    void playItem(std::size_t i, bool user) {
        if (user && current == i && !loaded.isEmpty())
            toggle();
        else
            start(i, user);
    }

    void toggle() {
        if (playing) {
            playing = false;
        } else if (loaded.isEmpty()) {
            if (current && playable(*current))
                return start(*current, true);
            for (std::size_t i = 0; i < entries.size(); ++i) {
                if (playable(i))
                    return start(i, true);
            }
        } else {
            playing = true;
            plan();
        }
    }

    void next(bool manual) {
        if (repeat == PlaybackRepeatMode::one && !manual && current && playable(*current))
            return start(*current, false);
        if (shuffle) {
            const auto choice = randomPlayable(manual);
            return choice ? start(*choice, manual) : finish();
        }
        for (std::size_t i = current ? *current + 1 : 0; i < entries.size(); ++i) {
            if (playable(i))
                return start(i, manual);
        }
        if (manual || repeat == PlaybackRepeatMode::all) {
            for (std::size_t i = 0; i < entries.size(); ++i) {
                if (playable(i) && !isCurrentFile(i))
                    return start(i, manual);
            }
        }
        finish();
    }

    void previous() {
        if (shuffle) {
            if (const auto choice = randomPlayable(true))
                start(*choice, true);
            return;
        }
        for (std::size_t i = current.value_or(0); i-- > 0;) {
            if (playable(i))
                return start(i, true);
        }
        for (std::size_t i = entries.size(); repeat == PlaybackRepeatMode::all && i-- > 0;) {
            if (playable(i) && !isCurrentFile(i))
                return start(i, true);
        }
    }

    void trackEnded() {
        if (pending.isEmpty()) {
            playing = false;
            return next(false);
        }
        loaded = std::exchange(pending, QString());
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (entries[i].path == loaded) {
                current = i;
                played.insert(entries[i].id);
                userInitiated = false;
                ++counts[loaded];
                return plan();
            }
        }
        next(false);
    }

    void seek(bool fails) {
        if (loaded.isEmpty())
            return;
        pending.clear();
        if (!fails)
            return plan();
        failed();
    }

    void toggleShuffle() {
        shuffle = !shuffle;
        played.clear();
        replan();
    }
    void advanceRepeat() {
        repeat = repeat == PlaybackRepeatMode::off   ? PlaybackRepeatMode::all
                 : repeat == PlaybackRepeatMode::all ? PlaybackRepeatMode::one
                                                     : PlaybackRepeatMode::off;
        replan();
    }
    void move(std::size_t from, std::size_t to) {
        if (from == to)
            return;
        const QUuid now = current ? entries[*current].id : QUuid();
        const Entry entry = entries[from];
        entries.erase(entries.begin() + std::ptrdiff_t(from));
        entries.insert(entries.begin() + std::ptrdiff_t(to), entry);
        find(now);
    }
    void remove(const QString& path) {
        if (current && entries[*current].path == path)
            stop();
        const QUuid now = current ? entries[*current].id : QUuid();
        std::erase_if(entries, [&](const Entry& entry) { return entry.path == path; });
        find(now);
        replan();
    }
    void replan() {
        pending.clear();
        plan();
    }

  private:
    bool isCurrentFile(std::size_t i) const {
        return current && entries[i].path == entries[*current].path;
    }
    void find(const QUuid& id) {
        current.reset();
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (entries[i].id == id)
                current = i;
        }
    }
    std::optional<std::size_t> randomPlayable(bool manual) {
        std::vector<std::size_t> all, fresh;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (playable(i)) {
                all.push_back(i);
                if (!played.contains(entries[i].id))
                    fresh.push_back(i);
            }
        }
        if (all.empty())
            return std::nullopt;
        if (!fresh.empty())
            return fresh[m_generator() % fresh.size()];
        if (repeat != PlaybackRepeatMode::all && !manual)
            return std::nullopt;
        played.clear();
        if (all.size() >= 2 && current)
            std::erase(all, *current);
        return all[m_generator() % all.size()];
    }
    void start(std::size_t i, bool user) {
        const QString path = entries[i].path;
        if (m_disk.evicted.contains(path)) {
            inCloud.insert(path);
            return user ? void() : next(false);
        }
        if (m_disk.gone.contains(path)) {
            missing.insert(path);
            return user ? void() : next(false);
        }
        missing.remove(path);
        inCloud.remove(path);
        current = i;
        played.insert(entries[i].id);
        userInitiated = user;
        loaded.clear();
        pending.clear();
        if (m_world.broken.contains(path))
            return failed();
        loaded = path;
        playing = true;
        ++counts[path];
        plan();
    }
    void failed() {
        if (current)
            (m_disk.evicted.contains(entries[*current].path) ? inCloud : missing)
                .insert(entries[*current].path);
        userInitiated ? stop() : next(false);
    }
    void finish() { stop(); }
    void stop() {
        loaded.clear();
        pending.clear();
        playing = false;
    }
    void plan() {
        if (loaded.isEmpty() || shuffle || repeat == PlaybackRepeatMode::one)
            return;
        std::optional<std::size_t> next;
        for (std::size_t i = current ? *current + 1 : 0; i < entries.size() && !next; ++i) {
            if (playable(i))
                next = i;
        }
        for (std::size_t i = 0; repeat == PlaybackRepeatMode::all && i < entries.size() && !next;
             ++i) {
            if (playable(i))
                next = i;
        }
        if (!next || next == current || !pending.isEmpty())
            return;
        const QString& path = entries[*next].path;
        if (!m_world.broken.contains(path) &&
            m_world.formatOf.value(path) == m_world.formatOf.value(loaded))
            pending = path;
    }

    const FakeEngine& m_world;
    const FakeFiles& m_disk;
    std::mt19937 m_generator;
    bool userInitiated = false;
};

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
    char anyLetter() { return char('a' + m_choices() % 7); }

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
    /// A file comes, goes, is evicted, breaks; or a look at the disk finds out what is there.
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
