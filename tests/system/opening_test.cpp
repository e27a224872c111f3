// SPDX-License-Identifier: MIT
// Files and actions that are handed to the real program, and to the one that runs already.
#include "system/desktop_session.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <gtest/gtest.h>

#include <csignal>

using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

const auto program = QStringLiteral(HALVANE_PROGRAM);

class Opening : public testing::Test {
  protected:
    DesktopSession session;
};

} // namespace

TEST_F(Opening, HandsItsFilesToTheOneThatRuns) {
    session.makeTrack(u"a b.flac"_s, 30, u"Spaces"_s);
    session.makeTrack(u"歌.flac"_s, 30, u"Song"_s);
    session.makeTrack(u"folder/100%.flac"_s, 30, u"Encoded"_s);
    RunningProgram halvane(session);
    ASSERT_TRUE(halvane.isReady());
    // As a file manager does it, which reads the entry in the menus.
    const auto entry = session.home.filePath(u"org.halvane.Halvane.desktop"_s);
    QFile::copy(QStringLiteral(HALVANE_DESKTOP_ENTRY), entry);
    session.environment.insert(u"PATH"_s, QFileInfo(program).path() + u':' +
                                              session.environment.value(u"PATH"_s));
    const auto url = QUrl::fromLocalFile(session.home.filePath(u"folder/100%.flac"_s)).toEncoded();
    EXPECT_EQ(session.run(u"gio"_s, {u"launch"_s, entry, QString::fromLatin1(url)}).exitCode, 0);
    EXPECT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"Encoded"_s));
    const auto second = session.run(
        program, {u"folder/../folder"_s, u"missing.flac"_s, u"a b.flac"_s, u"歌.flac"_s});
    EXPECT_EQ(second.exitCode, 0) << second.errors.toStdString();
    EXPECT_TRUE(second.errors.contains(session.home.filePath(u"missing.flac"_s)));
    const auto none = session.run(program, {u"missing.flac"_s, u"gone"_s});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_TRUE(none.errors.contains(session.home.filePath(u"gone"_s)));
    EXPECT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"Spaces"_s))
        << "the first that is new";
    EXPECT_TRUE(halvane.answers({u"status"_s}, u"Playing"_s));
    EXPECT_EQ(session.run(program, {u"--action"_s, u"Next"_s}).exitCode, 0);
    EXPECT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"Song"_s));
    EXPECT_EQ(session.run(program, {u"--action"_s, u"PlayPause"_s}).exitCode, 0);
    EXPECT_TRUE(halvane.answers({u"status"_s}, u"Paused"_s));
    EXPECT_EQ(session.run(program, {u"--action"_s, u"Previous"_s}).exitCode, 0);
    EXPECT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"Spaces"_s));
    RecordProperty("second start, ms", static_cast<int>(second.milliseconds));

    // An instance that is killed while it is asked leaves its place to the second.
    const auto monitor = session.listen(
        u"dbus-monitor"_s, {u"type='method_call',interface='org.freedesktop.Application'"_s});
    ASSERT_TRUE(waitFor([&] { return monitor->count(u"NameLost"_s) > 0; }));
    halvane.signal(SIGSTOP);
    RunningProgram heir(session, {u"a b.flac"_s});
    ASSERT_TRUE(waitFor([&] { return monitor->count(u"member=Open"_s) > 0; }));
    halvane.signal(SIGKILL);
    EXPECT_TRUE(heir.answers({u"metadata"_s, u"title"_s}, u"Spaces"_s));
}

TEST_F(Opening, FilesOpenedTogetherPlayFromTheFirstOneOn) {
    const QString second = session.makeTrack(u"2.flac"_s, 60, u"Second"_s);
    const QString first = session.makeTrack(u"1.flac"_s, 60, u"First"_s);
    const QString third = session.makeTrack(u"3.flac"_s, 60, u"Third"_s);
    RunningProgram halvane(session, {u"2.flac"_s, u"1.flac"_s});
    ASSERT_TRUE(halvane.isReady());
    const auto title = [&](const QString& expected) {
        return halvane.answers({u"metadata"_s, u"title"_s}, expected);
    };
    EXPECT_TRUE(title(u"Second"_s));
    halvane.ask({u"next"_s});
    EXPECT_TRUE(title(u"First"_s)) << "in the order in which they were given";
    auto open = QDBusMessage::createMethodCall(u"org.halvane.Halvane"_s, u"/org/halvane/Halvane"_s,
                                               u"org.freedesktop.Application"_s, u"Open"_s);
    open << QStringList{QUrl::fromLocalFile(first).toString(),
                        QUrl::fromLocalFile(third).toString()}
         << QVariantMap();
    callAndWait(session.bus.connect(), open);
    EXPECT_TRUE(title(u"Third"_s)) << "the first new one";
    open.setArguments(
        {QStringList{QUrl::fromLocalFile(second).toString(), QUrl::fromLocalFile(third).toString()},
         QVariantMap()});
    callAndWait(session.bus.connect(), open);
    EXPECT_TRUE(title(u"Second"_s)) << "with none new, the first";
    EXPECT_TRUE(halvane.answers({u"status"_s}, u"Playing"_s));
    EXPECT_TRUE(
        waitFor([&] { return session.log().count(u"engine playing"_s) == 4; })) // each was heard
        << session.log().toStdString();
    // Opened while it plays, it plays on.
    EXPECT_TRUE(waitFor([&] { return halvane.ask({u"position"_s}).toDouble() > 0.5; }));
    EXPECT_EQ(session.run(program, {u"2.flac"_s}).exitCode, 0);
    EXPECT_TRUE(waitFor([&] { return session.log().count(u"import: 1 roots"_s) == 1; }));
    EXPECT_EQ(halvane.ask({u"status"_s}), u"Playing"_s);
    EXPECT_EQ(session.log().count(u"engine playing"_s), 4) << "and does not start over";
}

TEST_F(Opening, AnActionThatFindsNothingToPlayLeavesLaterFilesAlone) {
    session.makeTrack(u"a.flac"_s, 60, u"Later"_s);
    RunningProgram halvane(session, {u"--action"_s, u"PlayPause"_s});
    ASSERT_TRUE(halvane.isReady());
    EXPECT_EQ(session.run(program, {u"a.flac"_s}).exitCode, 0);
    EXPECT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"Later"_s));
    EXPECT_TRUE(waitFor([&] { return halvane.ask({u"position"_s}).toDouble() > 0.5; }));
    EXPECT_EQ(halvane.ask({u"status"_s}), u"Playing"_s);
}

TEST_F(Opening, AHandOverEndsTheLaunchersBusyCursor) {
    RunningProgram halvane(session);
    ASSERT_TRUE(halvane.isReady());
    const auto root = session.listen(u"xev"_s, {u"-root"_s});
    session.environment.insert(u"DESKTOP_STARTUP_ID"_s, u"launcher-1-host_TIME12345"_s);
    for (const auto& arguments : {QStringList(), QStringList{u"--action"_s, u"Next"_s}}) {
        const auto heard = root->count(u"_NET_STARTUP_INFO_BEGIN"_s);
        EXPECT_TRUE(waitFor([&] { // xev may only just have started
            return session.run(program, arguments).exitCode == 0 &&
                   root->count(u"_NET_STARTUP_INFO_BEGIN"_s) > heard;
        }));
    }
}

TEST_F(Opening, ASecondStartDoesNotOutlastWhatItWaitsFor) {
    session.makeTrack(u"a.flac"_s, 30, u"Waiting"_s);
    RunningProgram halvane(session);
    ASSERT_TRUE(halvane.isReady());
    const auto monitor = session.listen(
        u"dbus-monitor"_s, {u"type='method_call',interface='org.freedesktop.Application'"_s});
    ASSERT_TRUE(waitFor([&] { return monitor->count(u"NameLost"_s) > 0; }));
    halvane.signal(SIGSTOP);
    RunningProgram given(session, {u"a.flac"_s});
    ASSERT_TRUE(waitFor([&] { return monitor->count(u"member=Open"_s) == 1; }));
    given.terminate();
    EXPECT_TRUE(waitFor([&] { return !given.isRunning(); }));
    RunningProgram robbed(session, {u"a.flac"_s});
    ASSERT_TRUE(waitFor([&] { return monitor->count(u"member=Open"_s) == 2; }));
    session.bus.kill();
    EXPECT_EQ(robbed.exitCode(), 1) << "the session is over: no place for a player of its own";
    EXPECT_TRUE(session.log().contains(u"bus went away"_s)) << session.log().toStdString();
}
