// SPDX-License-Identifier: MIT
// The real program among cover files that hang, never end or claim to be enormous: other covers are
// shown, memory stays bounded, and the program ends when it is asked to.
#include "support/audio_material.h"
#include "system/desktop_session.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

constexpr int longest = 5000; // ms, until the program has ended
constexpr QRgb shown = qRgb(255, 0, 255);
constexpr int leastPoints = 2000; // of a tile, of which every fourth is counted

class HostileCovers : public testing::Test {
  protected:
    /// The cover's place in an album of one track. The folder's name is the album's.
    QString album(const QString& name) {
        const QString folder = session.home.filePath(u"music/"_s + name);
        QDir().mkpath(folder);
        writeWave(sine(440, 0.5, 8000, 8000, 1), folder + u"/track.wav"_s);
        return folder + u"/cover.png"_s;
    }
    /// A picture, of one colour and of noise, so that it is read in more than one go.
    static void paint(const QString& path) {
        QImage picture(500, 500, QImage::Format_RGB32);
        quint32 noise = 1;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                picture.setPixel(x, y, y < 400 ? shown : noise = noise * 1664525 + 1013904223);
        ASSERT_TRUE(picture.save(path));
        ASSERT_GT(QFile(path).size(), 16'000);
    }
    /// A few bytes that claim to be many.
    static void paintBomb(const QString& path) {
        const auto outcome =
            QProcess::execute(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s, u"-i"_s,
                                            u"color=black:size=12000x12000:rate=1"_s, u"-pix_fmt"_s,
                                            u"monob"_s, u"-frames:v"_s, u"1"_s, path});
        ASSERT_EQ(outcome, 0);
    }
    /// Starts the program on a disk whose files hang when they are read.
    void start(const QString& disk, const QStringList& arguments) {
        session.environment.insert(u"HALVANE_TEST_DISK"_s, disk);
        session.environment.insert(u"LD_PRELOAD"_s, QStringLiteral(HALVANE_DISK_GATE));
        // The address sanitizer wants to be the first library, unless it is told otherwise.
        session.environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0:verify_asan_link_order=0"_s);
        halvane = std::make_unique<RunningProgram>(session, arguments);
        session.environment.remove(u"LD_PRELOAD"_s);
        ASSERT_TRUE(halvane->isReady());
    }
    /// How many points of the screen have the colour of the covers that can be shown.
    int pointsShown() {
        const QString file = session.home.filePath(u"screen.png"_s);
        session.run(u"import"_s, {u"-window"_s, u"root"_s, file});
        const QImage screen(file);
        int count = 0;
        for (int y = 0; y < screen.height(); y += 2)
            for (int x = 0; x < screen.width(); x += 2)
                count += screen.pixel(x, y) == shown;
        return count;
    }
    /// The most memory that the program has taken so far, in MB.
    int mostMemory() const {
        QFile status(u"/proc/%1/status"_s.arg(halvane->processId()));
        if (!status.open(QIODevice::ReadOnly))
            return -1;
        const QRegularExpression peak(u"VmHWM:\\s*(\\d+) kB"_s);
        return peak.match(QString::fromLatin1(status.readAll())).captured(1).toInt() / 1000;
    }

    DesktopSession session;
    std::unique_ptr<RunningProgram> halvane;
};

} // namespace

TEST_F(HostileCovers, HarmNothingButTheirOwnAlbum) {
    album(u"0 plays"_s);
    for (const QString& name : {u"b pipe"_s, u"c pipe"_s, u"d pipe"_s})
        ASSERT_EQ(::mkfifo(album(name).toUtf8().constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, album(u"e zero"_s)));
    for (const QString& name : {u"f huge"_s, u"g huge"_s}) {
        QFile huge(album(name));
        ASSERT_TRUE(huge.open(QIODevice::WriteOnly) && huge.resize(1'500'000'000));
    }
    paintBomb(album(u"h bomb"_s));
    const QString disk = session.home.filePath(u"music/i dead"_s);
    for (const QString& name : {u"i dead/1"_s, u"i dead/2"_s, u"i dead/3"_s})
        paint(album(name));
    paint(album(u"A healthy"_s)); // in view, and after those that hang
    const QString lock = disk + u".lock"_s;
    ASSERT_TRUE(QFile(lock).open(QIODevice::WriteOnly));
    const int gate = ::open(lock.toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(gate, LOCK_EX), 0);

    start(disk, {u"music"_s});
    int one = 0;
    ASSERT_TRUE(waitFor([&] { return (one = pointsShown()) > leastPoints; }));
    std::printf("%d MB at most\n", mostMemory());
    EXPECT_LT(mostMemory(), 1000);
    QElapsedTimer since;
    since.start();
    halvane->terminate();
    EXPECT_EQ(halvane->exitCode(), 0);
    EXPECT_LT(since.elapsed(), longest);

    // The library is restored, and the disk answers after a while.
    start(disk, {});
    ASSERT_TRUE(waitFor([&] { return pointsShown() > leastPoints; }));
    ::close(gate);
    EXPECT_TRUE(waitFor([&] { return pointsShown() > 3 * one; }));
}
