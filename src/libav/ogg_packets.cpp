// SPDX-License-Identifier: MIT
#include "libav/ogg_packets.h"

#include <bit>

namespace halvane {

std::int64_t opusPacketFrames(QByteArrayView packet) {
    if (packet.isEmpty())
        return 0;
    const auto first = static_cast<unsigned char>(packet[0]);
    const int config = first >> 3;
    constexpr int silk[] = {480, 960, 1920, 2880};
    constexpr int celt[] = {120, 240, 480, 960};
    const int frame = config < 12   ? silk[config % 4]
                      : config < 16 ? silk[config % 2]
                                    : celt[config % 4];
    switch (first & 3) {
    case 0:
        return frame;
    case 3:
        return packet.size() < 2 ? 0 : std::int64_t{packet[1] & 63} * frame;
    default:
        return 2LL * frame;
    }
}

namespace {

/// Reads bits from the end of a packet towards its start. Fields come out as they were written.
class BackwardBits {
  public:
    explicit BackwardBits(QByteArrayView bytes)
        : m_bytes(bytes)
        , m_left(bytes.size() * 8) {}

    [[nodiscard]] qint64 left() const { return m_left; }
    unsigned take(int count) {
        unsigned value = 0;
        for (; count > 0 && m_left > 0; --count) {
            --m_left;
            value =
                value << 1 | (static_cast<unsigned char>(m_bytes[m_left / 8]) >> (m_left % 8) & 1U);
        }
        return value;
    }

  private:
    QByteArrayView m_bytes;
    qint64 m_left;
};

// The modes are the last thing in the setup header, and everything before them has no stated
// length. So they are read from the end: a mode is its mapping (8 bits), two types that are zero
// (16 bits each) and whether its blocks are long; the number of modes less one (6 bits) stands in
// front of the first.
std::vector<bool> modesOf(QByteArrayView setup) {
    constexpr int mostModes = 64;
    constexpr int modeBits = 8 + 16 + 16 + 1;
    BackwardBits bits(setup);
    while (bits.left() > 0 && bits.take(1) == 0) {
    } // up to the framing bit
    std::vector<bool> backwards;
    std::size_t count = 0;
    while (backwards.size() < mostModes && bits.left() >= modeBits + 6) {
        const unsigned mapping = bits.take(8);
        const unsigned types = bits.take(32);
        if (types != 0 || mapping >= mostModes)
            break;
        backwards.push_back(bits.take(1) != 0);
        BackwardBits ahead = bits;
        if (ahead.take(6) + 1 == backwards.size())
            count = backwards.size();
    }
    return {backwards.rend() - static_cast<std::ptrdiff_t>(count), backwards.rend()};
}

} // namespace

std::optional<VorbisBlocks> VorbisBlocks::from(QByteArrayView identification,
                                               QByteArrayView setup) {
    constexpr qsizetype sizesAt = 28;
    if (identification.size() <= sizesAt)
        return std::nullopt;
    VorbisBlocks blocks;
    const auto sizes = static_cast<unsigned char>(identification[sizesAt]);
    blocks.m_sizes[0] = 1 << (sizes & 15);
    blocks.m_sizes[1] = 1 << (sizes >> 4);
    blocks.m_modes = modesOf(setup);
    if (blocks.m_modes.empty())
        return std::nullopt;
    blocks.m_modeBits = std::bit_width(blocks.m_modes.size() - 1);
    return blocks;
}

int VorbisBlocks::blockFrames(QByteArrayView packet) const {
    if (packet.isEmpty() || (packet[0] & 1) != 0)
        return 0;
    const auto mode = static_cast<std::size_t>(static_cast<unsigned char>(packet[0]) >> 1 &
                                               ((1 << m_modeBits) - 1));
    return mode < m_modes.size() ? m_sizes[m_modes[mode] ? 1 : 0] : 0;
}

} // namespace halvane
