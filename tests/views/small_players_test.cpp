// SPDX-License-Identifier: MIT
// The mini player and the panel beside the tray icon, worked with mouse and keyboard.
#include "app/quick_file_chooser.h"
#include "views/window_driver.h"

#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class SmallPlayersTest : public testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(world.warnings(), QStringList()); }
    bool isOpen(const QString& id) { return world.app().isWindowOpen(id); }
    bool comesBack(const QString& id) {
        return world.waitFor([&] { return isOpen(id); });
    }

    GalleryWorld world{3};
    LibraryViewModel& library = world.library();
};

TEST_F(SmallPlayersTest, SayThatNothingPlays) {
    for (const QString& id : {u"mini"_s, u"panel"_s}) {
        WindowDriver ui(*world.open(id));
        library.language()->setLanguageSetting(AppLanguage::english);
        EXPECT_TRUE(ui.waitsFor(u"Not Playing"_s)) << qPrintable(id);
        library.language()->setLanguageSetting(AppLanguage::simplifiedChinese);
        EXPECT_TRUE(ui.waitsFor(u"未在播放"_s)) << qPrintable(id);
    }
}

TEST_F(SmallPlayersTest, PlayPauseAndSkipWithEveryOtherWindowClosed) {
    world.furnish();
    for (const QString& id : {u"panel"_s, u"mini"_s}) {
        SCOPED_TRACE(qPrintable(id));
        WindowDriver ui(*world.open(id));
        EXPECT_FALSE(isOpen(u"main"_s));
        EXPECT_TRUE(ui.waitsFor(u"Lamplight"_s));
        EXPECT_TRUE(ui.shows(u"The Lanterns"_s));
        ASSERT_TRUE(ui.click(u"Pause"_s, QAccessible::Button));
        EXPECT_FALSE(library.transport()->isPlaying());
        ASSERT_TRUE(ui.click(u"Play"_s, QAccessible::Button));
        EXPECT_TRUE(library.transport()->isPlaying());
        ASSERT_TRUE(ui.click(u"Next track"_s, QAccessible::Button));
        EXPECT_TRUE(ui.waitsFor(u"Half the Way Home"_s));
        ASSERT_TRUE(ui.click(u"Previous track"_s, QAccessible::Button));
        EXPECT_TRUE(ui.waitsFor(u"Lamplight"_s));
    }
}

TEST_F(SmallPlayersTest, AFilePanelDrawnByTheToolkitHasAWindowOfItsOwn) {
    auto* mini = world.open(u"mini"_s);
    QuickFileChooser chooser(world.engine(), QUrl(u"qrc:/qt/qml/Halvane/"_s));
    const auto inFront = [] { return qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow()); };
    const FileChooserRequest folder{u"Add music"_s, u"Import"_s, {}, false, true};
    const FileChooserRequest files{u"Add music"_s, u"Import"_s, {}, true, false};
    const auto unwanted = [](const auto&) { ADD_FAILURE() << "nothing was chosen"; };
    const std::function<void()> panels[] = {
        [&] { chooser.choose(folder, unwanted); },
        [&] { chooser.choose(files, unwanted); },
        [&] {
            chooser.chooseTarget({u"Save"_s, u"Import"_s, u"夜.m3u8"_s}, unwanted);
        },
    };
    for (const auto& open : panels) {
        mini->requestActivate();
        ASSERT_TRUE(world.waitFor([&] { return inFront() == mini; }));
        open();
        ASSERT_TRUE(world.waitFor([&] { return inFront() && inFront() != mini; }));
        const QPointer<QWindow> window = inFront();
        // From Qt 6.8 on there is a window within the window.
        const auto shows = [&](const QString& text) {
            int found = 0;
            for (QWindow* each : QGuiApplication::allWindows())
                if (auto* shown = qobject_cast<QQuickWindow*>(each))
                    forEachItem(shown->contentItem(), [&](QQuickItem* item) {
                        found += item->isVisible() && item->property("text") == text;
                    });
            return found > 0;
        };
        EXPECT_TRUE(world.waitFor([&] { return shows(u"Import"_s); }));
        EXPECT_TRUE(world.waitFor([&] {
            if (auto* asked = inFront(); asked && asked != mini)
                WindowDriver(*asked).key(Qt::Key_Escape);
            return !window;
        }));
    }
}

TEST_F(SmallPlayersTest, AFileIsNamedByTypingInTheToolkitsPanel) {
    const QTemporaryDir folder;
    const std::pair<QString, QString> cases[] = {
        {u"other name"_s, u"/other name.json"_s},
        {u"100% #1?.json"_s, u"/100% #1?.json"_s},
        {folder.filePath(u"whole.json"_s), folder.filePath(u"whole.json"_s)},
    };
    auto* main = world.open(u"main"_s);
    for (const auto& [typed, end] : cases) {
        QuickFileChooser chooser(world.engine(), QUrl(u"qrc:/qt/qml/Halvane/"_s));
        QString chosen;
        main->requestActivate();
        ASSERT_TRUE(world.waitFor([&] { return QGuiApplication::focusWindow() != nullptr; }));
        chooser.chooseTarget({u"Save"_s, u"Export"_s, u"first.json"_s},
                             [&](const QString& path) { chosen = path; });
        const auto front = [] {
            return qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
        };
        ASSERT_TRUE(world.waitFor([&] {
            const auto* window = front();
            return window && window->activeFocusItem() &&
                   window->activeFocusItem()->objectName() == u"fileNameTextField"_s;
        }));
        WindowDriver ui(*front());
        ui.type(typed);
        ui.key(Qt::Key_Return);
        EXPECT_TRUE(world.waitFor([&] { return !chosen.isEmpty(); }));
        EXPECT_TRUE(chosen.endsWith(end)) << qPrintable(chosen);
        EXPECT_FALSE(chosen.contains(u"//"_s)) << qPrintable(chosen);
    }
}

TEST_F(SmallPlayersTest, TheMiniPlayersLineSeeksAndItsLengthTurnsRound) {
    world.furnish();
    WindowDriver ui(*world.open(u"mini"_s));
    library.transport()->togglePlayback();
    ASSERT_TRUE(ui.waitsFor(u"Playback"_s));
    auto* line = ui.find(u"Playback"_s, QAccessible::Slider);
    ASSERT_NE(line, nullptr);
    const QRect place(ui.window().mapFromGlobal(line->rect().topLeft()), line->rect().size());
    ui.drag({place.left() + 8, place.center().y()}, place.center());
    EXPECT_NEAR(library.progressClock()->progress(), 0.5, 0.05);
    EXPECT_FALSE(library.views()->showRemainingTime());
    ASSERT_TRUE(ui.click(u"4:21"_s, QAccessible::Button));
    EXPECT_TRUE(library.views()->showRemainingTime());
    EXPECT_TRUE(ui.waitsFor(u"-2:"_s));
}

TEST_F(SmallPlayersTest, ClosingTheMiniPlayerBringsTheMainWindowBack) {
    QQuickWindow* mini = world.open(u"mini"_s);
    EXPECT_EQ(mini->size(), QSize(480, 86));
    EXPECT_TRUE(library.views()->isMiniPlayerOpen());
    mini->close();
    EXPECT_TRUE(comesBack(u"main"_s));
    EXPECT_FALSE(library.views()->isMiniPlayerOpen());

    world.app().toggleMiniPlayer();
    EXPECT_TRUE(comesBack(u"mini"_s));
    EXPECT_TRUE(world.waitFor([&] { return !isOpen(u"main"_s); }));
    WindowDriver ui(*mini);
    ASSERT_TRUE(ui.click(u"Back to Main Window"_s, QAccessible::Button));
    EXPECT_TRUE(comesBack(u"main"_s));
    EXPECT_TRUE(world.waitFor([&] { return !isOpen(u"mini"_s); }));
}

TEST_F(SmallPlayersTest, TheMiniPlayerMakesWayForTheFullScreenOne) {
    QQuickWindow* mini = world.open(u"mini"_s);
    library.views()->setShowFullPlayer(true);
    mini->close();
    EXPECT_TRUE(world.waitFor([&] { return !library.views()->isMiniPlayerOpen(); }));
    EXPECT_FALSE(isOpen(u"main"_s));

    world.app().toggleFullScreen();
    world.open(u"mini"_s);
    world.app().toggleFullScreen();
    EXPECT_TRUE(library.views()->showFullPlayer());
    EXPECT_TRUE(isOpen(u"main"_s));
    EXPECT_TRUE(world.waitFor([&] { return !isOpen(u"mini"_s); }));
}

TEST_F(SmallPlayersTest, TheMiniPlayerTakesDroppedFiles) {
    GalleryWorld& gallery = world;
    QQuickWindow* mini = gallery.open(u"mini"_s);
    const int before = library.trackCount();
    const QString file = gallery.environment().folder.filePath(u"new.flac"_s);
    ASSERT_TRUE(QFile::copy(gallery.pathOf(0), file));
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(file)});
    QDragEnterEvent enter({200, 40}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(mini, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({200, 40}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(mini, &drop);
    EXPECT_TRUE(gallery.waitFor([&] { return library.trackCount() == before + 1; }));
}

TEST_F(SmallPlayersTest, ThePanelGoesOnEscAndOnAClickElsewhere) {
    WindowDriver panel(*world.open(u"panel"_s));
    EXPECT_EQ(panel.window().width(), 280);
    panel.key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !isOpen(u"panel"_s); }));

    WindowDriver main(*world.open(u"main"_s));
    const QPoint besideIcon(1300, 40); // which may have moved
    panel.window().setPosition(besideIcon);
    WindowDriver again(*world.open(u"panel"_s));
    EXPECT_EQ(again.window().position(), besideIcon);
    ASSERT_TRUE(again.window().isActive());
    main.window().requestActivate(); // what the window system does at a click there
    EXPECT_TRUE(world.waitFor([&] { return !isOpen(u"panel"_s); }));
    main.window().close();

    WindowDriver last(*world.open(u"panel"_s));
    ASSERT_TRUE(last.click(u"Back to Main Window"_s, QAccessible::Button));
    EXPECT_TRUE(comesBack(u"main"_s));
    EXPECT_TRUE(world.waitFor([&] { return !isOpen(u"panel"_s); }));
}

} // namespace
} // namespace halvane::test
