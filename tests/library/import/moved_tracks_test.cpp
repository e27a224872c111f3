// SPDX-License-Identifier: MIT
// A file that was renamed or moved keeps its row.
#include "library/import/drive_places.h"
#include "library/import/moved_tracks.h"
#include "library/user/remembering_library.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class MovedTracksTest : public testing::Test, public RememberingLibrary {
  protected:
    void SetUp() override {
        start();
        QDir(music.path()).mkpath(u"old"_s);
        for (int i = 0; i < 3; ++i)
            write(path(u"old/%1.wav"_s.arg(i)), i, QString::number(i));
        write(path(u"other.wav"_s), 9, u"Other"_s);
        import({path(u"old"_s)});
        import({path(u"other.wav"_s)});
        settle();
    }
    void importAgain() {
        import({music.path()});
        settle();
        until([this] { return !isAnyMissing(); });
    }
    [[nodiscard]] bool isAnyMissing() const {
        return !library->availability()->unavailablePaths().isEmpty();
    }
    [[nodiscard]] QStringList rows() const {
        QStringList paths;
        for (const TrackPtr& track : library->store()->rows())
            paths.append(QDir(music.path()).relativeFilePath(track->path()));
        return paths;
    }
    [[nodiscard]] QStringList queuedPaths() const {
        QStringList paths;
        for (std::size_t row = 0; row < library->queue()->size(); ++row)
            paths.append(QDir(music.path()).relativeFilePath(library->queue()->record(row).path()));
        return paths;
    }
};

TEST_F(MovedTracksTest, AFolderRenamedWhileClosedKeepsItsRowsAndItsPlaceInTheQueue) {
    const QUuid list =
        library->playlists()->addPlaylist(u"Mine"_s, {path(u"old/2.wav"_s), path(u"old/0.wav"_s)});
    quit();
    ASSERT_TRUE(QDir(music.path()).rename(u"old"_s, u"new"_s));
    start();
    settle();
    ASSERT_EQ(library->availability()->unavailablePaths().size(), 3);
    importAgain();
    const QStringList expected{u"new/0.wav"_s, u"new/1.wav"_s, u"new/2.wav"_s, u"other.wav"_s};
    EXPECT_EQ(rows(), expected);
    EXPECT_EQ(queuedPaths(), expected);
    EXPECT_EQ(library->queue()->currentPath(), path(u"new/0.wav"_s)) << "which the import plays";
    EXPECT_TRUE(library->transport()->isPlaying());
    EXPECT_EQ(listed(list), (std::vector{path(u"new/2.wav"_s), path(u"new/0.wav"_s)}));
    EXPECT_EQ(library->status()->text(), u"3 files found in their new places"_s);
    EXPECT_EQ(library->tidying()->maintenanceActionCount(), 0);
    EXPECT_FALSE(library->history()->canUndo());
    quit();
    start();
    EXPECT_EQ(rows(),
              (QStringList{u"new/0.wav"_s, u"new/1.wav"_s, u"new/2.wav"_s, u"other.wav"_s}));
}

TEST_F(MovedTracksTest, ACopyTakesOverOnceTheOldFileHasGone) {
    write(path(u"copy.wav"_s), 1, u"1"_s);
    import({music.path()});
    settle();
    EXPECT_EQ(library->store()->size(), 5U) << "both are there";
    ASSERT_TRUE(QFile::remove(path(u"old/1.wav"_s)));
    settle();
    until([this] { return !isAnyMissing(); });
    EXPECT_EQ(rows(), (QStringList{u"old/0.wav"_s, u"copy.wav"_s, u"old/2.wav"_s, u"other.wav"_s}));
}

TEST_F(MovedTracksTest, WhatWasThereBeforeIsACopyAndNotTheMovedFile) {
    write(path(u"copy.wav"_s), 1, u"1"_s);
    import({music.path()});
    settle();
    quit();
    ASSERT_TRUE(QFile::remove(path(u"old/1.wav"_s)));
    start();
    settle();
    settle();
    EXPECT_EQ(rows().size(), 5) << "the listener has had both, and may want the other back";
    EXPECT_TRUE(isAnyMissing());
}

TEST(MovedFiles, ArePairedByTheEndsOfTheirNames) {
    EXPECT_EQ(movesBetween({u"/a/1/x.wav"_s, u"/a/2/y.wav"_s},
                           {u"/b/2/y.wav"_s, u"/b/1/x.wav"_s, u"/b/3/z.wav"_s}),
              (std::vector<Move>{{u"/a/1/x.wav"_s, u"/b/1/x.wav"_s},
                                 {u"/a/2/y.wav"_s, u"/b/2/y.wav"_s}}));
    EXPECT_EQ(movesBetween({u"/a/x.wav"_s, u"/a/y.wav"_s}, {u"/b/w.wav"_s}).size(), 1U);
}

TEST(DrivePlaces, AreWhereDrivesAreAttached) {
    for (const QString& place : {u"/"_s, u"/mnt"_s, u"/mnt/nas"_s, u"/media"_s, u"/media/user"_s,
                                 u"/run/media/user"_s, u"/run/user/1000/gvfs"_s})
        EXPECT_TRUE(isDrivePlace(place)) << place.toStdString();
    for (const QString& folder : {u"/media/user/stick"_s, u"/home"_s, u"/home/user/Music"_s})
        EXPECT_FALSE(isDrivePlace(folder)) << folder.toStdString();
    EXPECT_TRUE(isWhereADriveWas(u"/no such place/music/a.wav"_s));
    EXPECT_TRUE(isWhereADriveWas(u"/mnt/no such share/a.wav"_s));
    const QTemporaryDir folder;
    EXPECT_FALSE(isWhereADriveWas(folder.filePath(u"gone/a.wav"_s)));
}

} // namespace
} // namespace halvane::test
