// SPDX-License-Identifier: MIT
// The real program beside a desktop's panel.
#include "system/desktop_session.h"

#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

// A desktop's panel that shows icons.
class StatusArea : public QDBusVirtualObject {
  public:
    static inline const QString name = u"org.kde.StatusNotifierWatcher"_s;

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        const bool isQuestion = message.member() == "Get"_L1;
        isOffered = isOffered || !isQuestion;
        return bus.send(isQuestion
                            ? message.createReply(QVariant::fromValue(QDBusVariant(QVariant(true))))
                            : message.createReply());
    }

    bool isOffered = false;
};

class Panel : public testing::Test {
  protected:
    DesktopSession session;
};

} // namespace

TEST_F(Panel, AClickOnTheTraysIconOpensThePanelBesideItAndClosesIt) {
    RunningProgram halvane(session);
    ASSERT_TRUE(halvane.isReady());
    auto desktop = session.bus.connect();
    const auto click = [&] {
        auto message =
            QDBusMessage::createMethodCall(u"org.halvane.Halvane"_s, u"/StatusNotifierItem"_s,
                                           u"org.kde.StatusNotifierItem"_s, u"Activate"_s);
        message.setArguments({800, 10});
        callAndWait(desktop, message);
    };
    const auto isBesideTheIcon = [&] {
        return session
            .run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Halvane$"_s,
                                u"getwindowgeometry"_s, u"--shell"_s, u"%@"_s})
            .output.contains(u"X=660\nY=18\nWIDTH=280\nHEIGHT=118"_s);
    };
    EXPECT_FALSE(isBesideTheIcon());
    click();
    EXPECT_TRUE(waitFor(isBesideTheIcon));
    click();
    EXPECT_TRUE(waitFor([&] { return !isBesideTheIcon(); }));

    // Its menu ends with the way out.
    const auto menu = [&](const QStringList& call) {
        return session
            .run(u"gdbus"_s,
                 QStringList{u"call"_s, u"--session"_s, u"--dest"_s, u"org.halvane.Halvane"_s,
                             u"--object-path"_s, u"/StatusNotifierItem/Menu"_s, u"--method"_s} +
                     call)
            .output;
    };
    QStringList entries;
    static const QRegularExpression entry(u"\\((\\d+), \\{'label': <'([^']*)'>"_s);
    for (auto found = entry.globalMatch(
             menu({u"com.canonical.dbusmenu.GetLayout"_s, u"0"_s, u"--"_s, u"-1"_s, u"[]"_s}));
         found.hasNext();) {
        const auto match = found.next();
        entries.append(match.captured(1) + u' ' + match.captured(2));
    }
    EXPECT_EQ(entries.value(0), u"1 Play"_s);
    ASSERT_EQ(entries.value(entries.size() - 1).section(u' ', 1), u"Quit"_s);
    menu({u"com.canonical.dbusmenu.Event"_s, entries.last().section(u' ', 0, 0), u"clicked"_s,
          u"<0>"_s, u"0"_s});
    EXPECT_EQ(halvane.exitCode(), 0);
}

TEST_F(Panel, APanelsRestartStrandsNeitherMusicNorWindows) {
    const auto manager = session.listen(u"openbox"_s, {});
    auto desktop = session.bus.connect();
    StatusArea area;
    desktop.registerVirtualObject(u"/StatusNotifierWatcher"_s, &area);
    desktop.registerService(StatusArea::name);
    RunningProgram halvane(session);
    ASSERT_TRUE(halvane.isReady());
    const auto windows = [&] {
        return session
            .run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Halvane$"_s,
                                u"getwindowgeometry"_s, u"%@"_s})
            .output.count(u"Geometry"_s);
    };
    ASSERT_TRUE(waitFor([&] { return area.isOffered && windows() == 1; }));
    EXPECT_TRUE(waitFor([&] {
        session.run(u"xdotool"_s, {u"key"_s, u"alt+F4"_s});
        return windows() == 0;
    }));
    auto click = QDBusMessage::createMethodCall(u"org.halvane.Halvane"_s, u"/StatusNotifierItem"_s,
                                                u"org.kde.StatusNotifierItem"_s, u"Activate"_s);
    click.setArguments({800, 10});
    callAndWait(desktop, click);
    EXPECT_TRUE(waitFor([&] { return windows() == 1; })) << "the panel";
    desktop.unregisterService(StatusArea::name);
    const auto other = session.listen(u"xev"_s, {u"-event"_s, u"focus"_s});
    EXPECT_TRUE(waitFor([&] { return windows() == 0; })) << "another window is in front";
    EXPECT_TRUE(waitFor([&] { return windows() == 1; })) << "the main window is back";
    EXPECT_TRUE(halvane.isRunning());
}
