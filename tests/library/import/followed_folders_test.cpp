// SPDX-License-Identifier: MIT
// What happens in a followed folder shows in the library, without a word from the user.
#include "library/import/folder_changes.h"
#include "library/running_library.h"
#include "support/held_file.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class FollowedFoldersTest : public testing::Test, public RunningLibrary {
  protected:
    FollowedFoldersTest() { environment.preferences.setBoolean(SettingsKey::followsFolders, true); }
    void SetUp() override {
        wave(u"A/1.wav"_s);
        wave(u"A/2.wav"_s);
        start();
        importAndCompare({music.path()});
    }
    /// Until the folders are watched, so that what happens from now on is told.
    void importAndCompare(const QStringList& paths) {
        untilCompared([&] { import(paths); });
    }
    void untilCompared(const std::function<void()>& action) {
        bool isCompared = false;
        QObject::connect(
            followed(), &FollowedFolders::compared, library.get(), [&] { isCompared = true; },
            Qt::SingleShotConnection);
        action();
        until([&] { return isCompared && !library->importing()->isImporting(); });
    }
    void startAgain() {
        saveIndex();
        library.reset();
        build();
        untilCompared([this] { restore(); });
    }
    [[nodiscard]] FollowedFolders* followed() const { return library->followedFolders(); }
    [[nodiscard]] QString path(const QString& name) const { return music.filePath(name); }
    [[nodiscard]] bool has(const QString& name) const {
        return library->store()->track(path(name)) != nullptr;
    }
    [[nodiscard]] bool isMissing(const QString& name) const {
        return library->availability()->state(path(name)) == TrackAvailability::missing;
    }
    [[nodiscard]] std::size_t size() const { return library->store()->size(); }
};

TEST_F(FollowedFoldersTest, WhatComesJoinsTheLibraryWithoutPlaying) {
    EXPECT_EQ(followed()->folders(), QStringList(music.path()));
    EXPECT_EQ(followed()->trackCount(music.path()), 2);
    library->transport()->togglePlayback();
    ASSERT_FALSE(library->transport()->isPlaying());
    const QString current = this->current();
    wave(u"A/3.wav"_s);
    until([this] { return has(u"A/3.wav"_s); });
    wave(u"new/deep/4.wav"_s);
    until([this] { return has(u"new/deep/4.wav"_s); });
    wave(u"new/deep/5.wav"_s); // in a folder that has just come
    until([this] { return has(u"new/deep/5.wav"_s); });
    const QTemporaryDir elsewhere;
    writeWave(sine(500, 0.4, 8000, 8000, 1), elsewhere.filePath(u"6.wav"_s));
    ASSERT_EQ(::link(elsewhere.filePath(u"6.wav"_s).toUtf8(), path(u"A/6.wav"_s).toUtf8()), 0);
    until([this] { return has(u"A/6.wav"_s); });
    until([this] { return !library->importing()->isImporting(); });
    EXPECT_EQ(queued().size(), 6) << "the queue was the whole library";
    EXPECT_FALSE(library->transport()->isPlaying());
    EXPECT_EQ(this->current(), current);
    EXPECT_EQ(library->status()->text(), u"1 new track from your folders"_s);
    EXPECT_FALSE(library->status()->isError());
}

TEST_F(FollowedFoldersTest, APartOfTheLibraryInTheQueueStaysAsItIs) {
    library->collections()->playPlaylist(
        library->playlists()->addPlaylist(u"One"_s, {path(u"A/2.wav"_s)}));
    const auto queue = queued();
    ASSERT_EQ(queue.size(), 1);
    wave(u"B/2.wav"_s);
    until([this] { return has(u"B/2.wav"_s); });
    EXPECT_EQ(queued(), queue);
}

TEST_F(FollowedFoldersTest, WhatIsChangedRenamedOrDeletedShows) {
    writeWave(sine(300, 0.3, 24'000, 8000, 1), path(u"A/2.wav"_s));
    until([this] {
        return library->store()->track(path(u"A/2.wav"_s))->durationSeconds.value_or(0) > 2.5;
    });
    until([this] {
        return library->store()->track(path(u"A/1.wav"_s))->identity.isKnown() &&
               library->store()->track(path(u"A/2.wav"_s))->identity.isKnown();
    });
    library->userData()->setRating(4, path(u"A/2.wav"_s));
    const QUuid row = library->queue()->idAt(1);
    ASSERT_TRUE(QDir(music.path()).rename(u"A"_s, u"Z"_s));
    until([this] { return has(u"Z/2.wav"_s) && !has(u"A/2.wav"_s) && has(u"Z/1.wav"_s); });
    EXPECT_EQ(size(), 3U) << "the track that plays keeps its row, too";
    EXPECT_EQ(library->userData()->rating(path(u"Z/2.wav"_s)), 4);
    EXPECT_EQ(library->queue()->idAt(1), row);
    wave(u"Z/3.wav"_s); // under its new name the folder is followed on
    until([this] { return has(u"Z/3.wav"_s); });
    ASSERT_TRUE(QFile::remove(path(u"Z/3.wav"_s)));
    until([this] { return isMissing(u"Z/3.wav"_s); });
    wave(u"Z/3.wav"_s);
    until([this] { return !isMissing(u"Z/3.wav"_s); });
}

TEST_F(FollowedFoldersTest, WhatHappenedWhileTheProgramWasClosedIsFound) {
    until([this] { return library->store()->track(path(u"A/1.wav"_s))->identity.isKnown(); });
    saveIndex();
    library.reset();
    wave(u"B/3.wav"_s);
    ASSERT_TRUE(QFile::rename(path(u"A/1.wav"_s), path(u"A/one.wav"_s)));
    build();
    untilCompared([this] { restore(); });
    until([this] { return has(u"B/3.wav"_s) && has(u"A/one.wav"_s) && !has(u"A/1.wav"_s); });
    EXPECT_EQ(size(), 3U);
    EXPECT_FALSE(library->transport()->isPlaying());
}

TEST_F(FollowedFoldersTest, WhatTheUserTookOutStaysOut) {
    library->tidying()->removeTracks({path(u"A/1.wav"_s)});
    until([this] { return !has(u"A/1.wav"_s); });
    untilCompared([this] { followed()->rescan(); });
    startAgain();
    untilCompared([this] { followed()->rescan(); });
    EXPECT_FALSE(has(u"A/1.wav"_s));
    import({path(u"A/1.wav"_s)}); // unless the user gives it again
    EXPECT_TRUE(has(u"A/1.wav"_s));
    EXPECT_EQ(environment.preferences.strings(SettingsKey::leftOutPaths), QStringList());
}

TEST_F(FollowedFoldersTest, WhatHadGoneByItselfComesBackByItself) {
    ASSERT_TRUE(QFile::rename(path(u"A/1.wav"_s), path(u".kept"_s)));
    until([this] { return isMissing(u"A/1.wav"_s); });
    library->tidying()->removeTracks({path(u"A/1.wav"_s)});
    until([this] { return !has(u"A/1.wav"_s); });
    ASSERT_TRUE(QFile::rename(path(u".kept"_s), path(u"A/1.wav"_s)));
    until([this] { return has(u"A/1.wav"_s); });
}

TEST_F(FollowedFoldersTest, FoldersCanBeLetGo) {
    EXPECT_FALSE(environment.preferences.strings(SettingsKey::followedFolders)->isEmpty());
    followed()->setFollowing(false);
    wave(u"A/3.wav"_s);
    untilCompared([this] { followed()->setFollowing(true); });
    until([this] { return has(u"A/3.wav"_s); });
    followed()->removeWithTracks(music.path());
    until([this] { return size() == 0; });
    EXPECT_TRUE(followed()->folders().isEmpty());
    EXPECT_EQ(environment.preferences.strings(SettingsKey::leftOutPaths), std::nullopt);
    importAndCompare({music.path()});
    EXPECT_EQ(size(), 3U);
    followed()->stopFollowing(music.path());
    EXPECT_EQ(size(), 3U);
}

TEST_F(FollowedFoldersTest, AStoppedImportIsNotFollowed) {
    const QTemporaryDir other;
    const QString file = other.filePath(u"6.wav"_s);
    writeWave(sine(500, 0.4, 8000, 8000, 1), file);
    const HeldFile held(file);
    if (!held.isHeld())
        GTEST_SKIP() << "no leases here";
    library->importing()->importDroppedURLs({QUrl::fromLocalFile(other.path())});
    until([&] { return followed()->folders().contains(other.path()); });
    ASSERT_TRUE(library->importing()->isImporting());
    library->importing()->stopImport();
    EXPECT_EQ(followed()->folders(), QStringList(music.path()));
}

TEST(FollowedFolderRules, OneFolderStandsForThoseInIt) {
    struct Case {
        QStringList folders;
        QString added;
        QStringList expected;
    };
    const Case cases[] = {
        {{}, u"/m"_s, {u"/m"_s}},
        {{u"/m"_s}, u"/m"_s, {u"/m"_s}},
        {{u"/m"_s}, u"/m/a/b"_s, {u"/m"_s}},
        {{u"/m"_s}, u"/music"_s, {u"/m"_s, u"/music"_s}},
        {{u"/m/a"_s, u"/n"_s, u"/m/b"_s}, u"/m"_s, {u"/n"_s, u"/m"_s}},
        {{u"/m"_s, u"/n"_s}, u"/"_s, {u"/"_s}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(folderAdded(c.folders, c.added), c.expected) << c.added.toStdString();
}

} // namespace
} // namespace halvane::test
