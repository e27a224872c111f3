// SPDX-License-Identifier: MIT
// The real program on a Wayland compositor, which runs in a window of the private display: so the
// pointer that works it is a real one.
#include "system/desktop_session.h"

#include <QDir>
#include <QFile>
#include <QPoint>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

class Wayland : public testing::Test {
  protected:
    Wayland() {
        // The screen is as large as the window, so that the window can only stand in its corner.
        const auto configuration = session.home.filePath(u"weston.ini"_s);
        QFile file(configuration);
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("no folder for the compositor");
        file.write("[shell]\npanel-position=none\nstartup-animation=none\nlocking=false\n");
        file.close();
        m_compositor = std::make_unique<ChildProcess>(
            u"weston"_s,
            QStringList{u"--backend=x11-backend.so"_s, u"--socket=wayland-test"_s,
                        u"--config="_s + configuration, u"--width=1360"_s, u"--height=720"_s,
                        u"--use-pixman"_s, u"--idle-time=0"_s},
            session.environment, session.home.filePath(u"weston.log"_s));
        if (!waitFor(
                [&] { return QFile::exists(session.home.filePath(u"runtime/wayland-test"_s)); }))
            throw std::runtime_error("the private compositor does not start");
        session.environment.insert(u"WAYLAND_DISPLAY"_s, u"wayland-test"_s);
        session.environment.insert(u"QT_QPA_PLATFORM"_s, u"wayland"_s);
        session.environment.insert(u"WAYLAND_DEBUG"_s, u"1"_s);
    }

    // What the program and the compositor have said to each other so far.
    [[nodiscard]] QString talk() const { return session.log(); }
    [[nodiscard]] bool asked(const QString& pattern) const {
        return talk().contains(QRegularExpression(u"-> .*"_s + pattern));
    }
    // Moves the pointer, from the top left corner of the compositor's screen.
    void pointer(const QString& commands) {
        ASSERT_EQ(session.run(u"xdotool"_s, commands.split(u' ')).exitCode, 0);
    }
    [[nodiscard]] QString at(QPoint place) const {
        return u"mousemove %1 %2"_s.arg(place.x()).arg(place.y());
    }

    // Whether the program has heard of the pointer being at this place of its window.
    [[nodiscard]] bool isAt(QPoint inWindow) const {
        return talk().contains(QRegularExpression(
            uR"(wl_pointer[@#]\d+\.(enter\(\d+, wl_surface[@#]\d+|motion\(\d+), %1\.0+, %2\.0+\))"_s
                .arg(inWindow.x())
                .arg(inWindow.y())));
    }
    // Brings the pointer into the compositor's screen. It comes from outside, which tells the
    // compositor the place: of a pointer that was there before the screen, it may not know it, and
    // would count movements from a wrong one. A window that is not there yet hears nothing.
    void enterAt(QPoint inWindow) {
        const QPoint outside(1500, 900);
        ASSERT_TRUE(waitFor([&] {
            pointer(at(outside) + u' ' + at(inWindow));
            return isAt(inWindow);
        }));
    }
    void pointAt(QPoint inWindow) {
        pointer(at(inWindow));
        EXPECT_TRUE(waitFor([&] { return isAt(inWindow); }));
    }

    DesktopSession session;

  private:
    std::unique_ptr<ChildProcess> m_compositor;
};

} // namespace

TEST_F(Wayland, EveryWindowOpensAndIsDecoratedOnce) {
    const auto outcome =
        session.run(QStringLiteral(HALVANE_PROGRAM), {u"--screenshots"_s, u"pictures"_s}, 180'000);
    ASSERT_EQ(outcome.exitCode, 0);
    for (const auto& name : {u"main-albums"_s, u"mini"_s, u"help"_s, u"settings"_s, u"panel"_s})
        EXPECT_TRUE(QFile::exists(session.home.filePath(u"pictures/%1-en-1x.png"_s.arg(name))));
    const auto sizeAfter = [&](const QString& title) {
        const QRegularExpression geometry(
            u"set_title\\(\"%1\"\\)[^!]*?set_window_geometry\\(0, 0, (\\d+, \\d+)\\)"_s.arg(title));
        return geometry.match(outcome.errors).captured(1);
    };
    EXPECT_EQ(sizeAfter(u"Halvane"_s), u"1360, 720"_s) << "its own top row is its title bar";
    const auto decorated = sizeAfter(u"Halvane Help"_s);
    EXPECT_FALSE(decorated.isEmpty());
    EXPECT_NE(decorated, u"480, 560"_s) << "this one gets its title bar from the toolkit";
    EXPECT_FALSE(outcome.errors.contains(u"does not support"_s));
}

TEST_F(Wayland, TheCompositorMovesResizesAndMaximisesTheWindow) {
    RunningProgram halvane(session);
    ASSERT_TRUE(halvane.isReady());
    const QPoint bar(600, 12);
    enterAt(bar);
    pointer(u"click --repeat 2 --delay 40 1"_s);
    EXPECT_TRUE(waitFor([&] { return asked(u"xdg_toplevel[@#]\\d+\\.set_maximized"_s); }));
    pointAt(bar + QPoint(60, 0)); // so that this is no third click of the first two
    pointer(u"click --repeat 2 --delay 40 1"_s);
    EXPECT_TRUE(waitFor([&] {
        return asked(
            u"xdg_toplevel[@#]\\d+\\.unset_maximized[^!]*-> xdg_surface[@#]\\d+\\.ack_configure"_s);
    }));

    pointAt({1358, 718});
    pointer(u"mousedown 1 mousemove_relative -- -12 -12 mousemove_relative -- -20 -20 mouseup 1"_s);
    EXPECT_TRUE(waitFor([&] { return asked(u"xdg_toplevel[@#]\\d+\\.resize\\(.*, 10\\)"_s); }))
        << "by the corner";

    pointAt(bar);
    pointer(u"mousedown 1 mousemove_relative 2 1"_s);
    pointAt(bar + QPoint(2, 1));
    EXPECT_FALSE(asked(u"xdg_toplevel[@#]\\d+\\.move"_s)) << "a click that trembles moves nothing";
    pointer(u"mousemove_relative 12 12 mousemove_relative 12 12"_s);
    EXPECT_TRUE(waitFor([&] { return asked(u"xdg_toplevel[@#]\\d+\\.move"_s); }));
    pointer(u"mouseup 1"_s);
    halvane.terminate();
    EXPECT_EQ(halvane.exitCode(), 0);
}
