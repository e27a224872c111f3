// SPDX-License-Identifier: MIT
#include "libav/ogg_links.h"
#include "libav/ogg_packets.h"

#include <QBuffer>
#include <QtEndian>

#include <gtest/gtest.h>

namespace halvane {
namespace {

template<typename T>
QByteArray little(T value) {
    QByteArray bytes(sizeof(T), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

struct Flags {
    static constexpr char none = 0, continued = 1, first = 2, last = 4;
};

QByteArray page(quint32 serial, char flags, qint64 granule, const QList<QByteArray>& packets) {
    QByteArray lacing;
    QByteArray body;
    for (const QByteArray& packet : packets) {
        lacing += QByteArray(packet.size() / 255, '\xff') + char(packet.size() % 255);
        body += packet;
    }
    return QByteArray("OggS") + '\0' + flags + little(granule) + little(serial) +
           QByteArray(8, '\0') + char(lacing.size()) + lacing + body;
}

QByteArray opusHead(quint16 preSkip, char channels = 2) {
    return QByteArray("OpusHead") + '\1' + channels + little(preSkip) + little(quint32(44'100)) +
           little(quint16(0)) + '\0';
}

/// Packets of 20 ms, 960 frames each.
QList<QByteArray> opusPackets(int count) {
    return QList<QByteArray>(count, QByteArray(120, '\xfc'));
}

/// A stream of `pages` pages of fifty packets, of which the last is cut to end at `granule`.
QByteArray opusStream(quint32 serial, qint64 granule, int pages, qint64 start = 0,
                      const QByteArray& head = opusHead(312)) {
    QByteArray bytes =
        page(serial, Flags::first, 0, {head}) + page(serial, Flags::none, 0, {"OpusTags________"});
    for (int i = 1; i < pages; ++i)
        bytes += page(serial, Flags::none, start + i * 48'000LL, opusPackets(50));
    return bytes + page(serial, Flags::last, granule, opusPackets(50));
}

std::vector<OggLink> linksOf(QByteArray bytes) {
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    return oggLinks(byteSource(file));
}

TEST(OggLinks, AreExactByTheirGranulePositions) {
    const QByteArray one = opusStream(1, 100'000, 3);
    const QByteArray other = page(9, Flags::first, 0, {"fishead_________"});
    struct Case {
        const char* name;
        QByteArray bytes;
        std::vector<std::pair<std::int64_t, std::int64_t>> extents; ///< delay, length
    };
    const Case cases[] = {
        {"cut by its last page", one, {{312, 99'688}}},
        {"on a single page", opusStream(1, 1'000, 1), {{312, 688}}},
        {"that begins late, as a recorded broadcast does",
         opusStream(1, 1'100'000, 3, 1'000'000),
         {{312, 99'688}}},
        {"with bytes behind it", one + QByteArray(3'000, 'x'), {{312, 99'688}}},
        {"beside a stream of another kind", other + one, {{312, 99'688}}},
        {"cut off in the middle of a page", one.chopped(500), {{312, 96'000 - 312}}},
        // Long ones, for the borders are looked for by halving.
        {"one behind the other",
         opusStream(1, 4'780'000, 100) + opusStream(2, 48'000 + 7, 2) +
             opusStream(3, 9'600'000, 200),
         {{312, 4'779'688}, {312, 47'695}, {312, 9'599'688}}},
        {"up to one of other channels",
         one + opusStream(2, 50'000, 2, 0, opusHead(312, 1)) + opusStream(3, 50'000, 2),
         {{312, 99'688}}},
        {"of no known codec", other + page(9, Flags::last, 5, {"something"}), {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto links = linksOf(c.bytes);
        ASSERT_EQ(links.size(), c.extents.size());
        qint64 at = 0;
        for (std::size_t i = 0; i < links.size(); ++i) {
            EXPECT_EQ(links[i].begin, at);
            EXPECT_EQ(std::pair(links[i].delay, links[i].length), c.extents[i]);
            EXPECT_EQ(links[i].sampleRate, 48'000);
            at = links[i].end;
        }
    }
}

TEST(OggPages, AreFoundByThePositionsAtWhichTheyEnd) {
    // Sixty pages that end every second, and one at 2,900,000.
    QByteArray bytes =
        page(9, Flags::first, 0, {"fishead_________"}) + opusStream(1, 2'900'000, 60);
    const qint64 from = bytes.indexOf("OpusTags") - 28;
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    const struct {
        std::int64_t granule;
        std::int64_t found;
    } cases[] = {{0, 0},
                 {47'999, 0},
                 {48'000, 48'000},
                 {1'000'000, 960'000},
                 {2'899'999, 59 * 48'000},
                 {2'900'000, 2'900'000},
                 {1LL << 60, 2'900'000}};
    for (const auto& [granule, found] : cases) {
        SCOPED_TRACE(granule);
        const auto place = oggPageBefore(byteSource(file), from, granule);
        ASSERT_TRUE(place);
        EXPECT_EQ(place->granule, found);
        EXPECT_EQ(place->wholePackets, found == 0 ? 1 : 50);
        EXPECT_EQ(bytes.mid(place->begin, 4), "OggS");
    }
    EXPECT_FALSE(oggPageBefore(byteSource(file), from, -1));
    EXPECT_FALSE(oggPageBefore(byteSource(file), from + 1, 48'000));

    // A packet that began on the page before is not whole.
    bytes[bytes.indexOf("OggS", bytes.size() / 2) + 5] = Flags::continued;
    int fewest = 50;
    for (int second = 1; second < 60; ++second)
        fewest =
            std::min(fewest, oggPageBefore(byteSource(file), from, second * 48'000)->wholePackets);
    EXPECT_EQ(fewest, 49);
}

TEST(OpusPackets, TellTheirLength) {
    const std::pair<QByteArray, std::int64_t> cases[] = {
        {QByteArray("\x00", 1), 480},
        {QByteArray("\x18", 1), 2880},
        {QByteArray("\x69", 1), 1920},
        {QByteArray("\xe2", 1), 240},
        {QByteArray("\xfb\x03", 2), 2880},
        {QByteArray("\xfb", 1), 0},
        {QByteArray(), 0},
    };
    for (const auto& [packet, frames] : cases)
        EXPECT_EQ(opusPacketFrames(packet), frames) << packet.toHex().toStdString();
}

} // namespace
} // namespace halvane
