// SPDX-License-Identifier: MIT
// A person copies, renames and deletes files in a folder that the real program has been given.
// Tracks of different lengths are different sounds.
#include "system/desktop_session.h"

#include <QDir>
#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

class FollowedFolders : public testing::Test {
  protected:
    /// Waits until there is something after the current track, or nothing any more.
    bool canGoNext(bool can) {
        return waitFor([&] {
            const QString answer =
                session
                    .run(u"gdbus"_s, {u"call"_s, u"--session"_s, u"--dest"_s,
                                      u"org.mpris.MediaPlayer2.halvane"_s, u"--object-path"_s,
                                      u"/org/mpris/MediaPlayer2"_s, u"--method"_s,
                                      u"org.freedesktop.DBus.Properties.Get"_s,
                                      u"org.mpris.MediaPlayer2.Player"_s, u"CanGoNext"_s})
                    .output;
            return answer.contains(can ? u"true"_s : u"false"_s);
        });
    }
    bool title(RunningProgram& halvane, const QString& expected) {
        return halvane.answers({u"metadata"_s, u"title"_s}, expected);
    }

    DesktopSession session;
};

} // namespace

TEST_F(FollowedFolders, AreFollowedWhileTheProgramRunsAndFromOneRunToTheNext) {
    session.makeTrack(u"Music/1.flac"_s, 60, u"First"_s);
    {
        RunningProgram halvane(session, {u"Music"_s});
        ASSERT_TRUE(halvane.isReady());
        ASSERT_TRUE(title(halvane, u"First"_s));
        ASSERT_TRUE(canGoNext(false));
        session.makeTrack(u"Music/New Album/2.flac"_s, 61, u"Second"_s);
        QElapsedTimer since;
        since.start();
        EXPECT_TRUE(canGoNext(true)) << "it has joined the queue";
        RecordProperty("a copied track joins after, ms", static_cast<int>(since.elapsed()));
        EXPECT_TRUE(halvane.answers({u"status"_s}, u"Playing"_s));
        EXPECT_TRUE(title(halvane, u"First"_s));
        ASSERT_TRUE(QDir(session.home.path()).rename(u"Music/New Album"_s, u"Music/Renamed"_s));
        ASSERT_TRUE(waitFor([&] { return session.log().count(u"import: 1 roots, 1"_s) == 3; }));
        halvane.ask({u"next"_s});
        EXPECT_TRUE(title(halvane, u"Second"_s));
        halvane.terminate();
        EXPECT_EQ(halvane.exitCode(), 0);
    }
    session.makeTrack(u"Music/Renamed/3.flac"_s, 62, u"Third"_s);
    ASSERT_TRUE(QFile::remove(session.home.filePath(u"Music/1.flac"_s)));
    RunningProgram halvane(session);
    ASSERT_TRUE(halvane.isReady());
    ASSERT_TRUE(canGoNext(true)); // the library is there
    halvane.ask({u"play"_s});
    EXPECT_TRUE(title(halvane, u"Second"_s)) << session.log().toStdString();
    ASSERT_TRUE(canGoNext(true));
    halvane.ask({u"next"_s});
    EXPECT_TRUE(title(halvane, u"Third"_s));
    EXPECT_FALSE(session.log().contains(u"QML"_s)) << session.log().toStdString();
}
