// SPDX-License-Identifier: MIT
// Files and folders that are dropped on the main window.
#include "support/audio_material.h"
#include "views/main_window_fixture.h"

#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QTemporaryDir>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

using DropsTest = MainWindowFixture;

TEST_F(DropsTest, FilesDraggedOverTheWindowShowTheOverlay) {
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(world.pathOf(0)), QUrl::fromLocalFile(u"/music"_s)});
    QQuickWindow* window = &ui->window();
    const auto enter = [&] {
        QDragEnterEvent event({400, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window, &event);
        QDragMoveEvent move({420, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window, &move);
        EXPECT_TRUE(move.isAccepted());
    };
    enter();
    EXPECT_TRUE(ui->waitsFor(u"Drop to add to playlist"_s));
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(window, &leave);
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Drop to add to playlist"_s); }));
    enter();
    QDropEvent drop({420, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window, &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Drop to add to playlist"_s); }));
}

TEST_F(DropsTest, HundredsOfFilesAndFoldersAreDroppedAtOnce) {
    QTemporaryDir folder;
    QList<QUrl> urls;
    for (int number = 0; number < 400; ++number) {
        const QString path = folder.filePath(u"%1 %2.wav"_s.arg(number).arg(u"é 歌 🌙 #%20"_s));
        ASSERT_TRUE(QFile::copy(world.pathOf(1), path));
        urls.append(QUrl::fromLocalFile(path));
    }
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"more"_s));
    ASSERT_TRUE(QFile::copy(world.pathOf(1), folder.filePath(u"more/in a folder.wav"_s)));
    urls.append(QUrl::fromLocalFile(folder.filePath(u"more"_s)));
    QMimeData files;
    files.setUrls(urls);
    const int before = library.trackCount();
    QDragEnterEvent enter({400, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&ui->window(), &enter);
    QDropEvent drop({400, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&ui->window(), &drop);
    EXPECT_TRUE(world.waitFor([&] { return library.trackCount() == before + 401; }, 60000));
}

// As with a file that is opened when there is nothing yet.
TEST(EmptyWindowTest, TheFirstFileStandsWhereTheQueueBegins) {
    QTemporaryDir folder;
    const QString path = folder.filePath(u"1.wav"_s);
    writeWave(sine(440, 0.5, 8000 * 60, 8000, 1), path);
    GalleryWorld world(0);
    QQuickWindow* window = world.open(u"main"_s);
    ASSERT_NE(window, nullptr);
    WindowDriver ui(*window);
    ASSERT_TRUE(ui.waitsFor(u"Nothing up next"_s));
    world.library().importing()->importDroppedURLs({QUrl::fromLocalFile(path)});
    ASSERT_TRUE(world.waitFor([&] { return world.library().transport()->isPlaying(); }));
    ASSERT_TRUE(ui.comesToRest());
    auto* list = ui.find(u"Up Next"_s, QAccessible::List);
    ASSERT_NE(list, nullptr);
    auto* row = ui.find(u"1, "_s, QAccessible::ListItem);
    ASSERT_NE(row, nullptr);
    EXPECT_NEAR(row->rect().top(), list->rect().top(), 12);
    EXPECT_EQ(world.warnings(), QStringList());
}

} // namespace
} // namespace halvane::test
