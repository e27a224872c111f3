// SPDX-License-Identifier: MIT
// The real program on disks that do not answer: what is asked of it it does at once all the same.
#include "support/held_file.h"
#include "system/desktop_session.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

// Far above what a busy machine takes, far below a disk that does not answer at all.
constexpr int promptly = 1000; // ms
constexpr int longest = 5000;  // ms, until the program has ended

/// Closes the gate in front of a folder for as long as it lives.
class ClosedGate {
  public:
    explicit ClosedGate(const QString& lock)
        : m_descriptor(::open(lock.toUtf8().constData(), O_RDONLY | O_CLOEXEC)) {
        EXPECT_EQ(::flock(m_descriptor, LOCK_EX), 0);
    }
    ~ClosedGate() { ::close(m_descriptor); }
    ClosedGate(const ClosedGate&) = delete;
    ClosedGate& operator=(const ClosedGate&) = delete;

  private:
    int m_descriptor;
};

class SlowDisk : public testing::Test {
  protected:
    /// Three tracks, of which the second lies on another disk. The first plays, and no other is
    /// opened ahead of its time.
    void start() {
        session.makeTrack(u"music/1/first.flac"_s, 60, u"First"_s);
        second = session.makeTrack(u"music/2/second.flac"_s, 60, u"Second"_s);
        session.makeTrack(u"music/3/third.flac"_s, 60, u"Third"_s);
        lock = session.home.filePath(u"music/2.lock"_s);
        ASSERT_TRUE(QFile(lock).open(QIODevice::WriteOnly));
        session.environment.insert(u"HALVANE_TEST_DISK"_s, session.home.filePath(u"music/2"_s));
        session.environment.insert(u"LD_PRELOAD"_s, QStringLiteral(HALVANE_DISK_GATE));
        // The address sanitizer wants to be the first library, unless it is told otherwise.
        session.environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0:verify_asan_link_order=0"_s);
        halvane = std::make_unique<RunningProgram>(session, QStringList{u"music"_s});
        session.environment.remove(u"LD_PRELOAD"_s);
        ASSERT_TRUE(halvane->isReady());
        ASSERT_TRUE(halvane->answers({u"status"_s}, u"Playing"_s));
        ASSERT_TRUE(waitFor([&] { return session.log().contains(u"import"_s); }));
        bus = std::make_unique<QDBusConnection>(session.bus.connect());
        halvane->ask({u"loop"_s, u"Track"_s}); // so that nothing follows without a gap
        ASSERT_TRUE(halvane->answers({u"loop"_s}, u"Track"_s));
        ASSERT_TRUE(waitFor([&] {
            call(u"Previous"_s);
            return title() == u"First"_s;
        }));
    }
    /// The time until the program has answered, in ms.
    int call(const QString& method) {
        QElapsedTimer since;
        since.start();
        auto message = QDBusMessage::createMethodCall(u"org.mpris.MediaPlayer2.halvane"_s,
                                                      u"/org/mpris/MediaPlayer2"_s,
                                                      u"org.mpris.MediaPlayer2.Player"_s, method);
        callAndWait(*bus, message);
        slowest = std::max(slowest, int(since.elapsed()));
        return int(since.elapsed());
    }
    QVariant property(const QString& name) {
        QElapsedTimer since;
        since.start();
        auto message = QDBusMessage::createMethodCall(
            u"org.mpris.MediaPlayer2.halvane"_s, u"/org/mpris/MediaPlayer2"_s,
            u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        message << u"org.mpris.MediaPlayer2.Player"_s << name;
        const auto reply = callAndWait(*bus, message);
        slowest = std::max(slowest, int(since.elapsed()));
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }
    QString status() { return property(u"PlaybackStatus"_s).toString(); }
    qlonglong position() { return property(u"Position"_s).toLongLong(); }
    QString title() { return halvane->ask({u"metadata"_s, u"title"_s}); }

    /// The second track has been asked for and does not come.
    void expectTheRestGoesOn() {
        slowest = 0;
        call(u"Next"_s);
        EXPECT_EQ(status(), u"Playing"_s) << "as it was asked to";
        EXPECT_EQ(title(), u"Second"_s);
        EXPECT_EQ(position(), 0);
        call(u"PlayPause"_s);
        EXPECT_EQ(status(), u"Paused"_s);
        call(u"PlayPause"_s);
        QElapsedTimer since;
        since.start();
        call(u"Next"_s);
        EXPECT_TRUE(waitFor([&] { return position() > 0; }));
        const auto heardAfter = since.elapsed();
        EXPECT_EQ(title(), u"Third"_s);
        EXPECT_EQ(status(), u"Playing"_s);
        call(u"Previous"_s);
        EXPECT_EQ(title(), u"Second"_s);
        EXPECT_LT(slowest, promptly);
        since.restart();
        halvane->terminate();
        EXPECT_EQ(halvane->exitCode(), 0);
        EXPECT_LT(since.elapsed(), longest);
        std::printf("slowest answer %d ms, next track heard after %d ms, ended after %d ms\n",
                    slowest, int(heardAfter), int(since.elapsed()));
    }

    DesktopSession session;
    QString second;
    QString lock;
    std::unique_ptr<RunningProgram> halvane;
    std::unique_ptr<QDBusConnection> bus;
    int slowest = 0; ///< answer, in ms
};

} // namespace

TEST_F(SlowDisk, HoldsNobodyUpWhileAFileIsBeingOpened) {
    ASSERT_NO_FATAL_FAILURE(start());
    const HeldFile held(second);
    if (!held.isHeld())
        GTEST_SKIP() << "the temporary folder's file system gives no leases";
    expectTheRestGoesOn();
    EXPECT_TRUE(held.wasTried());
}

TEST_F(SlowDisk, HoldsNobodyUpWhileAFileIsBeingRead) {
    ASSERT_NO_FATAL_FAILURE(start());
    const ClosedGate closed(lock);
    expectTheRestGoesOn();
}

// It has been playing and its disk stops answering: only what has been read already is heard.
TEST_F(SlowDisk, HoldsNobodyUpWhileAFileThatPlaysIsBeingRead) {
    ASSERT_NO_FATAL_FAILURE(start());
    call(u"Next"_s);
    ASSERT_TRUE(waitFor([&] { return position() > 0; }));
    const ClosedGate closed(lock);
    halvane->ask({u"position"_s, u"40"_s});
    call(u"Previous"_s);
    ASSERT_TRUE(waitFor([&] { return title() == u"First"_s && position() > 0; }));
    expectTheRestGoesOn();
}

// Playback gets there by itself, and perhaps nobody looks: the music goes on all the same.
TEST_F(SlowDisk, IsPassedOverByWhatFollows) {
    ASSERT_NO_FATAL_FAILURE(start());
    const ClosedGate closed(lock);
    halvane->ask({u"loop"_s, u"None"_s});
    halvane->ask({u"position"_s, u"58"_s});
    constexpr int patience = 40'000; // ms
    EXPECT_TRUE(waitFor([&] { return title() == u"Second"_s; }, patience));
    EXPECT_EQ(status(), u"Playing"_s);
    EXPECT_TRUE(waitFor([&] { return title() == u"Third"_s && position() > 0; }, patience));
    EXPECT_EQ(status(), u"Playing"_s);
}
