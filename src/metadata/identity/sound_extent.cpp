// SPDX-License-Identifier: MIT
#include "metadata/identity/sound_extent.h"

#include "libav/frame_walk.h"

#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <limits>

namespace halvane {

namespace {

template<typename Number>
Number littleEndianAt(const ByteSource& file, qint64 at) {
    const QByteArray bytes = file.read(at, sizeof(Number));
    return bytes.size() == sizeof(Number) ? qFromLittleEndian<Number>(bytes.constData()) : 0;
}

template<typename Number>
Number bigEndianAt(const ByteSource& file, qint64 at) {
    const QByteArray bytes = file.read(at, sizeof(Number));
    return bytes.size() == sizeof(Number) ? qFromBigEndian<Number>(bytes.constData()) : 0;
}

// An APE tag in front of the sound: its header tells how long all behind it is.
qint64 behindApeTag(const ByteSource& file, qint64 start) {
    constexpr qint64 headerBytes = 32;
    if (file.read(start, 8) != "APETAGEX")
        return start;
    return start + headerBytes + littleEndianAt<quint32>(file, start + 12);
}

// The bytes of the tag that ends at a place; 0 where none does.
qint64 tagBefore(const ByteSource& file, qint64 end) {
    constexpr qint64 id3v1Bytes = 128;
    constexpr qint64 longId3v1Bytes = 227;
    constexpr qint64 apeFooterBytes = 32;
    constexpr quint32 apeHasHeader = 0x8000'0000;
    constexpr qint64 lyricsEndBytes = 15; // six digits and a word
    constexpr qint64 id3v2FooterBytes = 10;
    if (file.read(end - id3v1Bytes, 3) == "TAG")
        return id3v1Bytes;
    if (file.read(end - longId3v1Bytes, 4) == "TAG+")
        return longId3v1Bytes;
    if (file.read(end - apeFooterBytes, 8) == "APETAGEX") {
        const bool hasHeader =
            (littleEndianAt<quint32>(file, end - apeFooterBytes + 20) & apeHasHeader) != 0;
        return littleEndianAt<quint32>(file, end - apeFooterBytes + 12) +
               (hasHeader ? apeFooterBytes : 0);
    }
    const QByteArray lyrics = file.read(end - lyricsEndBytes, lyricsEndBytes);
    if (lyrics.endsWith("LYRICS200"))
        return lyrics.first(6).toLongLong() + lyricsEndBytes;
    if (file.read(end - id3v2FooterBytes, 3) == "3DI") {
        const QByteArray size = file.read(end - id3v2FooterBytes + 6, 4);
        qint64 bytes = 0;
        for (const char byte : size)
            bytes = bytes << 7 | (byte & 0x7f);
        return bytes + 2 * id3v2FooterBytes;
    }
    return 0;
}

// What begins at a place and ends where the tags behind it begin.
std::vector<ByteRange> untilTags(const ByteSource& file, qint64 begin) {
    constexpr int mostTags = 8;
    qint64 end = file.size;
    for (int tags = 0; tags < mostTags; ++tags) {
        const qint64 bytes = tagBefore(file, end);
        if (bytes <= 0 || bytes > end - begin)
            break;
        end -= bytes;
    }
    if (begin >= end)
        return {};
    return {{begin, end}};
}

// The information frame in front of the sound is its writer's, who may write it anew.
qint64 behindInformation(const ByteSource& file, qint64 start) {
    constexpr qint64 places = 64; // where its name stands, by version and channels
    const QByteArray opening = file.read(start, places);
    const std::int64_t size = frameSize(FrameStream::mpegLayer3, opening);
    const bool isInformation =
        opening.contains("Xing") || opening.contains("Info") || opening.contains("VBRI");
    return size > 0 && isInformation ? start + size : start;
}

std::vector<ByteRange> flacFrames(const ByteSource& file, qint64 start) {
    constexpr int mostBlocks = 10'000;
    qint64 at = start + 4;
    for (int blocks = 0; blocks < mostBlocks; ++blocks) {
        const auto head = bigEndianAt<quint32>(file, at);
        at += 4 + (head & 0xff'ffffU);
        if ((head & 0x8000'0000U) != 0)
            return untilTags(file, at);
        if (at >= file.size)
            break;
    }
    return {};
}

// How a container lays out its chunks: a name and a size, whose bytes may be filled up to an even
// number.
struct ChunkLayout {
    qint64 first = 0; ///< where the first chunk begins
    qint64 nameBytes = 4;
    qint64 sizeBytes = 4;
    bool isLittleEndian = false;
    bool countsHead = false; ///< the size counts name and size themselves
    bool isFilled = false;
};

qint64 chunkSize(const ByteSource& file, const ChunkLayout& layout, qint64 at) {
    const qint64 place = at + layout.nameBytes;
    if (layout.sizeBytes == 4)
        return layout.isLittleEndian ? littleEndianAt<quint32>(file, place)
                                     : bigEndianAt<quint32>(file, place);
    return layout.isLittleEndian ? littleEndianAt<qint64>(file, place)
                                 : bigEndianAt<qint64>(file, place);
}

// The contents of the first chunk of one of these names, without some bytes of its own in front. A
// size that can't be right, as a writer to a pipe leaves it, reaches to the end of the file.
std::vector<ByteRange> chunk(const ByteSource& file, const ChunkLayout& layout,
                             const QByteArrayList& names, qint64 ownBytes) {
    constexpr int mostChunks = 10'000;
    const qint64 headBytes = layout.nameBytes + layout.sizeBytes;
    qint64 at = layout.first;
    for (int chunks = 0; chunks < mostChunks && at + headBytes <= file.size; ++chunks) {
        const QByteArray name = file.read(at, layout.nameBytes);
        qint64 size = chunkSize(file, layout, at) - (layout.countsHead ? headBytes : 0);
        const qint64 begin = at + headBytes;
        const bool isCredible = size >= 0 && size <= file.size - begin;
        if (names.contains(name)) {
            const qint64 end = isCredible && size > 0 ? begin + size : file.size;
            if (begin + ownBytes >= end)
                return {};
            return {{begin + ownBytes, end}};
        }
        if (!isCredible)
            break;
        at = begin + size + (layout.isFilled ? size & 1 : 0);
    }
    return {};
}

// The payload of the pages behind each stream's headers (RFC 3533, 6). Pages are not counted in:
// some programs lay them out anew.
std::vector<ByteRange> oggPayload(const ByteSource& file) {
    constexpr qint64 headBytes = 27;
    std::vector<ByteRange> ranges;
    QSet<quint32> sounding; // serial numbers
    for (qint64 at = 0; at + headBytes <= file.size;) {
        const QByteArray head = file.read(at, headBytes);
        if (head.size() < headBytes || !head.startsWith("OggS"))
            break;
        const auto granule = qFromLittleEndian<qint64>(head.constData() + 6);
        const auto serial = qFromLittleEndian<quint32>(head.constData() + 14);
        const auto segments = static_cast<quint8>(head[26]);
        qint64 payload = 0;
        for (const char size : file.read(at + headBytes, segments))
            payload += static_cast<quint8>(size);
        const qint64 begin = at + headBytes + segments;
        at = begin + payload;
        // Headers have the position 0, or none where they go on on the next page.
        if (granule > 0)
            sounding.insert(serial);
        if (payload > 0 && sounding.contains(serial))
            ranges.push_back({begin, std::min(at, file.size)});
    }
    return ranges;
}

// A fragmented MP4 file holds its sound in many boxes, each described in front of it.
std::vector<ByteRange> fragments(const ByteSource& file) {
    std::vector<ByteRange> ranges;
    bool isFragmented = false;
    for (qint64 at = 0; at + 8 <= file.size;) {
        const QByteArray name = file.read(at + 4, 4);
        qint64 size = bigEndianAt<quint32>(file, at);
        qint64 headBytes = 8;
        if (size == 1) {
            headBytes = 16;
            size = bigEndianAt<qint64>(file, at + 8);
        }
        const qint64 end = size == 0 || size > file.size - at ? file.size : at + size;
        isFragmented = isFragmented || name == "moof";
        if (name == "mdat" && at + headBytes < end)
            ranges.push_back({at + headBytes, end});
        if (end <= at + headBytes && size != headBytes)
            break;
        at = end;
    }
    return isFragmented ? ranges : std::vector<ByteRange>();
}

} // namespace

std::vector<ByteRange> soundExtent(const ByteSource& file, const ContainerFacts& facts) {
    constexpr ChunkLayout riff{.first = 12, .isLittleEndian = true, .isFilled = true};
    constexpr ChunkLayout aiff{.first = 12, .isFilled = true};
    constexpr ChunkLayout caf{.first = 8, .sizeBytes = 8};
    constexpr ChunkLayout dsf{.sizeBytes = 8, .isLittleEndian = true, .countsHead = true};
    constexpr ChunkLayout dsdiff{.first = 16, .sizeBytes = 8, .isFilled = true};
    constexpr ChunkLayout asf{
        .nameBytes = 16, .sizeBytes = 8, .isLittleEndian = true, .countsHead = true};
    static const QByteArray asfData = QByteArray::fromHex("3626b2758e66cf11a6d900aa0062ce6c");
    const qint64 start = behindApeTag(file, facts.audioStart);
    switch (facts.container) {
    case Container::mpeg:
        return untilTags(file, behindInformation(file, start));
    case Container::flac:
        return flacFrames(file, start);
    case Container::wav:
        return chunk(file, riff, {"data"}, 0);
    case Container::aiff:
        return chunk(file, aiff, {"SSND"}, 8); // an offset and the size of blocks
    case Container::caf:
        return chunk(file, caf, {"data"}, 4); // the count of edits
    case Container::dsf:
        return chunk(file, dsf, {"data"}, 0);
    case Container::dff:
        return chunk(file, dsdiff, {"DSD ", "DST "}, 0);
    case Container::asf:
        return chunk(file, asf, {asfData}, 26); // the file's id and the number of packets
    case Container::ogg:
        return oggPayload(file);
    case Container::mp4:
        return fragments(file);
    case Container::adts:
    case Container::adif:
    case Container::wavpack:
    case Container::ape:
    case Container::musepack:
    case Container::tta:
    case Container::other:
        break;
    }
    return untilTags(file, start);
}

} // namespace halvane
