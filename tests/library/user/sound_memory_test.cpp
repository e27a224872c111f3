// SPDX-License-Identifier: MIT
// What was said of music stays with its sound.
#include "library/user/remembering_library.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class SoundMemoryTest : public testing::Test, public RememberingLibrary {
  protected:
    void SetUp() override { start(); }

    void importAll() {
        import({music.path()});
        settle();
    }
    QStringList missing() {
        const QSet<QString>& paths = library->availability()->unavailablePaths();
        return {paths.cbegin(), paths.cend()};
    }
};

TEST_F(SoundMemoryTest, AFolderThatIsRenamedWhileClosedKeepsAll) {
    QDir(music.path()).mkpath(u"old/disc"_s);
    const QStringList names{u"one"_s, u"two"_s, u"three"_s};
    QStringList paths;
    for (int i = 0; i < 3; ++i) {
        paths.append(path(u"old/disc/"_s + names[i] + u".wav"_s));
        write(paths[i], i, names[i]);
    }
    import({music.path()});
    library->userData()->toggleLoved(paths[0]); // its sound is not identified yet
    settle();
    library->userData()->setRating(4, paths[1]);
    library->userData()->countPlay(paths[1], 900);
    library->soundCheck()->learn(paths[2], {-20, -3});
    const QUuid list = library->playlists()->addPlaylist(u"Mine"_s, {paths[2], paths[0]});
    const Said before = said(paths[1]);
    quit();

    ASSERT_TRUE(QDir(music.path()).rename(u"old"_s, u"new"_s));
    start();
    settle();
    EXPECT_EQ(missing().size(), 3);
    importAll();
    const auto now = [this](const QString& name) {
        return path(u"new/disc/"_s + name + u".wav"_s);
    };
    EXPECT_EQ(said(now(u"one"_s)).isLoved, true);
    EXPECT_EQ(said(now(u"two"_s)).rating, 4);
    EXPECT_EQ(said(now(u"two"_s)).plays, before.plays);
    EXPECT_EQ(said(now(u"two"_s)).lastPlayed, 900);
    EXPECT_EQ(library->soundCheck()->trackLoudness().value(now(u"three"_s)),
              (std::vector<double>{-20, -3}));
    EXPECT_EQ(listed(list), (std::vector{now(u"three"_s), now(u"one"_s)}));

    until([this] { return missing().isEmpty(); });
    EXPECT_EQ(library->store()->size(), 3U);
    quit();
    start();
    EXPECT_TRUE(said(now(u"one"_s)).isLoved);
    EXPECT_EQ(said(now(u"two"_s)), before);
}

TEST_F(SoundMemoryTest, ATrackThatWasRemovedComesBackUnderAnotherNameAndTitle) {
    const QString first = path(u"a.wav"_s);
    const QString other = path(u"b.wav"_s);
    write(first, 1, u"First"_s);
    write(other, 2, u"Other"_s);
    importAll();
    library->userData()->toggleLoved(first);
    library->userData()->setRating(3, first);
    library->soundCheck()->learn(first, {-18, -1});
    const Said before = said(first);
    const QUuid list = library->playlists()->addPlaylist(u"Mine"_s, {other, first});
    const QUuid gone = library->playlists()->addPlaylist(u"Gone"_s, {first});
    library->tidying()->removeTracks({first});
    EXPECT_EQ(said(first), Said());
    EXPECT_FALSE(environment.preferences.integerMap(SettingsKey::trackRatings)->contains(first));
    EXPECT_EQ(listed(list), std::vector{other});
    library->playlists()->deletePlaylist(gone);
    quit();

    ASSERT_TRUE(QFile::remove(first));
    const QString later = path(u"c.wav"_s);
    write(later, 1, u"Another title"_s);
    write(first, 3, u"First"_s); // another sound under the old name
    start();
    importAll();
    EXPECT_EQ(said(first).rating, 0);
    EXPECT_FALSE(said(first).isLoved);
    EXPECT_TRUE(said(later).isLoved);
    EXPECT_EQ(said(later).rating, 3);
    EXPECT_GE(said(later).plays, before.plays);
    EXPECT_EQ(library->soundCheck()->trackLoudness().value(later), (std::vector<double>{-18, -1}));
    EXPECT_EQ(listed(list), (std::vector{other, later}));
    EXPECT_TRUE(environment.preferences.strings(SettingsKey::soundPlaces)->isEmpty());
}

TEST_F(SoundMemoryTest, TagsSayOnlyWhatNobodyHasSaidHere) {
    const QString rated = path(u"a.wav"_s);
    const QString known = path(u"b.wav"_s);
    const QString plain = path(u"c.wav"_s);
    write(rated, 1, u"Rated"_s);
    rate(rated, char(196), 12);
    write(known, 2, u"Known"_s);
    write(plain, 3, u"Plain"_s);
    import({music.path()}); // and plays the first, before its sound is identified
    until([&] { return said(rated).plays > 0; });
    settle();
    EXPECT_EQ(said(rated).rating, 4);
    EXPECT_EQ(said(rated).plays, 13);
    EXPECT_EQ(said(plain), Said());
    library->userData()->setRating(2, known);
    quit();

    // A tag editor says something later.
    rate(known, char(255), 50);
    rate(plain, char(64), 5);
    start();
    importAll();
    EXPECT_EQ(said(known).rating, 2);
    EXPECT_EQ(said(known).plays, 0);
    EXPECT_EQ(said(plain).rating, 2);
    EXPECT_EQ(said(plain).plays, 5);

    // What was taken back does not come again with the file.
    library->userData()->setRating(0, rated);
    library->tidying()->removeTracks({rated});
    importAll();
    EXPECT_EQ(said(rated).rating, 0);
    EXPECT_GE(said(rated).plays, 13);
}

TEST_F(SoundMemoryTest, CopiesShareWhatIsSaid) {
    const QString first = path(u"a.wav"_s);
    const QString copy = path(u"b.wav"_s);
    const QString other = path(u"c.wav"_s);
    write(first, 1, u"Title"_s);
    write(other, 2, u"Other"_s);
    importAll();
    library->userData()->toggleLoved(first);
    const QUuid list = library->playlists()->addPlaylist(u"Mine"_s, {copy, first, other});
    write(copy, 1, u"Title"_s);
    importAll();
    EXPECT_EQ(said(copy), said(first));
    EXPECT_TRUE(said(copy).isLoved);
    EXPECT_EQ(listed(list), (std::vector{copy, first, other})) << "both are there";

    library->userData()->setRating(5, copy);
    library->userData()->toggleLoved(copy);
    library->userData()->countPlay(copy, 700);
    EXPECT_EQ(said(first), said(copy));
    EXPECT_EQ(said(first).rating, 5);
    EXPECT_FALSE(said(first).isLoved);
    EXPECT_EQ(said(other).rating, 0);

    // One of them goes, and the sound keeps its place.
    library->playlists()->removeTrackPath(copy, list);
    library->tidying()->removeTracks({first});
    settle();
    EXPECT_EQ(listed(list), (std::vector{copy, other}));
    EXPECT_EQ(said(copy).rating, 5);
    // What was taken back stays so, also with one who comes later.
    write(first, 1, u"Title"_s);
    importAll();
    EXPECT_FALSE(said(first).isLoved);
    EXPECT_EQ(said(first), said(copy));
}

TEST_F(SoundMemoryTest, NamesThatAreExchangedDoNotExchangeWhatWasSaid) {
    const QString first = path(u"a.wav"_s);
    const QString second = path(u"b.wav"_s);
    const QString third = path(u"c.wav"_s);
    for (const auto& [name, sound] : {std::pair(first, 1), {second, 2}, {third, 3}})
        write(name, sound, u"Track"_s);
    importAll();
    library->userData()->toggleLoved(first);
    library->userData()->setRating(2, third);
    quit();
    // The first becomes the second, of which nothing was said, and the third is encoded anew.
    ASSERT_TRUE(QFile::rename(first, path(u"x"_s)));
    ASSERT_TRUE(QFile::rename(second, first));
    ASSERT_TRUE(QFile::rename(path(u"x"_s), second));
    write(third, 4, u"Track"_s);
    start();
    settle();
    EXPECT_FALSE(said(first).isLoved);
    EXPECT_TRUE(said(second).isLoved);
    EXPECT_EQ(said(third).rating, 2);
}

TEST_F(SoundMemoryTest, UndoingARemovalCountsNothingTwice) {
    const QString first = path(u"a.wav"_s);
    write(first, 1, u"Title"_s);
    importAll();
    library->userData()->countPlay(first, 800);
    library->userData()->setRating(4, first);
    const QUuid list = library->playlists()->addPlaylist(u"Mine"_s, {first});
    const Said before = said(first);
    library->tidying()->removeTracks({first});
    ASSERT_EQ(said(first), Said());
    library->history()->undo();
    settle();
    EXPECT_EQ(said(first), before);
    EXPECT_EQ(listed(list), std::vector{first});
    EXPECT_TRUE(environment.preferences.strings(SettingsKey::soundPlaces)->isEmpty());
}

TEST_F(SoundMemoryTest, StoresNotesBesideThePaths) {
    const QString first = path(u"a.wav"_s);
    write(first, 1, u"Title"_s);
    importAll();
    library->userData()->setRating(4, first);
    const auto notes = environment.preferences.numbersMap(SettingsKey::soundNotes);
    ASSERT_TRUE(notes);
    const SoundIdentity identity = library->store()->track(first)->identity;
    const double plays = static_cast<double>(said(first).plays);
    EXPECT_EQ(notes->value(identity.text()), (std::vector<double>{0, 4, plays}));
    EXPECT_EQ(environment.preferences.integerMap(SettingsKey::trackRatings)->value(first), 4);
    library->userData()->countPlay(first, 900'000'000);
    library->userData()->countPlay(first, 500); // the clock was put back
    EXPECT_EQ(environment.preferences.integerMap(SettingsKey::lastPlayed)->value(first),
              900'000'000);
    EXPECT_EQ(
        environment.preferences.integerMap(SettingsKey::soundLastPlayed)->value(identity.text()),
        900'000'000);
}

} // namespace
} // namespace halvane::test
