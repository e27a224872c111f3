// SPDX-License-Identifier: MIT
#include "libav/flac_blocks.h"

#include <QtEndian>

#include <algorithm>

namespace halvane {

namespace {

/// What is left of a division by a polynomial, without its highest term (RFC 9639, 9.1.8 and 9.3).
unsigned checkSum(QByteArrayView bytes, int bits, unsigned polynomial) {
    unsigned sum = 0;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned>(static_cast<unsigned char>(byte)) << (bits - 8);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum << 1 ^ ((sum >> (bits - 1) & 1) != 0 ? polynomial : 0);
        sum &= (1U << bits) - 1;
    }
    return sum;
}

/// The frames of sound that a block holds.
struct BlockFrames {
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

/// The fields of a block's header, in their order.
class BlockHeader {
  public:
    static constexpr qsizetype longest = 16; ///< bytes

    explicit BlockHeader(QByteArrayView bytes)
        : m_bytes(bytes) {}

    /// What the block holds in a stream whose blocks have `fixedSize` frames, unless they say that
    /// they vary. None where this is no header.
    std::optional<BlockFrames> frames(std::int64_t fixedSize) {
        const unsigned sync = take(2);
        const unsigned sizes = take(1);
        const bool isReserved = (take(1) & 1) != 0;
        const std::int64_t number = takeNumber();
        const std::int64_t size = blockSize(sizes >> 4);
        const unsigned rate = sizes & 15;
        take(rate == 12 ? 1 : rate == 13 || rate == 14 ? 2 : 0);
        const bool isWhole = m_isWhole && number >= 0 && size > 0 && rate != 15 && !isReserved;
        if ((sync & 0xfffeU) != 0xfff8U || !isWhole)
            return std::nullopt;
        const unsigned sum = checkSum(m_bytes.first(m_at), 8, 0x07);
        if (take(1) != sum || !m_isWhole)
            return std::nullopt;
        const bool isVarying = (sync & 1) != 0;
        const std::int64_t begin = isVarying ? number : number * fixedSize;
        return BlockFrames{begin, begin + size};
    }

  private:
    unsigned take(int count) {
        unsigned value = 0;
        for (; count > 0; --count) {
            m_isWhole = m_isWhole && m_at < m_bytes.size();
            value = value << 8 | (m_isWhole ? static_cast<unsigned char>(m_bytes[m_at++]) : 0U);
        }
        return value;
    }
    /// A number as UTF-8 writes code points, of up to 36 bits. -1 for no such number.
    std::int64_t takeNumber() {
        const unsigned first = take(1);
        int more = 0;
        while (more < 7 && (first << more & 0x80U) != 0)
            ++more;
        if (more == 0)
            return first;
        if (more == 1)
            return -1;
        std::int64_t number = first & (0x7fU >> more);
        for (--more; more > 0; --more) {
            const unsigned next = take(1);
            if ((next & 0xc0U) != 0x80U)
                return -1;
            number = number << 6 | (next & 0x3fU);
        }
        return number;
    }
    std::int64_t blockSize(unsigned code) {
        switch (code) {
        case 0:
            return 0;
        case 1:
            return 192;
        case 6:
            return take(1) + 1;
        case 7:
            return take(2) + 1;
        default:
            return code < 6 ? 576 << (code - 2) : 256 << (code - 8);
        }
    }

    QByteArrayView m_bytes;
    qsizetype m_at = 0;
    bool m_isWhole = true;
};

/// The first block from a byte on that lies between two places.
std::optional<FlacPlace> firstBlockFrom(const ByteSource& file, qint64 from, int blockSize,
                                        FlacPlace low, FlacPlace high) {
    constexpr qint64 portion = 16 << 10; // most blocks are shorter
    for (; from < high.position; from += portion) {
        const QByteArray bytes = file.read(from, portion + BlockHeader::longest);
        for (qsizetype at = bytes.indexOf('\xff'); at >= 0; at = bytes.indexOf('\xff', at + 1)) {
            const auto block = BlockHeader(QByteArrayView(bytes).sliced(at)).frames(blockSize);
            // Bytes inside of a block may look like a header.
            if (block && low.frame < block->begin && block->begin < high.frame)
                return FlacPlace{from + at, block->begin};
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::int64_t> flacEnd(const ByteSource& file, qint64 start) {
    constexpr qint64 largestBlock = 512 << 10;
    constexpr qint64 infoAt = 8; // behind "fLaC" and the head of the first block of facts
    constexpr qint64 tagSize = 128;
    constexpr qsizetype sumSize = 2;
    const QByteArray fixedSize = file.read(start + infoAt, 2);
    const qint64 end = file.read(file.size - tagSize, 3) == "TAG" ? file.size - tagSize : file.size;
    const qint64 begin = std::max(start, end - largestBlock);
    const QByteArray bytes = file.read(begin, end - begin);
    if (fixedSize.size() < 2 || bytes.size() <= sumSize)
        return std::nullopt;
    // More than a few headers that are none are there on purpose, and each costs a check sum.
    int headers = 16;
    for (qsizetype at = bytes.lastIndexOf('\xff'); at >= 0 && headers > 0;
         at = at > 0 ? bytes.lastIndexOf('\xff', at - 1) : -1) {
        const QByteArrayView block = QByteArrayView(bytes).sliced(at);
        const auto found =
            BlockHeader(block).frames(qFromBigEndian<quint16>(fixedSize.constData()));
        if (!found || block.size() <= sumSize)
            continue;
        --headers;
        // Bytes inside of a block may look like a header.
        const auto sum = qFromBigEndian<quint16>(block.last(sumSize).data());
        if (checkSum(block.chopped(sumSize), 16, 0x8005) == sum)
            return found->end;
    }
    return std::nullopt;
}

std::optional<FlacPlace> flacBlockBefore(const ByteSource& file, std::int64_t frame, int blockSize,
                                         FlacPlace low, FlacPlace high) {
    constexpr qint64 near = 64 << 10;
    // Guesses that the sound is as dense everywhere between the two places. Where it is not, each
    // guess may fall on the same side of the target, so now and then the bytes are halved.
    constexpr int halvedEvery = 3;
    constexpr int mostLooks = 30;
    for (int look = 0; look < mostLooks; ++look) {
        const qint64 bytes = high.position - low.position;
        if (frame < low.frame || frame >= high.frame || bytes <= 0)
            return std::nullopt;
        const double density = double(bytes) / double(high.frame - low.frame);
        const auto ahead = qint64(double(frame - low.frame) * density);
        if (ahead <= near || bytes <= near)
            return low;
        // A little short of the target, since what lies behind it is of no use.
        const bool guesses = (look + 1) % halvedEvery != 0;
        const qint64 from = low.position + (guesses ? ahead - near / 2 : bytes / 2);
        const auto found = firstBlockFrom(file, from, blockSize, low, high);
        if (found && found->frame <= frame)
            low = *found;
        else
            high = {from, found ? found->frame : high.frame}; // none in between begins before
    }
    return std::nullopt;
}

} // namespace halvane
