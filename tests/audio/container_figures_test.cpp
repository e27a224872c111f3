// SPDX-License-Identifier: MIT
#include "audio/container_figures.h"
#include "audio/frame_index.h"

#include <QBuffer>
#include <QtEndian>

#include <gtest/gtest.h>

namespace halvane {
namespace {

template<typename T>
QByteArray number(T value) {
    QByteArray bytes(sizeof(T), '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray box(const char* type, const QByteArray& body) {
    return number(quint32(8 + body.size())) + QByteArray(type, 4) + body;
}

struct Movie {
    quint32 movieClock = 1000;
    quint32 mediaClock = 44'100;
    quint32 mediaDuration = 0;
    QList<std::pair<quint32, qint32>> edits; ///< duration in movie ticks, media time
};

QByteArray movie(const Movie& m) {
    const QByteArray dates(12, '\0'); // version, flags, two dates
    QByteArray edits = number(quint32(0)) + number(quint32(m.edits.size()));
    for (const auto& [duration, mediaTime] : m.edits)
        edits += number(duration) + number(mediaTime) + number(quint32(0x10000));
    return box("ftyp", "M4A 0000") + box("free", QByteArray(1000, 'x')) +
           box("moov",
               box("mvhd", dates + number(m.movieClock) + number(quint32(0))) +
                   box("trak",
                       box("tkhd", dates + number(quint32(7)) + QByteArray(8, '\0')) +
                           (m.edits.isEmpty() ? QByteArray() : box("edts", box("elst", edits))) +
                           box("mdia", box("mdhd", dates + number(m.mediaClock) +
                                                       number(m.mediaDuration)))));
}

std::optional<TrackExtent> extentOf(QByteArray bytes, quint32 track = 7) {
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    return mp4Extent(file, track);
}

TEST(Mp4Extent, FollowsTheEditList) {
    struct Case {
        const char* name;
        Movie movie;
        qint64 delay;
        qint64 length;
    };
    const Case cases[] = {
        {"no edit list", {1000, 44'100, 50'000, {}}, 0, 50'000},
        {"priming only", {1000, 44'100, 51'024, {{1134, 1024}}}, 1024, 50'000},
        {"rounded up to the millisecond", {1000, 44'100, 51'024, {{1135, 1024}}}, 1024, 50'000},
        {"padding counted in the media", {44'100, 44'100, 53'248, {{50'000, 2112}}}, 2112, 50'000},
        {"pause in front", {1000, 44'100, 51'024, {{500, -1}, {1134, 1024}}}, 1024, 50'000},
        {"unlimited edit", {1000, 44'100, 51'024, {{0, 1024}}}, 1024, 50'000},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto extent = extentOf(movie(c.movie));
        ASSERT_TRUE(extent);
        EXPECT_EQ(extent->delay, c.delay);
        EXPECT_EQ(extent->length, c.length);
        EXPECT_EQ(extent->ticksPerSecond, 44'100);
    }
}

TEST(Mp4Extent, GivesNothingWhereTheFiguresMakeNoSense) {
    const QByteArray good = movie({1000, 44'100, 51'024, {{1134, 1024}}});
    EXPECT_FALSE(extentOf(good, 8)); // another track
    EXPECT_FALSE(extentOf(movie({1000, 0, 51'024, {}})));
    EXPECT_FALSE(extentOf(movie({1000, 44'100, 500, {{1134, 1024}}})));
    for (qsizetype size = 0; size < good.size(); ++size) // cut anywhere: never a crash
        extentOf(good.left(size));
    for (qsizetype at = 0; at < good.size(); ++at)
        for (const char byte : {'\0', '\x01', '\xff'}) {
            QByteArray bad = good;
            bad[at] = byte;
            extentOf(bad);
        }
}

TEST(CafPacketTable, IsFoundBehindOtherChunks) {
    const QByteArray table =
        number(qint64(12)) + number(qint64(50'000)) + number(qint32(2112)) + number(qint32(960));
    QByteArray bytes = QByteArray("caff") + number(quint32(0x10000)) + "desc" + number(qint64(32)) +
                       QByteArray(32, '\0') + "pakt" + number(qint64(24)) + table;
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    const auto found = cafPacketTable(file);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->validFrames, 50'000);
    EXPECT_EQ(found->primingFrames, 2112);

    for (qsizetype size = 0; size < bytes.size(); ++size) {
        QByteArray part = bytes.left(size);
        QBuffer cut(&part);
        cut.open(QIODevice::ReadOnly);
        EXPECT_FALSE(cafPacketTable(cut)) << size;
    }
}

TEST(Mp3Padding, ReadsTheEncodersFigures) {
    const QByteArray encoder = QByteArray("LAME3.100") + QByteArray(12, '\0');
    const QByteArray figures("\x24\x05\x23", 3); // 0x240 and 0x523
    const QByteArray all = number(quint32(15)) + QByteArray(4 + 4 + 100 + 4, '\0');
    const QByteArray few = number(quint32(1)) + QByteArray(4, '\0');
    for (const QByteArray& fields : {all, few}) {
        const auto padding = mp3Padding("....Xing" + fields + encoder + figures);
        ASSERT_TRUE(padding);
        EXPECT_EQ(padding->delay, 0x240);
        EXPECT_EQ(padding->padding, 0x523);
        EXPECT_TRUE(mp3Padding("....Info" + fields + encoder + figures));
    }
    EXPECT_FALSE(mp3Padding("....Xing" + all));
    EXPECT_FALSE(mp3Padding("....Xing" + all + QByteArray(24, '\0'))); // no encoder's name
    EXPECT_FALSE(mp3Padding("nothing of the kind"));
}

TEST(GaplessTag, ReadsDelayAndLength) {
    const auto extent =
        gaplessTag(" 00000000 00000840 000001CA 00000000003F31F6 00000000 00000000");
    ASSERT_TRUE(extent);
    EXPECT_EQ(extent->delay, 0x840);
    EXPECT_EQ(extent->length, 0x3F31F6);
    for (const char* text : {"", "00000000 00000840", " 0 zz 0 10", " 0 0 0 0", " 0 0 0 -5"})
        EXPECT_FALSE(gaplessTag(text)) << text;
}

/// Frames of an MPEG 1 layer III stream of 128 kbit/s at 44.1 kHz, some of them padded.
QByteArray layer3Frames(int count) {
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        const bool isPadded = i % 3 == 0;
        bytes += QByteArray("\xFF\xFB", 2) + char(0x90 | (isPadded ? 2 : 0)) +
                 QByteArray(414 + (isPadded ? 1 : 0), '\0');
    }
    return bytes;
}

TEST(FrameWalk, CountsWholeFramesUpToATag) {
    const auto walked = [](QByteArray bytes, FrameStream kind, qint64 from = 0) {
        QBuffer file(&bytes);
        file.open(QIODevice::ReadOnly);
        qint64 visited = 0;
        const auto count = walkFrames(file, kind, from, [&](qint64 number, qint64 position) {
            EXPECT_EQ(number, visited++);
            EXPECT_EQ(bytes[position], '\xFF');
        });
        return count.value_or(-1);
    };
    const QByteArray frames = layer3Frames(1000);
    EXPECT_EQ(walked(frames, FrameStream::mpegLayer3), 1000);
    EXPECT_EQ(walked(frames.left(frames.size() - 1), FrameStream::mpegLayer3), 999);
    EXPECT_EQ(walked("in front" + frames, FrameStream::mpegLayer3, 8), 1000);
    EXPECT_EQ(walked(frames + "TAG" + QByteArray(125, 'x'), FrameStream::mpegLayer3), 1000);
    EXPECT_EQ(walked(frames + QByteArray(50, 'x') + frames, FrameStream::mpegLayer3), -1);
    EXPECT_EQ(walked(frames, FrameStream::adts), -1);
    EXPECT_EQ(walked("", FrameStream::mpegLayer3), -1);

    QByteArray adts;
    for (int i = 0; i < 500; ++i) {
        const int size = 200 + i;
        adts += QByteArray("\xFF\xF1\x50\x80", 4) + char(size >> 3) + char((size & 7) << 5) +
                QByteArray(size - 6, '\0');
    }
    EXPECT_EQ(walked(adts, FrameStream::adts), 500);
}

} // namespace
} // namespace halvane
