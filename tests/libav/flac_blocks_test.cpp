// SPDX-License-Identifier: MIT
#include "libav/flac_blocks.h"
#include "support/audio_material.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int rate = 44'100;
constexpr std::int64_t length = 120LL * rate;

/// A file whose first half is nearly silent, so that its seconds lie far from evenly in its bytes.
QString unevenFile(const QString& options) {
    Pcm pcm = music(length);
    std::fill_n(pcm.samples.begin(), length, 0);
    return encoded(pcm, u"flac"_s, u"flac -s "_s + options + u" -o \"$OUT\" \"$IN\""_s);
}

/// A file, and how often it has been read and how much of it.
struct CountedFile {
    explicit CountedFile(const QString& path)
        : file(path) {
        EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        // The blocks of sound begin behind the blocks of facts.
        qint64 at = 4;
        for (bool isLast = false; !isLast;) {
            file.seek(at);
            const QByteArray head = file.read(4);
            isLast = (head[0] & 0x80) != 0;
            at += 4 + (quint8(head[1]) << 16 | quint8(head[2]) << 8 | quint8(head[3]));
        }
        low = {at, 0};
        high = {file.size(), length};
        source = {file.size(), [this](qint64 offset, qint64 count) {
                      ++reads;
                      bytes += count;
                      return byteSource(file).read(offset, count);
                  }};
    }

    QFile file;
    FlacPlace low;
    FlacPlace high;
    ByteSource source;
    int reads = 0;
    qint64 bytes = 0;
};

} // namespace

TEST(FlacBlocks, AreFoundByFewLooks) {
    for (const QString& options : {u"-5"_s, u"-8 -b 1152"_s}) {
        const int blockSize = options == u"-5"_s ? 4096 : 1152;
        CountedFile counted(unevenFile(options));
        std::mt19937 random(5);
        std::vector<std::int64_t> targets{0, 1, blockSize, length / 2, length - 1};
        for (int i = 0; i < 200; ++i)
            targets.push_back(std::int64_t(random() % std::uint32_t(length)));
        int most = 0;
        for (const std::int64_t target : targets) {
            counted.reads = 0;
            const auto found =
                flacBlockBefore(counted.source, target, blockSize, counted.low, counted.high);
            ASSERT_TRUE(found) << target;
            EXPECT_LE(found->frame, target);
            EXPECT_EQ(found->frame % blockSize, 0) << "no block begins there";
            const QByteArray head = byteSource(counted.file).read(found->position, 2);
            EXPECT_EQ(head, QByteArray("\xff\xf8")) << target;
            // Silence takes next to no bytes, and a second of these tones less than 100,000.
            const auto sound = std::max(target, length / 2) - std::max(found->frame, length / 2);
            EXPECT_LT(sound, 3 * rate) << target;
            most = std::max(most, counted.reads);
        }
        // Hardly any file is as uneven as this one.
        EXPECT_LE(most, 14);
        EXPECT_LT(counted.bytes / std::ssize(targets), 100'000);
    }
}

TEST(FlacBlocks, AreNotFoundWherePlacesOrBytesAreWrong) {
    CountedFile counted(unevenFile(u"-5"_s));
    const auto find = [&](FlacPlace low, FlacPlace high) {
        return flacBlockBefore(counted.source, length / 2, 4096, low, high);
    };
    EXPECT_FALSE(find(counted.high, counted.low)) << "the wrong way round";
    EXPECT_FALSE(find(counted.low, {counted.high.position, length / 4})) << "not in between";
    EXPECT_FALSE(find({counted.high.position, 0}, counted.high)) << "nothing in between";
    // Bytes without any block: a search that goes on for ever would hang here.
    QByteArray noise(1 << 20, '\xff');
    const ByteSource bytes{noise.size(),
                           [&](qint64 offset, qint64 count) { return noise.mid(offset, count); }};
    const auto found = flacBlockBefore(bytes, length / 2, 4096, {0, 0}, {noise.size(), length});
    EXPECT_TRUE(!found || found->position == 0);
}

} // namespace halvane::test
