// SPDX-License-Identifier: MIT
#include "audio/files/container_figures.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace halvane {
namespace {

template<typename T>
T bigEndian(const char* at) {
    return qFromBigEndian<T>(at);
}

/// A stretch of a file, in bytes from its start.
struct Range {
    qint64 begin = 0;
    qint64 end = 0;
    [[nodiscard]] qint64 size() const { return end - begin; }
};

QByteArray bytesAt(QIODevice& file, qint64 position, qint64 count) {
    if (position > file.size() || !file.seek(position))
        return {};
    return file.read(count);
}

/// The contents of the boxes inside `range` that have this type.
template<typename Visit>
void eachBox(QIODevice& file, Range range, quint32 wanted, Visit visit) {
    while (range.size() >= 8) {
        const QByteArray head = bytesAt(file, range.begin, 16);
        if (head.size() < 8)
            return;
        qint64 size = bigEndian<quint32>(head.constData());
        qint64 headSize = 8;
        if (size == 1 && head.size() == 16) {
            size = bigEndian<qint64>(head.constData() + 8);
            headSize = 16;
        } else if (size == 0) {
            size = range.size(); // reaches to the end
        }
        if (size < headSize || size > range.size())
            return;
        if (bigEndian<quint32>(head.constData() + 4) == wanted)
            visit(Range{range.begin + headSize, range.begin + size});
        range.begin += size;
    }
}

constexpr quint32 boxType(const char (&name)[5]) {
    return quint32(name[0]) << 24 | quint32(name[1]) << 16 | quint32(name[2]) << 8 |
           quint32(name[3]);
}

Range firstBox(QIODevice& file, Range range, quint32 type) {
    Range found;
    eachBox(file, range, type, [&](Range box) {
        if (found.size() == 0)
            found = box;
    });
    return found;
}

/// Clock and length of a movie or media header: both begin with version, flags and two dates.
struct MediaHeader {
    std::int64_t ticksPerSecond = 0;
    std::int64_t duration = 0;
};
MediaHeader mediaHeader(QIODevice& file, Range box) {
    const QByteArray bytes = bytesAt(file, box.begin, std::min<qint64>(box.size(), 32));
    if (bytes.size() < 20)
        return {};
    if (bytes[0] == 0)
        return {bigEndian<quint32>(&bytes.constData()[12]),
                bigEndian<quint32>(&bytes.constData()[16])};
    if (bytes.size() < 32)
        return {};
    return {bigEndian<quint32>(&bytes.constData()[20]), bigEndian<qint64>(&bytes.constData()[24])};
}

quint32 trackIdOf(QIODevice& file, Range trackHeader) {
    const QByteArray bytes = bytesAt(file, trackHeader.begin, 24);
    if (bytes.size() < 24)
        return 0;
    return bigEndian<quint32>(bytes.constData() + (bytes[0] == 0 ? 12 : 20));
}

/// The first entry of an edit list that shows something.
struct Edit {
    std::int64_t movieDuration = 0;
    std::int64_t mediaTime = 0;
};
std::optional<Edit> firstEdit(QIODevice& file, Range box) {
    constexpr int maxEntries = 64; // what shows something is among the first two
    const QByteArray bytes =
        bytesAt(file, box.begin, std::min<qint64>(box.size(), 8 + 20 * maxEntries));
    if (bytes.size() < 8)
        return std::nullopt;
    const bool isLong = bytes[0] == 1;
    const qsizetype entrySize = isLong ? 20 : 12;
    for (qsizetype at = 8; at + entrySize <= bytes.size(); at += entrySize) {
        const char* entry = bytes.constData() + at;
        const Edit edit = isLong ? Edit{bigEndian<qint64>(entry), bigEndian<qint64>(entry + 8)}
                                 : Edit{bigEndian<quint32>(entry), bigEndian<qint32>(entry + 4)};
        if (edit.mediaTime >= 0)
            return edit;
    }
    return std::nullopt;
}

TrackExtent trackExtent(const MediaHeader& movie, const MediaHeader& media,
                        const std::optional<Edit>& edit) {
    TrackExtent extent{0, media.duration, media.ticksPerSecond};
    if (!edit)
        return extent;
    extent.delay = edit->mediaTime;
    extent.length = media.duration - edit->mediaTime;
    // Some writers count the padding at the end into the media's duration; the edit's own duration,
    // though often rounded to milliseconds, is then shorter by more than one of its ticks.
    if (movie.ticksPerSecond > 0 && edit->movieDuration > 0) {
        const double ratio = double(media.ticksPerSecond) / double(movie.ticksPerSecond);
        const double shown = double(edit->movieDuration) * ratio;
        if (double(extent.length) - shown > std::max(ratio, 1.0))
            extent.length = std::llround(shown);
    }
    return extent;
}

} // namespace

std::optional<TrackExtent> mp4Extent(QIODevice& file, std::uint32_t trackId) {
    const Range moov = firstBox(file, {0, file.size()}, boxType("moov"));
    const MediaHeader movie = mediaHeader(file, firstBox(file, moov, boxType("mvhd")));
    std::optional<TrackExtent> found;
    eachBox(file, moov, boxType("trak"), [&](Range track) {
        if (found || trackIdOf(file, firstBox(file, track, boxType("tkhd"))) != trackId)
            return;
        const Range mdia = firstBox(file, track, boxType("mdia"));
        const MediaHeader media = mediaHeader(file, firstBox(file, mdia, boxType("mdhd")));
        const Range edts = firstBox(file, track, boxType("edts"));
        const auto edit = firstEdit(file, firstBox(file, edts, boxType("elst")));
        const TrackExtent extent = trackExtent(movie, media, edit);
        if (extent.ticksPerSecond > 0 && extent.length > 0)
            found = extent;
    });
    return found;
}

std::optional<CafPacketTable> cafPacketTable(QIODevice& file) {
    constexpr qint64 fileHeaderSize = 8;
    constexpr qint64 chunkHeaderSize = 12;
    for (qint64 at = fileHeaderSize;;) {
        const QByteArray bytes = bytesAt(file, at, chunkHeaderSize + 24);
        if (bytes.size() < chunkHeaderSize)
            return std::nullopt;
        const auto size = bigEndian<qint64>(bytes.constData() + 4);
        if (bigEndian<quint32>(bytes.constData()) == boxType("pakt")) {
            if (bytes.size() < chunkHeaderSize + 24)
                return std::nullopt;
            const char* table = bytes.constData() + chunkHeaderSize;
            const CafPacketTable figures{bigEndian<qint64>(table + 8),
                                         bigEndian<qint32>(table + 16)};
            if (figures.validFrames <= 0 || figures.primingFrames < 0)
                return std::nullopt;
            return figures;
        }
        if (size < 0 || size > file.size() - at - chunkHeaderSize)
            return std::nullopt; // the sound of unstated length ends the file
        at += chunkHeaderSize + size;
    }
}

std::optional<Mp3Figures> mp3Figures(QByteArrayView bytes) {
    // Either word may also stand in a tag's text, which ends before the information frame.
    const qsizetype tag = std::max(bytes.lastIndexOf(QByteArrayView("Xing")),
                                   bytes.lastIndexOf(QByteArrayView("Info")));
    if (tag < 0 || tag + 8 > bytes.size())
        return std::nullopt;
    const auto flags = bigEndian<quint32>(bytes.data() + tag + 4);
    qsizetype encoder = tag + 8;
    constexpr std::array<qsizetype, 4> fieldSizes{4, 4, 100,
                                                  4}; // frames, bytes, seek table, quality
    for (std::size_t i = 0; i < fieldSizes.size(); ++i)
        encoder += (flags >> i & 1U) != 0 ? fieldSizes[i] : 0;
    if (encoder + 24 > bytes.size() || bytes[encoder] < 'A' || bytes[encoder] > 'z')
        return std::nullopt;
    // Nine bytes of name, twelve of other matters, then twice twelve bits.
    const auto padding = bigEndian<quint32>(bytes.data() + encoder + 20) & 0xFF'FF'FFU;
    const bool statesBlocks = (flags & 1U) != 0;
    return Mp3Figures{statesBlocks ? bigEndian<quint32>(bytes.data() + tag + 8) : 0, padding >> 12U,
                      padding & 0xFFFU};
}

std::optional<TrackExtent> gaplessTag(QByteArrayView text) {
    // " 00000000 <delay> <padding> <length> ...", all hexadecimal
    const auto fields = text.toByteArray().simplified().split(' ');
    if (fields.size() < 4)
        return std::nullopt;
    bool delayOk = false;
    bool lengthOk = false;
    const TrackExtent extent{fields[1].toLongLong(&delayOk, 16),
                             fields[3].toLongLong(&lengthOk, 16)};
    if (!delayOk || !lengthOk || extent.length <= 0)
        return std::nullopt;
    return extent;
}

} // namespace halvane
