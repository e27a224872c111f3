// SPDX-License-Identifier: MIT
// The real program on a desktop of its own, worked from outside.
#include "system/desktop_session.h"

#include <QDir>
#include <QFile>
#include <QRect>
#include <QUrl>

#include <gtest/gtest.h>

#include <csignal>

using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

const auto program = QStringLiteral(HALVANE_PROGRAM);

class Program : public testing::Test {
  protected:
    DesktopSession session;
};

} // namespace

TEST_F(Program, TalksToACommandLine) {
    const auto version = session.run(program, {u"--version"_s});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.output, u"Halvane 1.0.0\n"_s);
    EXPECT_TRUE(session.run(program, {u"--help"_s}).output.contains(u"--screenshots"_s));
    const auto nonsense = session.run(program, {u"--nonsense"_s});
    EXPECT_EQ(nonsense.exitCode, 2);
    EXPECT_TRUE(nonsense.errors.contains(u"nonsense"_s));
    EXPECT_EQ(session.run(program, {u"-session"_s, u"1a2b"_s, u"--version"_s}).exitCode, 0);
    const auto both = session.run(program, {u"--status"_s, u"--action"_s, u"Pause"_s});
    EXPECT_EQ(both.exitCode, 2);
    EXPECT_TRUE(both.errors.contains(u"--status"_s));
    session.environment.insert(u"DISPLAY"_s, u":9999"_s);
    const auto blind = session.run(program, {});
    EXPECT_EQ(blind.exitCode, 1);
    EXPECT_TRUE(blind.errors.contains(u"display"_s)) << blind.errors.toStdString();
}

TEST_F(Program, ObeysAMediaClient) {
    session.makeTrack(u"music/1 歌.flac"_s, 60, u"First"_s);
    session.makeTrack(u"music/2.flac"_s, 60, u"Second"_s);
    RunningProgram halvane(session, {u"music"_s});
    ASSERT_TRUE(halvane.isReady());
    EXPECT_EQ(session.run(u"playerctl"_s, {u"--list-all"_s}).output, u"halvane\n"_s);
    const auto monitor = session.listen(
        u"dbus-monitor"_s, {u"interface='org.mpris.MediaPlayer2.Player',member='Seeked'"_s});

    ASSERT_TRUE(halvane.answers({u"status"_s}, u"Playing"_s));
    ASSERT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"First"_s));
    EXPECT_EQ(halvane.ask({u"metadata"_s, u"artist"_s}), u"Artist"_s);
    EXPECT_EQ(halvane.ask({u"metadata"_s, u"mpris:length"_s}), u"60000000"_s);
    EXPECT_TRUE(
        halvane.ask({u"metadata"_s, u"xesam:url"_s}).endsWith(u"/music/1%20%E6%AD%8C.flac"_s));
    const QUrl art(halvane.ask({u"metadata"_s, u"mpris:artUrl"_s}));
    EXPECT_TRUE(QFile::exists(art.toLocalFile())) << art.toString().toStdString();

    halvane.ask({u"pause"_s});
    ASSERT_TRUE(halvane.answers({u"status"_s}, u"Paused"_s));
    halvane.ask({u"position"_s, u"30"_s});
    EXPECT_TRUE(halvane.answers({u"position"_s}, u"30.000000"_s));
    halvane.ask({u"position"_s, u"5-"_s});
    EXPECT_TRUE(halvane.answers({u"position"_s}, u"25.000000"_s));
    halvane.ask({u"play-pause"_s});
    ASSERT_TRUE(halvane.answers({u"status"_s}, u"Playing"_s));
    EXPECT_TRUE(waitFor([&] { return halvane.ask({u"position"_s}).toDouble() > 25.2; }));
    EXPECT_EQ(monitor->count(u"int64 30000000"_s), 1);
    EXPECT_EQ(monitor->count(u"int64 25000000"_s), 1);
    EXPECT_EQ(monitor->count(u"member=Seeked"_s), 2) << "nothing but a jump is one";

    halvane.ask({u"next"_s});
    EXPECT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"Second"_s));
    halvane.ask({u"previous"_s});
    EXPECT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"First"_s));
    halvane.ask({u"loop"_s, u"Track"_s});
    EXPECT_TRUE(halvane.answers({u"loop"_s}, u"Track"_s));
    halvane.ask({u"shuffle"_s, u"On"_s});
    EXPECT_TRUE(halvane.answers({u"shuffle"_s}, u"On"_s));
    halvane.ask({u"volume"_s, u"0.25"_s});
    EXPECT_TRUE(halvane.answers({u"volume"_s}, u"0.250000"_s));
    halvane.ask({u"stop"_s});
    EXPECT_TRUE(halvane.answers({u"status"_s}, u"Stopped"_s));
    halvane.ask({u"play"_s});
    EXPECT_TRUE(halvane.answers({u"status"_s}, u"Playing"_s));
    halvane.ask({u"open"_s, session.makeTrack(u"3 #.flac"_s, 60, u"Third"_s)});
    EXPECT_TRUE(halvane.answers({u"metadata"_s, u"title"_s}, u"Third"_s));
}

TEST_F(Program, TellsAFollowerOfAGaplessHandOver) {
    session.makeTrack(u"music/1.flac"_s, 4, u"First"_s);
    session.makeTrack(u"music/2.flac"_s, 60, u"Second"_s);
    const auto follower = session.listen(
        u"playerctl"_s, {u"--follow"_s, u"metadata"_s, u"--format"_s, u"<{{title}}>"_s});
    const auto monitor = session.listen(
        u"dbus-monitor"_s, {u"interface='org.mpris.MediaPlayer2.Player',member='Seeked'"_s});
    RunningProgram halvane(session, {u"music"_s});
    ASSERT_TRUE(halvane.isReady());
    EXPECT_TRUE(waitFor([&] { return follower->count(u"<Second>"_s) == 1; }, 20'000));
    EXPECT_EQ(follower->count(u"<First>"_s), 1);
    EXPECT_LT(halvane.ask({u"position"_s}).toDouble(), 20) << "counts from the start of the second";
    EXPECT_EQ(halvane.ask({u"status"_s}), u"Playing"_s);
    EXPECT_EQ(monitor->count(u"member=Seeked"_s), 0) << "going on is no jump";
}

TEST_F(Program, ShowsATrackInARealNotificationAndReplacesIt) {
    const auto server = session.listen(u"dunst"_s, {u"-print"_s});
    const auto other = session.listen(u"xev"_s, {u"-event"_s, u"focus"_s});
    session.makeTrack(u"music/1.flac"_s, 60, u"First"_s);
    session.makeTrack(u"music/2.flac"_s, 60, u"Second"_s);
    RunningProgram halvane(session, {u"music"_s});
    ASSERT_TRUE(halvane.isReady());
    ASSERT_TRUE(halvane.answers({u"status"_s}, u"Playing"_s));
    // Another window comes to the front.
    session.run(u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--name"_s, u"Event Tester"_s,
                               u"windowfocus"_s, u"--sync"_s});
    const auto isShown = [&](const QString& command, const QString& title) {
        halvane.ask({command});
        return server->count(u"summary: '%1'"_s.arg(title)) > 0;
    };
    // The program hears of it a moment later.
    EXPECT_TRUE(waitFor(
        [&] { return isShown(u"next"_s, u"Second"_s) && isShown(u"previous"_s, u"First"_s); }));
    EXPECT_GT(server->count(u"body: 'Artist - Album'"_s), 0);
    EXPECT_EQ(session.run(u"dunstctl"_s, {u"count"_s, u"displayed"_s}).output.trimmed(), u"1"_s);
}

TEST_F(Program, IsWorkedFromACommandLine) {
    const auto manager = session.listen(u"openbox"_s, {});
    const auto nobody = session.run(program, {u"--status"_s});
    EXPECT_EQ(nobody.exitCode, 1);
    EXPECT_TRUE(nobody.errors.contains(u"no Halvane is running"_s));

    session.makeTrack(u"music/1.flac"_s, 100, u"First"_s);
    session.makeTrack(u"music/2.flac"_s, 100, u"Second"_s);
    // As it stands on a command line: the files play, and the action that asks for it is done.
    RunningProgram halvane(session,
                           {u"--action"_s, u"PlayPause"_s, u"--action"_s, u"Rate=4"_s, u"music"_s});
    ASSERT_TRUE(halvane.isReady());
    const auto says = [&](const QString& format) {
        return session.run(program, {u"--status"_s, format}).output.trimmed();
    };
    ASSERT_TRUE(waitFor([&] { return says(u"{status} {title}"_s) == u"playing First"_s; }));
    struct Step {
        QString action;
        QString format;
        QString expected;
    };
    for (const Step& step : {
             Step{u"Pause"_s, u"{status}"_s, u"paused"_s},
             Step{u"Pause"_s, u"{status}"_s, u"paused"_s},
             Step{u"Seek=30"_s, u"{position}"_s, u"0:30"_s},
             Step{u"Seek=-10"_s, u"{position}"_s, u"0:20"_s},
             Step{u"Seek=+0:45"_s, u"{position}"_s, u"1:05"_s},
             Step{u"Seek=-500"_s, u"{position}"_s, u"0:00"_s},
             Step{u"Volume=40"_s, u"{volume}"_s, u"40%"_s},
             Step{u"Volume=+15%"_s, u"{volume}"_s, u"55%"_s},
             Step{u"Mute"_s, u"{volume}"_s, u"0%"_s},
             Step{u"Mute=on"_s, u"{volume}"_s, u"0%"_s},
             Step{u"Mute=off"_s, u"{volume}"_s, u"55%"_s},
             Step{u"Shuffle=on"_s, u"{shuffle}"_s, u"on"_s},
             Step{u"Shuffle"_s, u"{shuffle}"_s, u"off"_s},
             Step{u"Repeat"_s, u"{repeat}"_s, u"all"_s},
             Step{u"Repeat=one"_s, u"{repeat}"_s, u"one"_s},
             Step{u"Next"_s, u"{status} {title}"_s, u"playing Second"_s},
             Step{u"Previous"_s, u"{title}"_s, u"First"_s},
             Step{u"Stop"_s, u"{status}"_s, u"stopped"_s},
             Step{u"Play"_s, u"{status}"_s, u"playing"_s},
             Step{u"PlayPause"_s, u"{status}"_s, u"paused"_s},
         }) {
        EXPECT_EQ(session.run(program, {u"--action"_s, step.action}).exitCode, 0);
        EXPECT_TRUE(waitFor([&] { return says(step.format) == step.expected; }))
            << step.action.toStdString() << ": " << says(step.format).toStdString();
    }
    EXPECT_TRUE(says(u"json"_s).contains(u"\"album\":\"Album\""_s));

    // What is said of a track is stored, and the windows obey.
    const auto preferences = session.home.filePath(u"config/Halvane/preferences.sqlite"_s);
    const auto stored = [&](const QString& table, const QString& setting) {
        return session
            .run(u"sqlite3"_s,
                 {preferences, u"select item.* from %1 item join preference on id = preference "
                               "where key like '%%2'"_s.arg(table, setting)})
            .output;
    };
    EXPECT_EQ(session.run(program, {u"--action"_s, u"Love=on"_s}).exitCode, 0);
    EXPECT_TRUE(waitFor([&] {
        return stored(u"string_item"_s, u"LovedPaths"_s).contains(u"/music/1.flac\n"_s) &&
               stored(u"integer_entry"_s, u"TrackRatings"_s).contains(u"/music/1.flac|4\n"_s);
    }));
    const auto isShown = [&] {
        return session
                   .run(u"xdotool"_s,
                        {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Halvane$"_s})
                   .exitCode == 0;
    };
    for (const bool shown : {false, true}) {
        EXPECT_EQ(session.run(program, {u"--action"_s, u"ShowHide"_s}).exitCode, 0);
        EXPECT_TRUE(waitFor([&] { return isShown() == shown; })) << shown;
    }
    auto action =
        QDBusMessage::createMethodCall(u"org.halvane.Halvane"_s, u"/org/halvane/Halvane"_s,
                                       u"org.freedesktop.Application"_s, u"ActivateAction"_s);
    action << u"Dance"_s << QVariantList() << QVariantMap();
    EXPECT_EQ(callAndWait(session.bus.connect(), action).type(), QDBusMessage::ErrorMessage);

    // Files with an action are not forgotten.
    session.makeTrack(u"3.flac"_s, 100, u"Third"_s);
    EXPECT_EQ(session.run(program, {u"--action"_s, u"Next"_s, u"3.flac"_s}).exitCode, 0);
    EXPECT_TRUE(waitFor([&] { return says(u"{status} {title}"_s) == u"playing Third"_s; }));
    session.makeTrack(u"4.flac"_s, 100, u"Fourth"_s);
    EXPECT_EQ(session.run(program, {u"--action"_s, u"Pause"_s, u"4.flac"_s}).exitCode, 0);
    EXPECT_TRUE(waitFor([&] { return says(u"{status} {title}"_s) == u"paused Fourth"_s; }));
}

// Two clicks of a hand, under a window manager. The first one opens the pane of the album's tracks.
TEST_F(Program, ADoubleClickOnAnAlbumPlaysIt) {
    for (const QString& album : {u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"F"_s})
        session.makeTrack(u"music/%1.flac"_s.arg(album), 60, u"Song of "_s + album, album);
    const auto manager = session.listen(u"openbox"_s, {});
    RunningProgram halvane(session, {u"music"_s});
    ASSERT_TRUE(halvane.isReady());
    ASSERT_TRUE(halvane.answers({u"status"_s}, u"Playing"_s));
    const auto window = session
                            .run(u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--onlyvisible"_s,
                                                u"--name"_s, u"^Halvane$"_s})
                            .output.trimmed();
    ASSERT_EQ(session.run(u"xdotool"_s, {u"windowsize"_s, u"--sync"_s, window, u"1360"_s, u"720"_s})
                  .exitCode,
              0);
    struct Tile {
        QString album;
        QString x;
        QString y;
    };
    for (const auto& [album, x, y] :
         {Tile{u"C"_s, u"720"_s, u"430"_s}, Tile{u"A"_s, u"340"_s, u"230"_s}}) {
        EXPECT_EQ(session
                      .run(u"xdotool"_s,
                           {u"mousemove"_s, u"--window"_s, window, x, y, u"sleep"_s, u"0.3"_s,
                            u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"180"_s, u"1"_s})
                      .exitCode,
                  0);
        EXPECT_TRUE(halvane.answers({u"metadata"_s, u"album"_s}, album));
        EXPECT_EQ(halvane.ask({u"status"_s}), u"Playing"_s);
    }
}

TEST(Screens, TheWindowIsNoLargerThanItsScreenHasRoom) {
    struct Row {
        QString screen;
        QByteArray remembered; // empty: the first start
        QString expected;
    };
    const QByteArray large("[main]\nplace=@Rect(500 200 2400 1300)\nmaximized=false\n");
    for (const auto& [screen, remembered, expected] :
         {Row{u"1280x720"_s, {}, u"1280x720"_s}, Row{u"1024x600"_s, {}, u"1024x600"_s},
          Row{u"800x600"_s, {}, u"800x600"_s}, Row{u"1280x720"_s, large, u"1280x720"_s},
          Row{u"800x600"_s, large, u"800x600"_s}, Row{u"1600x1000"_s, {}, u"1360x720"_s}}) {
        SCOPED_TRACE((screen + QString::fromLatin1(remembered)).toStdString());
        DesktopSession session(screen);
        const auto manager = session.listen(u"openbox"_s, {});
        const auto state = session.home.filePath(u"state/Halvane"_s);
        QDir().mkpath(state);
        QFile places(state + u"/windows.ini"_s);
        ASSERT_TRUE(places.open(QIODevice::WriteOnly));
        places.write(remembered);
        places.close();
        RunningProgram halvane(session);
        ASSERT_TRUE(halvane.isReady());
        const auto placeOf = [&session](const QString& title) {
            const auto lines =
                session
                    .run(u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s,
                                        title, u"getwindowgeometry"_s, u"--shell"_s, u"%@"_s})
                    .output.split(u'\n');
            const auto value = [&lines](const QString& name) {
                return lines.filter(name + u'=').value(0).section(u'=', 1).toInt();
            };
            return QRect(value(u"X"_s), value(u"Y"_s), value(u"WIDTH"_s), value(u"HEIGHT"_s));
        };
        const QRect window = placeOf(u"^Halvane$"_s);
        EXPECT_EQ(u"%1x%2"_s.arg(window.width()).arg(window.height()), expected);
        const QRect area(0, 0, screen.section(u'x', 0, 0).toInt(), screen.section(u'x', 1).toInt());
        EXPECT_TRUE(area.contains(window))
            << window.x() << ' ' << window.y() << ": its edges are out of reach";
        // A window manager gives the focus after it has shown the window.
        session.run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Halvane$"_s,
                                   u"windowactivate"_s, u"--sync"_s, u"key"_s, u"ctrl+comma"_s});
        const int settings = placeOf(u"^Settings$"_s).height();
        EXPECT_TRUE(settings > 300 && settings < area.height()) << settings << " pixels high";
    }
}

TEST_F(Program, EndsCleanlyWhenItIsAskedTo) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        RunningProgram halvane(session, {u"--log"_s, u"error"_s});
        ASSERT_TRUE(halvane.isReady());
        halvane.signal(signal);
        EXPECT_EQ(halvane.exitCode(), 0) << signal;
    }
    EXPECT_FALSE(session.log().contains(u"bookmark restore"_s)) << "is no error";
    {
        std::signal(SIGHUP, SIG_IGN); // as nohup does for its child
        RunningProgram halvane(session);
        std::signal(SIGHUP, SIG_DFL);
        ASSERT_TRUE(halvane.isReady());
        halvane.signal(SIGHUP);
        EXPECT_EQ(halvane.ask({u"status"_s}), u"Stopped"_s) << "its terminal has closed";
        halvane.terminate();
        EXPECT_EQ(halvane.exitCode(), 0);
    }
    {
        RunningProgram halvane(session);
        ASSERT_TRUE(halvane.isReady());
        auto quit = QDBusMessage::createMethodCall(u"org.mpris.MediaPlayer2.halvane"_s,
                                                   u"/org/mpris/MediaPlayer2"_s,
                                                   u"org.mpris.MediaPlayer2"_s, u"Quit"_s);
        callAndWait(session.bus.connect(), quit);
        EXPECT_EQ(halvane.exitCode(), 0);
    }
    {
        RunningProgram halvane(session);
        ASSERT_TRUE(halvane.isReady());
        session.bus.kill();
        EXPECT_EQ(halvane.exitCode(), 0) << "a session without its bus is over";
    }
    EXPECT_TRUE(session.log().contains(u"bookmark restore: none stored"_s));
}

TEST_F(Program, RunsAloneWithoutABus) {
    session.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
    session.makeTrack(u"a.flac"_s, 60, u"Alone"_s);
    RunningProgram halvane(session, {u"a.flac"_s});
    EXPECT_TRUE(waitFor([&] { return session.log().contains(u"engine playing, duration=60"_s); }));
    EXPECT_EQ(session
                  .run(u"xdotool"_s,
                       {u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s, u"^Halvane$"_s})
                  .exitCode,
              0);
    halvane.terminate();
    EXPECT_EQ(halvane.exitCode(), 0);
}
