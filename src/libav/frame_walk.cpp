// SPDX-License-Identifier: MIT
#include "libav/frame_walk.h"

#include <QByteArray>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace halvane {
namespace {

constexpr qint64 headerSize = 7; // of the longer kind
constexpr qint64 windowSize = 1 << 18;

/// A file read in large pieces, forwards.
class Window {
  public:
    explicit Window(const ByteSource& file)
        : m_file(file) {}

    /// Up to headerSize bytes from a position on.
    QByteArrayView header(qint64 position) {
        if (position < m_begin || position + headerSize > m_begin + m_bytes.size()) {
            m_begin = position;
            m_bytes = m_file.read(position, windowSize);
        }
        return QByteArrayView(m_bytes)
            .sliced(position - m_begin)
            .first(std::min<qint64>(headerSize, m_begin + m_bytes.size() - position));
    }

  private:
    const ByteSource& m_file;
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

// Two letters and a size, which counts itself, in bytes that carry seven bits each.
FrameHeader musepackHeader(QByteArrayView bytes) {
    FrameHeader header;
    for (const char byte : bytes.sliced(2)) {
        header.size = header.size << 7 | (byte & 0x7f);
        if ((byte & 0x80) == 0)
            return header;
    }
    return {};
}

FrameHeader frameHeader(FrameStream kind, QByteArrayView bytes) {
    switch (kind) {
    case FrameStream::mpegLayer3:
        return layer3Header(bytes);
    case FrameStream::adts:
        return adtsHeader(bytes);
    case FrameStream::musepack8:
        return musepackHeader(bytes);
    }
    return {};
}

bool isTag(QByteArrayView bytes) {
    return bytes.startsWith("TAG") || bytes.startsWith("APETAGE") || bytes.startsWith("LYRICSB") ||
           bytes.startsWith("ID3");
}

/// Where a tag ends that lies between two files that were joined; none where only a tag is left.
std::optional<qint64> behindTag(const ByteSource& file, qint64 position) {
    constexpr qint64 id3v1Size = 128;
    constexpr qint64 id3v2HeaderSize = 10;
    const QByteArray tag = file.read(position, id3v2HeaderSize);
    qint64 size = 0;
    if (tag.startsWith("TAG")) {
        size = id3v1Size;
    } else if (tag.startsWith("ID3") && tag.size() == id3v2HeaderSize) {
        for (const char byte : QByteArrayView(tag).last(4))
            size = size << 7 | (byte & 0x7f);
        const bool hasFooter = (tag[5] & 0x10) != 0;
        size += hasFooter ? 2 * id3v2HeaderSize : id3v2HeaderSize;
    }
    if (size == 0 || position + size >= file.size)
        return std::nullopt;
    return position + size;
}

/// Whether the stream is over. Frames of sound are called "AP" in Musepack.
bool isEnd(FrameStream kind, QByteArrayView bytes) {
    return bytes.size() < headerSize || isTag(bytes) ||
           (kind == FrameStream::musepack8 && !bytes.startsWith("AP"));
}

} // namespace

std::int64_t frameSize(FrameStream kind, QByteArrayView opening) {
    return opening.size() < headerSize ? 0 : frameHeader(kind, opening.first(headerSize)).size;
}

std::optional<std::int64_t>
walkFrames(const ByteSource& file, FrameStream kind, std::int64_t from,
           const std::function<void(std::int64_t number, std::int64_t position)>& visit) {
    Window window(file);
    const qint64 end = file.size;
    std::int64_t number = 0;
    quint32 common = 0;
    for (qint64 position = from;;) {
        const auto bytes = window.header(position);
        const auto next = isTag(bytes) ? behindTag(file, position) : std::nullopt;
        if (next) {
            position = *next;
            continue;
        }
        if (isEnd(kind, bytes))
            return number > 0 ? std::optional(number) : std::nullopt;
        const auto header = frameHeader(kind, bytes);
        if (header.size == 0 || (number > 0 && header.kind != common))
            return std::nullopt;
        if (header.size > end - position) // cut off
            return number > 0 ? std::optional(number) : std::nullopt;
        common = header.kind;
        visit(number++, position);
        position += header.size;
    }
}

bool hasEvenFrames(const ByteSource& file, FrameStream kind, std::int64_t from) {
    constexpr int places = 64;
    constexpr qint64 bytesOfTwoFrames = 6000;
    const QByteArray opening = file.read(from, headerSize);
    if (opening.size() < headerSize)
        return false;
    const FrameHeader first = frameHeader(kind, opening);
    for (int place = 1; place < places; ++place) {
        const QByteArray bytes =
            file.read(from + (file.size - from) * place / places, bytesOfTwoFrames);
        const auto headerAt = [&](qint64 at) {
            return at + headerSize <= bytes.size()
                       ? frameHeader(kind, QByteArrayView(bytes).sliced(at))
                       : FrameHeader();
        };
        // Other bytes may look like a header. Hardly any do where the next one should be, too.
        const auto isFrame = [&](const FrameHeader& header) {
            return header.size > 0 && header.kind == first.kind;
        };
        qint64 at = 0;
        while (at < bytes.size() &&
               !(isFrame(headerAt(at)) && isFrame(headerAt(at + headerAt(at).size))))
            ++at;
        if (at == bytes.size() || std::abs(headerAt(at).size - first.size) > 1)
            return false;
    }
    return true;
}

} // namespace halvane
