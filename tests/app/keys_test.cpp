// SPDX-License-Identifier: MIT
#include "app/app_delegate.h"
#include "app/commands/commands.h"
#include "gallery/gallery_environment.h"
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "support/child_process.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gmock/gmock.h>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

// A window with a text field and a button, and the program's commands over it.
class Keys : public testing::Test {
  protected:
    Keys() {
        const auto note = [this](const QString& what) {
            return [this, what] { asked.append(what); };
        };
        QObject::connect(&commands, &Commands::windowAsked, &commands,
                         [this](const QString& id) { asked.append(u"open "_s + id); });
        QObject::connect(&commands, &Commands::searchAsked, &commands, note(u"find"_s));
        QObject::connect(&commands, &Commands::miniPlayerToggled, &commands, note(u"mini"_s));
        QObject::connect(&commands, &Commands::fullScreenToggled, &commands, note(u"full"_s));
        QQmlComponent component(&engine);
        component.setData("import QtQuick; import QtQuick.Templates as T\n"
                          "Window { visible: true; width: 200; height: 100\n"
                          "  TextInput { objectName: 'text'; width: 100; height: 20 }\n"
                          "  T.Button { objectName: 'button'; y: 40; width: 100; height: 20 } }",
                          {});
        window.reset(qobject_cast<QQuickWindow*>(component.create()));
        window->requestActivate();
        waitFor([this] { return window->isActive(); });
    }
    QQuickItem* item(const QString& name) { return window->findChild<QQuickItem*>(name); }
    // With nothing to play, an attempt to play says so in the status line.
    [[nodiscard]] bool hasTriedToPlay() const { return !library.status()->text().isEmpty(); }

    GalleryEnvironment environment;
    LibraryViewModel library{environment};
    QStringList asked;
    Commands commands{library};
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;
};

} // namespace

TEST_F(Keys, WorkInEveryWindow) {
    QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_M, Qt::ControlModifier | Qt::MetaModifier);
    QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier | Qt::MetaModifier);
    QTest::keyClick(window.get(), Qt::Key_Comma, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_Question, Qt::ControlModifier);
    EXPECT_THAT(asked,
                ElementsAre(u"find"_s, u"mini"_s, u"full"_s, u"open settings"_s, u"open help"_s));
    library.transport()->setVolume(0.5);
    QTest::keyClick(window.get(), Qt::Key_Up, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(library.transport()->volume(), 0.5625);
    const bool panel = library.views()->showNowPlayingPanel();
    QTest::keyClick(window.get(), Qt::Key_N, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_NE(library.views()->showNowPlayingPanel(), panel);
}

TEST_F(Keys, ATextFieldKeepsSpaceAndItsOwnCommandsButNotTheOthers) {
    auto* text = item(u"text"_s);
    text->forceActiveFocus();
    ASSERT_TRUE(commands.find(CommandId::paste).isEnabled());
    QTest::keyClick(window.get(), Qt::Key_A);
    QTest::keyClick(window.get(), Qt::Key_Space);
    EXPECT_EQ(text->property("text").toString(), u"a "_s);
    EXPECT_FALSE(hasTriedToPlay());
    QTest::keyClick(window.get(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(text->property("selectedText").toString(), u"a "_s);
    // The field would move its cursor by a word.
    QTest::keyClick(window.get(), Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(text->property("selectedText").toString(), u"a "_s) << "the command has that key";

    library.views()->setSearchFieldFocused(true);
    EXPECT_FALSE(commands.find(CommandId::playPause).isEnabled());
    EXPECT_TRUE(commands.find(CommandId::nextTrack).isEnabled());
}

TEST_F(Keys, SpacePlaysUnlessAButtonWasReachedByKeyboard) {
    auto* button = item(u"button"_s);
    button->forceActiveFocus(Qt::TabFocusReason);
    ASSERT_TRUE(button->property("visualFocus").toBool());
    QTest::keyPress(window.get(), Qt::Key_Space);
    EXPECT_TRUE(button->property("pressed").toBool());
    QTest::keyRelease(window.get(), Qt::Key_Space);
    EXPECT_FALSE(hasTriedToPlay());

    button->setFocus(false);
    QTest::keyClick(window.get(), Qt::Key_Space);
    EXPECT_TRUE(hasTriedToPlay());
}

TEST_F(Keys, TitlesFollowTheLibraryAndStayEnglish) {
    library.language()->setLanguageSetting(AppLanguage::simplifiedChinese);
    auto& shuffle = commands.find(CommandId::toggleShuffle);
    EXPECT_EQ(shuffle.title(), u"Shuffle on"_s);
    shuffle.trigger();
    EXPECT_TRUE(library.transport()->isShuffleEnabled());
    EXPECT_EQ(shuffle.title(), u"Shuffle off"_s);
    auto& repeat = commands.find(CommandId::advanceRepeatMode);
    repeat.trigger();
    EXPECT_EQ(repeat.title(), u"Repeat playlist"_s);
}

TEST_F(Keys, TheDockMenuReachesTheLibrary) {
    AppDelegate delegate;
    delegate.library = &library;
    delegate.dockMenu().front().action();
    EXPECT_TRUE(hasTriedToPlay());
}
