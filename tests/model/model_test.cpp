// SPDX-License-Identifier: MIT
#include "model/album.h"
#include "model/color.h"
#include "model/enums.h"
#include "model/picture_file.h"
#include "model/queue_item.h"
#include "model/raw_value.h"
#include "model/track.h"
#include "support/manual_clock.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace halvane;
using namespace Qt::StringLiterals;

TEST(FileUrl, IsIdentifiedByItsStandardizedPath) {
    const struct {
        QString path, standardized;
    } cases[] = {
        {u"/Music/a.flac"_s, u"/Music/a.flac"_s},
        {u"/Music/./a.flac"_s, u"/Music/a.flac"_s},
        {u"/Music//x/../a.flac"_s, u"/Music/a.flac"_s},
        {u"/Music/"_s, u"/Music"_s},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FileUrl(c.path).standardizedPath(), c.standardized);
        EXPECT_EQ(FileUrl(c.path).path(), c.path);
    }
}

TEST(PictureFile, ReadsRegularFilesOfAPicturesSize) {
    const QTemporaryDir folder;
    const auto path = [&](const QString& name) { return folder.filePath(name); };
    const auto write = [&](const QString& name, qint64 size) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(size)); // a hole takes no room
    };
    write(u"cover"_s, 3'000'000);
    write(u"largest"_s, largestPictureFile);
    write(u"too large"_s, largestPictureFile + 1);
    write(u"empty"_s, 0);
    ASSERT_EQ(::mkfifo(path(u"pipe"_s).toUtf8().constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, path(u"zero"_s)));
    ASSERT_TRUE(QFile::link(path(u"cover"_s), path(u"link"_s)));
    const struct {
        QString name;
        qint64 bytes;
        bool hasStamp;
    } cases[] = {
        {u"cover"_s, 3'000'000, true}, {u"link"_s, 3'000'000, true}, {u"largest"_s, 64 << 20, true},
        {u"too large"_s, 0, true},     {u"empty"_s, 0, true},        {u"pipe"_s, 0, false},
        {u"zero"_s, 0, false},         {u"."_s, 0, false},           {u"missing"_s, 0, false},
    };
    for (const auto& c : cases) {
        const PictureFile read = readPictureFile(path(c.name));
        EXPECT_EQ(read.bytes.size(), c.bytes) << qPrintable(c.name);
        EXPECT_EQ(read.stamp != FileStamp(), c.hasStamp) << qPrintable(c.name);
        EXPECT_EQ(read.stamp, fileStamp(path(c.name))) << qPrintable(c.name);
    }
    write(u"cover"_s, 2'999'999);
    EXPECT_NE(fileStamp(path(u"cover"_s)), readPictureFile(path(u"largest"_s)).stamp);
}

TEST(RawValue, TakesExactlyTheCaseNames) {
    EXPECT_EQ(rawValue(PlaybackRepeatMode::one), u"one"_s);
    EXPECT_EQ(fromRawValue<PlaybackRepeatMode>(u"all"_s), PlaybackRepeatMode::all);
    for (const QString& wrong : {u"ALL"_s, u""_s, u"All"_s, u"PlaybackRepeatMode::all"_s, u"1"_s})
        EXPECT_FALSE(fromRawValue<PlaybackRepeatMode>(wrong)) << wrong.toStdString();
}

TEST(ModelValues, EveryFieldCountsForEqualityAndHash) {
    QueueItem item;
    item.sourceURL = FileUrl(u"/Music/a.flac"_s);
    QueueItem changed = item;
    EXPECT_EQ(changed, item);
    EXPECT_EQ(qHash(changed), qHash(item));
    changed.isPlaying = true;
    EXPECT_NE(changed, item);
    EXPECT_NE(qHash(changed), qHash(item));

    QueueItem sameFile;
    sameFile.sourceURL = item.sourceURL;
    EXPECT_NE(sameFile, item) << "two entries of one file are two entries";

    Track track;
    Track withZeroLength;
    withZeroLength.id = track.id;
    withZeroLength.durationSeconds = 0;
    EXPECT_NE(qHash(withZeroLength), qHash(track)) << "absent is not zero";
}

TEST(Artwork, EqualWhenItNamesTheSamePicture) {
    const Artwork a = Artwork::fromBytes("picture");
    EXPECT_EQ(a, Artwork::fromBytes("picture"));
    EXPECT_FALSE(a == Artwork::fromBytes("other"));
    EXPECT_EQ(a.read(), "picture");
    EXPECT_TRUE(Artwork::fromFile(u"/nowhere"_s).read().isEmpty());
}

TEST(Album, IdIsTrimmedAndLowerCased) {
    EXPECT_EQ(Album::makeID(u" Night Walk\n"_s, u"The Lanterns"_s, u"local"_s),
              u"local|the lanterns|night walk"_s);
    EXPECT_EQ(Album::makeID(u" "_s, u""_s, u"local"_s), u"local|unknown"_s);
}

TEST(Color, HsbRoundTrips) {
    for (const Color& c : {Color{0.1, 0.7, 0.4, 1}, Color{1, 0, 0, 1}, Color{0.2, 0.1, 0.9, 1},
                           Color{0.5, 0.5, 0.5, 1}, Color{0, 0, 0, 1}}) {
        const Color back = colorFromHsb(hsbOf(c));
        EXPECT_NEAR(back.red, c.red, 1e-12);
        EXPECT_NEAR(back.green, c.green, 1e-12);
        EXPECT_NEAR(back.blue, c.blue, 1e-12);
    }
}

TEST(ManualClock, FiresTimersInOrderAndForgetsCancelledOnes) {
    test::ManualClock clock;
    std::string fired;
    auto late = clock.after(std::chrono::seconds(2), [&] { fired += 'b'; });
    auto tick = clock.every(std::chrono::milliseconds(250), [&] { fired += '.'; });
    auto cancelled = clock.after(std::chrono::seconds(1), [&] { fired += 'x'; });
    cancelled.reset();
    clock.advance(std::chrono::seconds(1));
    tick.reset();
    clock.advance(std::chrono::seconds(5));
    EXPECT_EQ(fired, "....b");
}
