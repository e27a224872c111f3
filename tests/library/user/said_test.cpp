// SPDX-License-Identifier: MIT
// The rules by which what was said follows a sound.
#include "library/tracks.h"
#include "library/user/said.h"
#include "library/user/sound_survey.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

TEST(SaidRules, JoinedHasWhatEitherHasAndDoesNotGrowByJoiningAgain) {
    struct Row {
        Said one, other, all;
    };
    const Row rows[] = {
        {{}, {}, {}},
        {{true, 3, 7}, {}, {true, 3, 7}},
        {{true, 2, 1}, {false, 5, 9}, {true, 5, 9}},
        {{false, 4, 12}, {false, 1, 3}, {false, 4, 12}},
        {{false, 0, 2, 50}, {false, 0, 9, 40}, {false, 0, 9, 50}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(joined(row.one, row.other), row.all);
        EXPECT_EQ(joined(row.other, row.one), row.all);
        EXPECT_EQ(joined(row.all, row.one), row.all);
    }
}

TEST(SaidRules, ANoteTakesWhatTheUserChangesAndKeepsTheRest) {
    const Said noted{true, 4, 9};
    struct Row {
        Said before, after, now;
    };
    const Row rows[] = {
        {{true, 4, 9}, {false, 4, 9}, {false, 4, 9}},
        {{false, 4, 9}, {true, 4, 9}, {true, 4, 9}},
        {{}, {false, 2, 0}, {true, 2, 9}}, // of a copy that nobody knew to be one
        {{}, {false, 0, 1}, {true, 4, 10}},
        {{true, 4, 9}, {true, 0, 9}, {true, 0, 9}},
        {{}, {false, 0, 1, 60}, {true, 4, 10, 60}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(followed(noted, row.before, row.after), row.now);
}

TEST(SaidRules, AFileWithAnotherSoundIsToldOfWhatIsKnownOfThat) {
    const Said loved{true, 0, 0};
    const Said rated{false, 4, 2};
    struct Row {
        const char* name;
        Said ofPath;
        std::optional<Said> ofSound;
        bool hasOldGone;
        Said now;
    };
    const Row rows[] = {
        {"encoded anew", loved, std::nullopt, false, loved},
        {"another file under its name", loved, std::nullopt, true, {}},
        {"a known one under its name", loved, rated, true, rated},
        {"a known one in place of one that is gone", loved, rated, false, rated},
        {"one of which all was taken back", loved, Said(), true, {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(saidOfReplaced(row.ofPath, row.ofSound, row.hasOldGone), row.now) << row.name;
}

TEST(SaidRules, StandInsTakePlacesAndNoPathIsThereTwice) {
    using Paths = std::vector<QString>;
    const QHash<QString, QString> others{{u"old"_s, u"new"_s}, {u"older"_s, u"new"_s}};
    const auto standIn = [&](const QString& path) {
        const auto found = others.constFind(path);
        return found == others.cend() ? std::nullopt : std::optional(*found);
    };
    struct Row {
        Paths before;
        std::optional<Paths> after;
    };
    const Row rows[] = {
        {{}, std::nullopt},
        {{u"a"_s, u"b"_s, u"a"_s}, std::nullopt},
        {{u"a"_s, u"old"_s, u"b"_s}, Paths{u"a"_s, u"new"_s, u"b"_s}},
        {{u"old"_s, u"a"_s, u"older"_s}, Paths{u"new"_s, u"a"_s}},
        {{u"old"_s, u"a"_s, u"new"_s}, Paths{u"a"_s, u"new"_s}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(withStandIns(row.before, standIn), row.after);
}

TEST(SaidRules, NotesReadBackAndNonsenseIsNone) {
    for (const SoundNote& note :
         {SoundNote{}, SoundNote{{true, 5, 1234567}, {}}, SoundNote{{false, 0, 3}, {-14.25, -0.5}}})
        EXPECT_EQ(noteFromStored(storedNote(note)), note);
    for (const std::vector<double>& numbers : {std::vector<double>{},
                                               {1, 2},
                                               {2, 0, 0},
                                               {0, 6, 0},
                                               {0, -1, 0},
                                               {0, 0, 1.5},
                                               {0, 0, 1e300}})
        EXPECT_FALSE(noteFromStored(numbers));
}

TEST(SoundSurvey, FindsSharedAndSoughtSoundsInLibraryOrder) {
    const auto sounding = [](const QString& path, quint64 sound) {
        Track track = trackAt(path);
        track.identity = {0, sound};
        return track;
    };
    const TrackRows rows = rowsOf({sounding(u"/d"_s, 1), sounding(u"/c"_s, 2), trackAt(u"/x"_s),
                                   sounding(u"/b"_s, 1), sounding(u"/a"_s, 3), trackAt(u"/y"_s)});
    const PathsOfSounds found = surveySounds(rows, {{0, 3}, {0, 4}});
    EXPECT_EQ(found, (PathsOfSounds{{{0, 1}, {u"/d"_s, u"/b"_s}}, {{0, 3}, {u"/a"_s}}}));
}

} // namespace
} // namespace halvane::test
