// SPDX-License-Identifier: MIT
// Cover files that others add, replace and delete while the whole controller runs.
#include "library/running_library.h"
#include "support/audio_material.h"

#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class CoverFilesTest : public testing::Test, public RunningLibrary {
  protected:
    void SetUp() override {
        QDir(music.path()).mkdir(u"Album"_s);
        track = place(u"Album/1.wav"_s);
        writeWave(sine(440, 0.5, 8000, 8000, 1), track);
        start();
        import({track});
        // What follows an import by itself.
        until([&] { return looks > 0; });
    }
    void start() {
        build();
        QObject::connect(library->coverFiles(), &CoverFiles::refreshed, library.get(),
                         [this] { ++looks; });
        QObject::connect(library->coverFiles(), &CoverFiles::changed, library.get(),
                         [this](const QSet<QString>& keys) { changed.unite(keys); });
        restore();
    }
    /// Comes back to the program. Gives the keys behind which there is another picture.
    QSet<QString> comeBack() {
        changed.clear();
        const int before = looks;
        library->coverFiles()->refresh(); // may be under way since before the picture came
        library->coverFiles()->refresh();
        until([&] { return looks >= before + 2; });
        return changed;
    }
    [[nodiscard]] QString place(const QString& name) const { return music.filePath(name); }
    static void paint(const QString& path, Qt::GlobalColor color, int side = 8) {
        QImage picture(side, side, QImage::Format_RGB32);
        picture.fill(color);
        ASSERT_TRUE(picture.save(path));
    }
    [[nodiscard]] std::optional<FileUrl> cover() const {
        return library->store()->track(track)->coverURL;
    }
    [[nodiscard]] QByteArray shown(const QString& path) const {
        return library->covers()->read(u"file:"_s + path);
    }

    QString track;
    int looks = 0;
    QSet<QString> changed;
};

TEST_F(CoverFilesTest, CoversThatComeChangeAndGoAreNoticed) {
    const QString first = place(u"Album/cover.png"_s);
    const QString second = place(u"Album/front.png"_s);
    EXPECT_EQ(cover(), std::nullopt);
    EXPECT_EQ(comeBack(), QSet<QString>());

    paint(first, Qt::red);
    const QUuid id = library->store()->track(track)->id;
    EXPECT_EQ(comeBack(), QSet{u"file:"_s + first});
    EXPECT_EQ(cover(), FileUrl(first));
    EXPECT_EQ(library->store()->track(track)->id, id);
    EXPECT_EQ(library->queue()->record(0).coverURL, FileUrl(first));
    EXPECT_EQ(library->catalog()->published()->albums.at(0).coverURL, FileUrl(first));
    until([&] {
        return environment.mediaControls.info &&
               environment.mediaControls.info->artworkPath == first;
    });
    EXPECT_EQ(comeBack(), QSet<QString>()) << "nothing is new";

    // Another picture in the same place counts only once somebody has seen the first.
    EXPECT_FALSE(shown(first).isEmpty());
    const int before = library->coverFiles()->revisionOf(u"file:"_s + first);
    paint(first, Qt::blue, 9);
    EXPECT_EQ(comeBack(), QSet{u"file:"_s + first});
    EXPECT_GT(library->coverFiles()->revisionOf(u"file:"_s + first), before);
    EXPECT_FALSE(shown(first).isEmpty());

    ASSERT_TRUE(QFile::rename(first, second));
    EXPECT_EQ(comeBack(), (QSet{u"file:"_s + first, u"file:"_s + second}));
    EXPECT_EQ(cover(), FileUrl(second));

    ASSERT_TRUE(QFile::remove(second));
    EXPECT_TRUE(comeBack().contains(QString())) << "the track has no cover any more";
    EXPECT_EQ(cover(), std::nullopt);
}

TEST_F(CoverFilesTest, TheCoverAboveTheDiscsIsNoticed) {
    const QString disc = place(u"Album/CD1/2.wav"_s);
    QDir(music.path()).mkpath(u"Album/CD1"_s);
    writeWave(sine(440, 0.5, 8000, 8000, 1), disc);
    library->importing()->importDroppedURLs({QUrl::fromLocalFile(disc)});
    until([&] { return !library->importing()->isImporting(); });
    comeBack();
    EXPECT_EQ(library->store()->track(disc)->coverURL, std::nullopt);
    const QString cover = place(u"Album/cover.png"_s);
    paint(cover, Qt::red);
    comeBack();
    EXPECT_EQ(library->store()->track(disc)->coverURL, FileUrl(cover));
    const QString own = place(u"Album/CD1/front.png"_s);
    paint(own, Qt::blue);
    comeBack();
    EXPECT_EQ(library->store()->track(disc)->coverURL, FileUrl(own));
}

// Nobody has left the window, and another album is left alone.
TEST_F(CoverFilesTest, AnAlbumThatIsChosenShowsItsCoverOfNow) {
    const QString path = place(u"Album/cover.png"_s);
    const QString id = library->catalog()->published()->albums.at(0).id;
    paint(path, Qt::red);
    const int before = looks;
    library->browsing()->setSelectedAlbumID(u"another"_s);
    library->browsing()->setSelectedAlbumID(id);
    until([&] { return cover() == FileUrl(path); });
    EXPECT_FALSE(shown(path).isEmpty());
    changed.clear();
    paint(path, Qt::blue, 9);
    library->browsing()->setSelectedAlbumID(id); // once more
    until([&] { return changed.contains(u"file:"_s + path); });
    EXPECT_EQ(looks, before) << "the whole library need not be looked at";
}

TEST_F(CoverFilesTest, WhatCouldNotBeReadIsTriedAgain) {
    const QString path = place(u"Album/cover.png"_s);
    const QString key = u"file:"_s + path;
    paint(path, Qt::red);
    comeBack();
    ASSERT_TRUE(QFile::rename(path, path + u".away"_s));
    EXPECT_TRUE(shown(path).isEmpty());
    ASSERT_TRUE(QFile::rename(path + u".away"_s, path));
    EXPECT_TRUE(comeBack().contains(key));

    library->covers()->leaveUnread(key);
    EXPECT_TRUE(comeBack().contains(key));

    const QString embedded =
        library->covers()->keyFor(Artwork::fromFile(place(u"gone.png"_s)), std::nullopt);
    EXPECT_TRUE(library->covers()->read(embedded).isEmpty());
    EXPECT_TRUE(comeBack().contains(embedded));
    paint(place(u"gone.png"_s), Qt::red);
    EXPECT_FALSE(library->covers()->read(embedded).isEmpty());
    EXPECT_FALSE(comeBack().contains(embedded));
}

// A drive that is not there takes no cover along, and what changed meanwhile is seen at the start.
TEST_F(CoverFilesTest, AMissingFolderKeepsItsCovers) {
    const QString path = place(u"Album/cover.png"_s);
    paint(path, Qt::red);
    comeBack();
    ASSERT_TRUE(QDir(music.path()).rename(u"Album"_s, u"Away"_s));
    EXPECT_EQ(comeBack(), QSet<QString>());
    EXPECT_EQ(cover(), FileUrl(path));
    ASSERT_TRUE(QDir(music.path()).rename(u"Away"_s, u"Album"_s));
    EXPECT_EQ(comeBack(), QSet<QString>());

    saveIndex();
    library.reset();
    ASSERT_TRUE(QFile::remove(path));
    looks = 0;
    start();
    until([&] { return looks > 0; });
    EXPECT_EQ(cover(), std::nullopt);
}

} // namespace
} // namespace halvane::test
