// SPDX-License-Identifier: MIT
#include "libav/container_figures.h"

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

/// The contents of the boxes inside `range` that have this type.
template<typename Visit>
void eachBox(const ByteSource& file, Range range, quint32 wanted, Visit visit) {
    while (range.size() >= 8) {
        const QByteArray head = file.read(range.begin, 16);
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

Range firstBox(const ByteSource& file, Range range, quint32 type) {
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
MediaHeader mediaHeader(const ByteSource& file, Range box) {
    const QByteArray bytes = file.read(box.begin, std::min<qint64>(box.size(), 32));
    if (bytes.size() < 20)
        return {};
    if (bytes[0] == 0)
        return {bigEndian<quint32>(&bytes.constData()[12]),
                bigEndian<quint32>(&bytes.constData()[16])};
    if (bytes.size() < 32)
        return {};
    return {bigEndian<quint32>(&bytes.constData()[20]), bigEndian<qint64>(&bytes.constData()[24])};
}

quint32 trackIdOf(const ByteSource& file, Range trackHeader) {
    const QByteArray bytes = file.read(trackHeader.begin, 24);
    if (bytes.size() < 24)
        return 0;
    return bigEndian<quint32>(bytes.constData() + (bytes[0] == 0 ? 12 : 20));
}

/// The first entry of an edit list that shows something.
struct Edit {
    std::int64_t movieDuration = 0;
    std::int64_t mediaTime = 0;
};
std::optional<Edit> firstEdit(const ByteSource& file, Range box) {
    constexpr int maxEntries = 64; // what shows something is among the first two
    const QByteArray bytes =
        file.read(box.begin, std::min<qint64>(box.size(), 8 + 20 * maxEntries));
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
    TrackExtent extent{0, media.duration, media.ticksPerSecond, media.duration};
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

/// The extent of the first track that `isWanted`.
template<typename IsWanted>
std::optional<TrackExtent> firstTrack(const ByteSource& file, IsWanted isWanted) {
    const Range moov = firstBox(file, {0, file.size}, boxType("moov"));
    const MediaHeader movie = mediaHeader(file, firstBox(file, moov, boxType("mvhd")));
    std::optional<TrackExtent> found;
    eachBox(file, moov, boxType("trak"), [&](Range track) {
        if (found || !isWanted(track))
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

} // namespace

std::optional<TrackExtent> mp4Extent(const ByteSource& file, std::uint32_t trackId) {
    return firstTrack(file, [&](Range track) {
        return trackIdOf(file, firstBox(file, track, boxType("tkhd"))) == trackId;
    });
}

std::optional<TrackExtent> mp4SoundExtent(const ByteSource& file) {
    constexpr qint64 kindAt = 8; // behind version, flags and four empty bytes
    return firstTrack(file, [&](Range track) {
        const Range handler =
            firstBox(file, firstBox(file, track, boxType("mdia")), boxType("hdlr"));
        return file.read(handler.begin + kindAt, 4) == "soun";
    });
}

namespace {

/// The chunks of a CAF file that are of use here; begin and end of their contents.
struct CafChunks {
    Range description; ///< "desc"
    Range table;       ///< "pakt"
    Range sound;       ///< "data"
};

CafChunks cafChunks(const ByteSource& file) {
    constexpr qint64 fileHeaderSize = 8;
    constexpr qint64 chunkHeaderSize = 12;
    constexpr int mostChunks = 1000;
    CafChunks chunks;
    qint64 at = fileHeaderSize;
    for (int count = 0; count < mostChunks; ++count) {
        const QByteArray head = file.read(at, chunkHeaderSize);
        if (head.size() < chunkHeaderSize)
            break;
        at += chunkHeaderSize;
        const auto size = bigEndian<qint64>(head.constData() + 4);
        const bool isWhole = size >= 0 && size <= file.size - at;
        const Range contents{at, isWhole ? at + size : file.size};
        const auto type = bigEndian<quint32>(head.constData());
        if (type == boxType("desc"))
            chunks.description = contents;
        else if (type == boxType("pakt"))
            chunks.table = contents;
        else if (type == boxType("data"))
            chunks.sound = contents;
        if (!isWhole)
            break; // the sound of unstated length ends the file
        at += size;
    }
    return chunks;
}

std::optional<CafPacketTable> parseCafTable(const ByteSource& file, const CafChunks& chunks) {
    const QByteArray table = file.read(chunks.table.begin, 24);
    if (chunks.table.size() < 24 || table.size() < 24)
        return std::nullopt;
    const CafPacketTable figures{bigEndian<qint64>(table.constData() + 8),
                                 bigEndian<qint32>(table.constData() + 16)};
    if (figures.validFrames <= 0 || figures.primingFrames < 0)
        return std::nullopt;
    return figures;
}

// A number in bytes that carry seven bits each.
std::int64_t takeVarying(QByteArrayView& bytes) {
    std::int64_t value = 0;
    for (int count = 0; count < 8 && !bytes.isEmpty(); ++count) {
        const char byte = bytes[0];
        bytes = bytes.sliced(1);
        value = value << 7 | (byte & 0x7f);
        if ((byte & 0x80) == 0)
            break;
    }
    return value;
}

/// The frames in a packet of Apple Lossless, if it says that it is not full. Its first element
/// begins with 3 bits of kind, 4 of number, 12 unused, one that announces a number of frames, 3 of
/// other matters, and the 32 bits of that number.
std::optional<std::int64_t> partialAlacFrames(QByteArrayView packet) {
    if (packet.size() < 7 || (packet[2] & 0x10) == 0)
        return std::nullopt;
    const auto bits =
        qFromBigEndian<quint64>(packet.first(7).toByteArray().append('\0').constData());
    return static_cast<std::int64_t>(bits >> (64 - 23 - 32) & 0xffff'ffffU);
}

/// The whole timeline of Apple Lossless in CAF, by its last packet.
std::optional<std::int64_t> cafAlacFrames(const ByteSource& file, const CafChunks& chunks) {
    constexpr qint64 tableHead = 24;
    constexpr qint64 longestTable = 8 << 20;
    constexpr qint64 editCount = 4; // in front of the sound
    const QByteArray description = file.read(chunks.description.begin, 32);
    if (description.size() < 32 ||
        bigEndian<quint32>(&description.constData()[8]) != boxType("alac"))
        return std::nullopt;
    const qint64 packetFrames = bigEndian<quint32>(&description.constData()[20]);
    const QByteArray head = file.read(chunks.table.begin, 8);
    const QByteArray table = file.read(chunks.table.begin + tableHead,
                                       std::min(chunks.table.size() - tableHead, longestTable));
    const auto packets = head.size() == 8 ? bigEndian<qint64>(head.constData()) : 0;
    QByteArrayView rest(table);
    qint64 at = chunks.sound.begin + editCount;
    for (qint64 packet = 0; packet + 1 < packets && !rest.isEmpty(); ++packet)
        at += takeVarying(rest);
    if (packets < 1 || rest.isEmpty())
        return std::nullopt;
    const auto partial = partialAlacFrames(file.read(at, 7));
    return (packets - 1) * packetFrames + partial.value_or(packetFrames);
}

} // namespace

std::optional<CafPacketTable> cafPacketTable(const ByteSource& file) {
    return parseCafTable(file, cafChunks(file));
}

std::optional<std::int64_t> cafMusicFrames(const ByteSource& file) {
    const CafChunks chunks = cafChunks(file);
    const auto table = parseCafTable(file, chunks);
    if (!table)
        return std::nullopt;
    const auto whole = cafAlacFrames(file, chunks);
    return whole ? std::min(table->validFrames, *whole - table->primingFrames) : table->validFrames;
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

StreamExtent mp3Extent(const Mp3Figures& figures, std::int64_t raw) {
    const std::int64_t delay = figures.delay + mp3DecoderDelay;
    const std::int64_t end = std::min(raw - figures.padding + mp3DecoderDelay, raw);
    return {delay, end - delay};
}

namespace {

constexpr std::int64_t musepackDecoderDelay = 481;
constexpr std::int64_t musepackFrame = 1152;

// Version 8: packets of two letters and a size that counts itself.
std::optional<StreamExtent> musepack8Extent(const ByteSource& file, qint64 at) {
    constexpr int mostPackets = 16;
    constexpr qsizetype checksumAndVersion = 5;
    for (int packets = 0; packets < mostPackets; ++packets) {
        const QByteArray head = file.read(at, 64);
        QByteArrayView rest = QByteArrayView(head).sliced(std::min<qsizetype>(2, head.size()));
        const std::int64_t size = takeVarying(rest);
        if (size < 3)
            return std::nullopt;
        if (head.startsWith("SH") && rest.size() > checksumAndVersion) {
            rest = rest.sliced(checksumAndVersion);
            const std::int64_t frames = takeVarying(rest);
            const std::int64_t silence = takeVarying(rest);
            return StreamExtent{musepackDecoderDelay + silence, frames - silence};
        }
        at += size;
    }
    return std::nullopt;
}

// Version 7: a fixed header of words, little-endian.
std::optional<StreamExtent> musepack7Extent(const ByteSource& file, qint64 start) {
    const QByteArray head = file.read(start, 24);
    if (head.size() < 24)
        return std::nullopt;
    const std::int64_t whole = qFromLittleEndian<quint32>(head.constData() + 4) * musepackFrame;
    const auto last = qFromLittleEndian<quint32>(head.constData() + 20);
    const bool isExact = (last >> 31) != 0;
    const std::int64_t unused =
        isExact ? musepackFrame - std::int64_t{last >> 20 & 0x7ff} : musepackDecoderDelay;
    return StreamExtent{musepackDecoderDelay, whole - unused};
}

} // namespace

std::optional<StreamExtent> musepackExtent(const ByteSource& file, qint64 start) {
    constexpr qint64 magicBytes = 4;
    const auto extent = file.read(start, magicBytes) == "MPCK"
                            ? musepack8Extent(file, start + magicBytes)
                            : musepack7Extent(file, start);
    return extent && extent->length > 0 ? extent : std::nullopt;
}

std::optional<std::int64_t> dsfBits(const ByteSource& file) {
    constexpr qint64 formatAt = 28;
    const QByteArray format = file.read(formatAt, 44);
    if (format.size() < 44 || !format.startsWith("fmt "))
        return std::nullopt;
    return qFromLittleEndian<qint64>(format.constData() + 36);
}

std::optional<std::int64_t> dsdiffSoundBytes(const ByteSource& file) {
    constexpr qint64 formHead = 16;
    constexpr qint64 chunkHead = 12;
    constexpr int mostChunks = 1000;
    qint64 at = formHead;
    for (int chunks = 0; chunks < mostChunks; ++chunks) {
        const QByteArray head = file.read(at, chunkHead);
        if (head.size() < chunkHead)
            break;
        at += chunkHead;
        const auto size = bigEndian<qint64>(head.constData() + 4);
        if (head.startsWith("DSD "))
            return std::clamp<std::int64_t>(size, 0, file.size - at);
        if (size < 0 || size > file.size - at)
            break;
        at += size + (size & 1);
    }
    return std::nullopt;
}

std::optional<std::int64_t> asfTime(const ByteSource& file) {
    static const QByteArray properties = QByteArray::fromHex("a1dcab8c47a9cf118ee400c00c205365");
    constexpr qint64 ticksPerMillisecond = asfTicksPerSecond / 1000;
    constexpr int mostObjects = 1000;
    qint64 at = 30; // behind the head of the object that holds all others
    for (int objects = 0; objects < mostObjects; ++objects) {
        const QByteArray object = file.read(at, 92);
        if (object.size() < 92)
            break;
        const auto size = qFromLittleEndian<qint64>(object.constData() + 16);
        if (object.startsWith(properties)) {
            const auto playing = qFromLittleEndian<qint64>(object.constData() + 64);
            const auto loading = qFromLittleEndian<quint32>(object.constData() + 80);
            const bool isBroadcast = (object[88] & 1) != 0;
            const qint64 time = playing - loading * ticksPerMillisecond;
            return isBroadcast || time <= 0 ? std::nullopt : std::optional(time);
        }
        if (size < 24 || size > file.size - at)
            break;
        at += size;
    }
    return std::nullopt;
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
