// SPDX-License-Identifier: MIT
#include "libav/container_figures.h"

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
    return mp4Extent(byteSource(file), track);
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
}

} // namespace
} // namespace halvane
