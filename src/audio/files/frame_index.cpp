// SPDX-License-Identifier: MIT
#include "audio/files/frame_index.h"

#include <QByteArray>
#include <QtEndian>

#include <array>

namespace halvane {
namespace {

constexpr qint64 headerSize = 7; // of the longer kind
constexpr qint64 windowSize = 1 << 18;

/// A file read in large pieces, forwards.
class Window {
  public:
    explicit Window(QIODevice& file)
        : m_file(file) {}

    /// Up to headerSize bytes from a position on.
    QByteArrayView header(qint64 position) {
        if (position < m_begin || position + headerSize > m_begin + m_bytes.size()) {
            m_begin = position;
            m_bytes.clear();
            if (position < m_file.size() && m_file.seek(position))
                m_bytes = m_file.read(windowSize);
        }
        return QByteArrayView(m_bytes)
            .sliced(position - m_begin)
            .first(std::min<qint64>(headerSize, m_begin + m_bytes.size() - position));
    }

  private:
    QIODevice& m_file;
    qint64 m_begin = 0;
    QByteArray m_bytes;
};

/// A frame's length in bytes, and what it has in common with all frames of its stream.
struct FrameHeader {
    qint64 size = 0; ///< 0: not a frame
    quint32 kind = 0;
};

FrameHeader layer3Header(QByteArrayView bytes) {
    constexpr std::array<int, 16> mpeg1{0,   32,  40,  48,  56,  64,  80,  96,
                                        112, 128, 160, 192, 224, 256, 320, 0}; // kbit/s
    constexpr std::array<int, 16> mpeg2{0,  8,  16, 24,  32,  40,  48,  56,
                                        64, 80, 96, 112, 128, 144, 160, 0};
    constexpr std::array<int, 4> rates{44'100, 48'000, 32'000, 0};
    const auto word = qFromBigEndian<quint32>(bytes.data());
    const auto version = word >> 19U & 3U; // 3: MPEG 1, 2: MPEG 2, 0: MPEG 2.5
    const auto layer = word >> 17U & 3U;
    if (word >> 21U != 0x7FFU || version == 1 || layer != 1)
        return {};
    const int bitRate = (version == 3 ? mpeg1 : mpeg2)[word >> 12U & 15U];
    const int rate = rates[word >> 10U & 3U] / (version == 3 ? 1 : version == 2 ? 2 : 4);
    if (bitRate == 0 || rate == 0)
        return {};
    const int slots = version == 3 ? 144 : 72;
    return {slots * bitRate * 1000 / rate + qint64(word >> 9U & 1U), word & 0xFFFE'0C00U};
}

FrameHeader adtsHeader(QByteArrayView bytes) {
    const auto word = qFromBigEndian<quint32>(bytes.data());
    const auto rest = qFromBigEndian<quint32>(bytes.data() + 3);
    const qint64 size = rest >> 13U & 0x1FFFU;
    const bool isOneBlock = (rest & 3U) == 0;
    if (word >> 20U != 0xFFFU || (word >> 17U & 3U) != 0 || size <= headerSize || !isOneBlock)
        return {};
    return {size, word & 0xFFFE'3C00U};
}

bool isTag(QByteArrayView bytes) {
    return bytes.startsWith("TAG") || bytes.startsWith("APETAGE") || bytes.startsWith("LYRICSB") ||
           bytes.startsWith("ID3");
}

} // namespace

std::optional<std::int64_t>
walkFrames(QIODevice& file, FrameStream kind, std::int64_t from,
           const std::function<void(std::int64_t number, std::int64_t position)>& visit) {
    Window window(file);
    const qint64 end = file.size();
    std::int64_t number = 0;
    quint32 common = 0;
    for (qint64 position = from;;) {
        const auto bytes = window.header(position);
        if (bytes.size() < headerSize || isTag(bytes))
            return number > 0 ? std::optional(number) : std::nullopt;
        const auto header =
            kind == FrameStream::mpegLayer3 ? layer3Header(bytes) : adtsHeader(bytes);
        if (header.size == 0 || (number > 0 && header.kind != common))
            return std::nullopt;
        if (header.size > end - position) // cut off
            return number > 0 ? std::optional(number) : std::nullopt;
        common = header.kind;
        visit(number++, position);
        position += header.size;
    }
}

} // namespace halvane
