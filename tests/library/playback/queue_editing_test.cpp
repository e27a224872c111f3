// SPDX-License-Identifier: MIT
// What the user does to the queue, what then plays, and taking it back.
#include "library/playback/edited_queue.h"

#include <gtest/gtest.h>

#include <array>
#include <deque>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using enum PlaybackRepeatMode;

struct Edit {
    const char* name;
    const char* before; ///< a capital plays
    void (*edit)(EditedQueue&);
    const char* after;
    char sounds;  ///< what the engine has; '-': nothing
    char follows; ///< what it was given to go on with
    void (*prepare)(EditedQueue&) = [](EditedQueue&) {};
};

class EditTest : public testing::TestWithParam<Edit> {};

TEST_P(EditTest, ChangesTheQueueAndCanBeTakenBack) {
    const Edit& edit = GetParam();
    EditedQueue real;
    const std::string before = edit.before;
    std::string letters = before;
    std::transform(letters.begin(), letters.end(), letters.begin(), ::tolower);
    real.queueOf(letters.c_str());
    for (std::size_t row = 0; row < before.size(); ++row) {
        if (std::isupper(before[row]))
            real.play(row);
    }
    edit.prepare(real);
    const bool wasPlaying = real.transport.isPlaying();
    edit.edit(real);
    real.settle();
    EXPECT_EQ(real.shown(), edit.after);
    EXPECT_EQ(real.loaded(), edit.sounds);
    EXPECT_EQ(real.pending(), edit.follows);
    EXPECT_EQ(real.transport.isPlaying(), wasPlaying && real.queue.currentRow().has_value());
    EXPECT_EQ(real.engine.playing, real.transport.isPlaying());

    // The order comes back. What plays meanwhile plays on.
    const std::string order = real.shown();
    const char sounds = real.loaded();
    real.history.undo();
    real.settle();
    std::string back = real.shown();
    std::transform(back.begin(), back.end(), back.begin(), ::tolower);
    EXPECT_EQ(back, letters);
    EXPECT_EQ(real.loaded(), sounds);
    real.history.redo();
    real.settle();
    EXPECT_EQ(real.shown(), order);
    EXPECT_EQ(real.pending(), edit.follows);
}

INSTANTIATE_TEST_SUITE_P(
    Edits, EditTest,
    testing::Values(
        Edit{"next", "aBcd", [](auto& q) { q.editing.playNext(q.paths("xy")); }, "aBxycd", 'b',
             'x'},
        Edit{"next_behind_the_last", "abC", [](auto& q) { q.editing.playNext(q.paths("x")); },
             "abCx", 'c', 'x'},
        Edit{"next_without_current", "ab", [](auto& q) { q.editing.playNext(q.paths("xy")); },
             "xyab", '-', '-'},
        Edit{"next_in_nothing", "", [](auto& q) { q.editing.playNext(q.paths("xy")); }, "xy", '-',
             '-'},
        Edit{"next_while_paused", "aBc", [](auto& q) { q.editing.playNext(q.paths("x")); }, "aBxc",
             'b', 'x', [](auto& q) { q.transport.togglePlayback(); }},
        Edit{"end", "aBc", [](auto& q) { q.editing.addToQueue(q.paths("xa")); }, "aBcxa", 'b', 'c'},
        Edit{"end_behind_the_last", "aB", [](auto& q) { q.editing.addToQueue(q.paths("x")); },
             "aBx", 'b', 'x'},
        Edit{"before_an_entry", "aBc",
             [](auto& q) { q.editing.insertBefore(q.paths("xy"), q.id(0)); }, "xyaBc", 'b', 'c'},
        Edit{"remove_what_follows", "aBcd", [](auto& q) { q.remove({2}); }, "aBd", 'b', 'd'},
        Edit{"remove_what_was", "abCd",
             [](auto& q) {
                 q.remove({0, 1});
             },
             "Cd", 'c', 'd'},
        Edit{"remove_what_plays", "aBcd", [](auto& q) { q.remove({1}); }, "aCd", 'c', 'd'},
        Edit{"remove_around_what_plays", "abCde",
             [](auto& q) {
                 q.remove({1, 2, 3});
             },
             "aE", 'e', '-'},
        Edit{"remove_what_plays_last", "abC", [](auto& q) { q.remove({2}); }, "ab", '-', '-'},
        Edit{"remove_what_plays_last_and_repeats", "abC", [](auto& q) { q.remove({2}); }, "Ab", 'a',
             'b', [](auto& q) { q.transport.chooseRepeatMode(all); }},
        Edit{"remove_what_repeats", "aBc", [](auto& q) { q.remove({1}); }, "aC", 'c', '-',
             [](auto& q) { q.transport.chooseRepeatMode(one); }},
        Edit{"remove_beside_a_missing_one", "aBcd", [](auto& q) { q.remove({1}); }, "acD", 'd', '-',
             [](auto& q) { q.files.missing = {q.path('c')}; }},
        Edit{"remove_the_only_one", "A", [](auto& q) { q.remove({0}); }, "", '-', '-'},
        Edit{"clear", "abCde", [](auto& q) { q.editing.clear(); }, "C", 'c', '-'},
        Edit{"clear_what_is_paused", "aBc", [](auto& q) { q.editing.clear(); }, "B", 'b', '-',
             [](auto& q) { q.transport.togglePlayback(); }},
        Edit{"clear_what_was_heard", "aBc", [](auto& q) { q.editing.clear(); }, "", '-', '-',
             [](auto& q) { q.transport.stopPlayer(true); }},
        Edit{"move", "aBcd",
             [](auto& q) {
                 q.editing.beginMove(q.id(3));
                 q.queue.move(q.id(3), q.id(2));
                 q.queue.move(q.id(2), q.id(0));
                 q.editing.endMove();
             },
             "daBc", 'b', 'c'}),
    [](const auto& edit) { return std::string(edit.param.name); });

TEST(QueueEditing, TakingOutWhatIsPausedWaitsAtTheNext) {
    EditedQueue real;
    real.queueOf("abc");
    real.play(0);
    real.transport.togglePlayback();
    real.remove({0});
    EXPECT_EQ(real.shown(), "Bc");
    EXPECT_FALSE(real.transport.isPlaying());
    EXPECT_EQ(real.engine.opens, 1) << "nothing is opened before it is to play";
    real.transport.togglePlayback();
    real.settle();
    EXPECT_EQ(real.loaded(), 'b');
    EXPECT_EQ(real.playCounts.value(real.path('b')), 1);
}

// The library is the queue as a rule, so that a track that is to play next is there already.
TEST(QueueEditing, AFileThatIsThereTwicePlaysWhereItWasPut) {
    for (const bool isGapless : {true, false}) {
        EditedQueue real;
        real.queueOf("abcd");
        real.play(2);
        real.editing.playNext(real.paths("a"));
        if (!isGapless)
            real.engine.invalidatePreschedule();
        real.endTrack();
        EXPECT_EQ(real.shown(), "abcAd");
        real.endTrack();
        EXPECT_EQ(real.shown(), "abcaD");
    }
}

TEST(QueueEditing, ShufflePlaysWhatWasAskedForBeforeAllElse) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        EditedQueue real(seed);
        real.queueOf("abcdefgh");
        real.transport.toggleShuffle();
        real.play(4);
        real.editing.playNext(real.paths("xy"));
        real.endTrack();
        EXPECT_EQ(real.current(), 'x');
        real.next();
        EXPECT_EQ(real.current(), 'y');
        real.endTrack();
        EXPECT_TRUE(std::string("abcdfgh").find(real.current()) != std::string::npos);
    }
}

TEST(QueueEditing, MessagesOfferUndoUntilSomethingElseIsDone) {
    EditedQueue real;
    real.queueOf("abcd");
    real.editing.removeEntry(real.id(1));
    EXPECT_EQ(real.status.text(), u"Removed \"b\" from Up Next"_s);
    EXPECT_TRUE(real.status.offersUndo());
    real.clock.advance(7s);
    EXPECT_TRUE(real.status.offersUndo());
    real.history.undo();
    EXPECT_EQ(real.status.text(), QString());
    EXPECT_FALSE(real.status.offersUndo());
    real.editing.playNext(real.paths("xyz"));
    EXPECT_EQ(real.status.text(), u"3 tracks play next"_s);
    // The pill would take back the move.
    real.editing.beginMove(real.id(0));
    real.queue.move(real.id(0), real.id(2));
    real.editing.endMove();
    EXPECT_EQ(real.status.text(), QString());
    real.editing.clear();
    real.status.show(u"Else"_s, false);
    EXPECT_FALSE(real.status.offersUndo());
    EXPECT_EQ(real.history.undoName(), L10nKey::clearQueue);
    real.clock.advance(4s);
    EXPECT_EQ(real.status.text(), QString());
}

TEST(QueueEditing, AnotherCollectionLeavesNothingToTakeBack) {
    EditedQueue real;
    real.queueOf("abcd");
    real.remove({1});
    real.history.add({L10nKey::deletePlaylist, UndoHistory::Subject::playlists, [] {}, nullptr});
    real.remove({1});
    real.history.undo();
    real.transport.playCollection(real.store.rows(), real.path('c'), u"Night Walk"_s);
    EXPECT_EQ(real.history.undoName(), L10nKey::deletePlaylist);
    EXPECT_FALSE(real.history.canRedo());
}

// The label names a collection; what the user puts together is none.
TEST(QueueEditing, AnEmptiedQueueTakesNoTracksUnderTheCollectionsName) {
    EditedQueue real;
    real.transport.playCollection(real.store.rows(), real.path('c'), u"Night Walk"_s);
    real.settle();
    real.editing.playNext(real.paths("x"));
    EXPECT_EQ(real.queue.sourceLabel(), u"Night Walk"_s);
    real.editing.clear();
    EXPECT_EQ(real.queue.sourceLabel(), u"Night Walk"_s) << "what plays is of it";
    real.editing.addToQueue(real.paths("x"));
    EXPECT_EQ(real.queue.sourceLabel(), std::nullopt);
    real.history.undo();
    EXPECT_EQ(real.queue.sourceLabel(), u"Night Walk"_s);
}

// The library changes between an edit and taking it back.
TEST(QueueEditing, OnlyWhatTheLibraryHoldsComesBackAndAsItIsNow) {
    EditedQueue real;
    real.queueOf("abcdef");
    real.remove({1, 2, 4});
    EXPECT_EQ(real.shown(), "adf");
    const TrackRows found{makeRow(trackAt(real.path('b')))};
    real.store.replace(found);
    real.store.remove({real.path('c'), real.path('d')});
    real.queue.remove({real.path('d')}); // which stood before e
    real.queue.append({real.store.track(real.path('z'))});
    real.history.undo();
    EXPECT_EQ(real.shown(), "abfze");
    EXPECT_EQ(&real.queue.record(1), found.front().get());
}

TEST(QueueEditing, TheQueueIsKeptAsAPlaylist) {
    EditedQueue real;
    real.queueOf("cabca");
    real.editing.saveAsPlaylist(u"  "_s);
    EXPECT_TRUE(real.playlists.all().empty());
    real.editing.saveAsPlaylist(u" Evening "_s);
    ASSERT_EQ(real.playlists.all().size(), 1U);
    const Playlist& playlist = real.playlists.all().front();
    EXPECT_EQ(playlist.name, u"Evening"_s);
    EXPECT_EQ(QStringList(playlist.trackPaths.cbegin(), playlist.trackPaths.cend()),
              real.paths("cab"));
}

TEST(QueueEditing, TheQueueSuggestsItsAlbumsOrItsArtistsName) {
    struct Case {
        const char* name;
        std::vector<std::array<const char*, 2>> tracks; ///< artist, album
        QString suggested;
    };
    const Case cases[]{
        {"one album", {{"Mira", "Kelp"}, {"Mira", "Kelp"}}, u"Kelp"_s},
        {"one album of several", {{"Mira", "Kelp"}, {"Nina", "Kelp"}}, u"Kelp"_s},
        {"one artist", {{"Mira", "Kelp"}, {"Mira", "Salt"}}, u"Mira"_s},
        {"one artist, no album", {{"Mira", ""}, {"Mira", ""}}, u"Mira"_s},
        {"several", {{"Mira", "Kelp"}, {"Nina", "Salt"}}, u"New Playlist"_s},
        {"no names", {{"", " "}}, u"New Playlist"_s},
        {"nothing", {}, u"New Playlist"_s},
    };
    for (const auto& [name, tracks, suggested] : cases) {
        SCOPED_TRACE(name);
        EditedQueue real;
        TrackRows rows;
        for (const auto& [artist, album] : tracks)
            rows.push_back(makeRow(trackOf(u"/m/a"_s, u"a"_s, QString::fromLatin1(artist),
                                           QString::fromLatin1(album))));
        real.queue.assign(rows, std::nullopt);
        EXPECT_EQ(real.editing.suggestedName(), suggested);
    }
}

/// The queue as a list of ids, and its former states.
struct Reference {
    std::vector<QUuid> now;
    std::deque<std::vector<QUuid>> before;
    std::vector<std::vector<QUuid>> undone;

    void edit(const std::vector<QUuid>& to) {
        before.push_back(std::exchange(now, to));
        if (before.size() > UndoHistory::mostSteps)
            before.pop_front();
        undone.clear();
    }
    void undo() {
        if (before.empty())
            return;
        undone.push_back(std::exchange(now, before.back()));
        before.pop_back();
    }
    void redo() {
        if (undone.empty())
            return;
        before.push_back(std::exchange(now, undone.back()));
        undone.pop_back();
    }
};

class Editor : EditedQueue {
  public:
    explicit Editor(unsigned seed)
        : EditedQueue(seed)
        , m_choices(seed) {
        queueOf("abcdefghijklmnopqrstuvwxyz");
        m_reference.now = ids();
    }

    void step() {
        const bool wasPlaying = transport.isPlaying();
        const QUuid current = currentId();
        act();
        settle();
        ASSERT_EQ(ids(), m_reference.now);
        // What plays is an entry of the queue, and the same one as long as it is there.
        if (!engine.file.isEmpty()) {
            ASSERT_EQ(engine.file, queue.currentPath());
        }
        if (!engine.pending.isEmpty()) {
            ASSERT_TRUE(queue.rowOfPath(engine.pending));
        }
        if (m_isEdit && queue.rowOfID(current)) {
            ASSERT_EQ(currentId(), current);
            ASSERT_EQ(transport.isPlaying(), wasPlaying);
        }
    }

  private:
    void act() {
        m_isEdit = true;
        std::vector<QUuid> to = m_reference.now;
        const std::size_t at = to.empty() ? 0 : m_choices() % to.size();
        switch (m_choices() % 12) {
        case 0:
        case 1:
            editing.playNext(some());
            return m_reference.edit(withNew(rowOfNext(queue.currentRow())));
        case 2:
            editing.addToQueue(some());
            return m_reference.edit(withNew(to.size()));
        case 3:
            if (to.empty())
                return;
            editing.insertBefore(some(), to[at]);
            return m_reference.edit(withNew(at));
        case 4:
        case 5:
        case 6: {
            QList<QUuid> leaving;
            for (const QUuid& id : to) {
                if (m_choices() % (m_choices() % 3 == 0 ? 2 : 8) == 0)
                    leaving.append(id);
            }
            if (leaving.isEmpty())
                return;
            editing.removeEntries(leaving);
            std::erase_if(to, [&](const QUuid& id) { return leaving.contains(id); });
            return m_reference.edit(to);
        }
        case 7: {
            if (m_choices() % 8 != 0)
                return;
            const std::size_t stay = transport.hasLoadedFile() ? 1 : 0;
            if (to.size() <= stay)
                return;
            const QUuid current = currentId();
            editing.clear();
            return m_reference.edit(stay ? std::vector{current} : std::vector<QUuid>());
        }
        case 8: {
            if (to.size() < 2)
                return;
            const std::size_t target = m_choices() % to.size();
            editing.beginMove(to[at]);
            queue.move(to[at], to[target]);
            editing.endMove();
            const QUuid id = to[at];
            to.erase(to.begin() + static_cast<std::ptrdiff_t>(at));
            to.insert(to.begin() + static_cast<std::ptrdiff_t>(target), id);
            return target == at ? void() : m_reference.edit(to);
        }
        case 9:
            history.undo();
            return m_reference.undo();
        case 10:
            if (m_choices() % 2 == 0) {
                history.redo();
                return m_reference.redo();
            }
            for (int i = 0; i < 5; ++i) {
                history.undo();
                m_reference.undo();
            }
            return;
        default:
            m_isEdit = false;
            play();
        }
    }
    void play() {
        switch (m_choices() % 5) {
        case 0:
            return transport.togglePlayback();
        case 1:
            return transport.playNext(true);
        case 2:
            return engine.playing ? engine.reachEnd() : void();
        case 3:
            return transport.toggleShuffle();
        default:
            if (!queue.isEmpty())
                transport.playItem(queue.idAt(m_choices() % queue.size()), true);
        }
    }
    /// A few files, and now and then very many.
    QStringList some() {
        QStringList paths;
        const unsigned count = m_choices() % 40 == 0 ? 200 : 1 + m_choices() % 3;
        for (unsigned i = 0; i < count; ++i)
            paths.append(path(static_cast<char>('a' + m_choices() % 26)));
        return paths;
    }
    /// The reference with what the queue has and it has not, in one piece at a row.
    std::vector<QUuid> withNew(std::size_t row) {
        std::vector<QUuid> to = m_reference.now;
        const QSet<QUuid> known(to.cbegin(), to.cend());
        std::vector<QUuid> added;
        for (const QUuid& id : ids()) {
            if (!known.contains(id))
                added.push_back(id);
        }
        to.insert(to.begin() + static_cast<std::ptrdiff_t>(row), added.begin(), added.end());
        return to;
    }
    [[nodiscard]] std::vector<QUuid> ids() const {
        std::vector<QUuid> ids;
        for (std::size_t row = 0; row < queue.size(); ++row)
            ids.push_back(queue.idAt(row));
        return ids;
    }
    [[nodiscard]] QUuid currentId() const {
        const auto row = queue.currentRow();
        return row ? queue.idAt(*row) : QUuid();
    }

    std::mt19937 m_choices;
    Reference m_reference;
    bool m_isEdit = false;
};

TEST(QueueEditing, RandomEditsAgreeWithAPlainListAndAreTakenBack) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Editor editor(seed);
        for (int i = 0; i < 1000; ++i) {
            editor.step();
            if (testing::Test::HasFailure())
                FAIL() << "seed " << seed << ", step " << i;
        }
    }
}

} // namespace
} // namespace halvane::test
