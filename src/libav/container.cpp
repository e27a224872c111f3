// SPDX-License-Identifier: MIT
#include "libav/container.h"

#include <algorithm>
#include <string_view>

namespace halvane {

namespace {

std::string_view text(const OpeningBytes& bytes, std::size_t from, std::size_t length) {
    return {bytes.data() + from, length};
}

unsigned byteAt(const OpeningBytes& bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

// The header of an MPEG audio frame (ISO/IEC 11172-3, 2.4.1.3) of layer II or III, without a
// reserved value and with a bitrate. One of layer I can't be told from a text in UTF-16.
bool isMpegFrame(const OpeningBytes& bytes) {
    const unsigned second = byteAt(bytes, 1);
    const unsigned third = byteAt(bytes, 2);
    const bool isSync = byteAt(bytes, 0) == 0xff && (second & 0xe0) == 0xe0;
    const bool isVersion = (second & 0x18) != 0x08;
    const bool isLayer = (second & 0x06) == 0x02 || (second & 0x06) == 0x04;
    const bool isBitrate = (third & 0xf0) != 0xf0 && (third & 0xf0) != 0;
    const bool isRate = (third & 0x0c) != 0x0c;
    return isSync && isVersion && isLayer && isBitrate && isRate;
}

// The header of an ADTS frame (ISO/IEC 13818-7, 6.2) with a known sample rate and room for itself.
bool isAdtsFrame(const OpeningBytes& bytes) {
    constexpr unsigned rates = 13;
    constexpr unsigned headerBytes = 7;
    const unsigned rate = byteAt(bytes, 2) >> 2 & 15;
    const unsigned size =
        (byteAt(bytes, 3) & 3) << 11 | byteAt(bytes, 4) << 3 | byteAt(bytes, 5) >> 5;
    return byteAt(bytes, 0) == 0xff && (byteAt(bytes, 1) & 0xf6) == 0xf0 && rate < rates &&
           size >= headerBytes;
}

Container bySignature(const OpeningBytes& bytes) {
    const std::string_view first = text(bytes, 0, 4);
    const std::string_view second = text(bytes, 4, 4);
    const std::string_view third = text(bytes, 8, 4);
    if (first == "fLaC")
        return Container::flac;
    if (first == "RIFF" && third == "WAVE")
        return Container::wav;
    if (first == "FORM" && (third == "AIFF" || third == "AIFC"))
        return Container::aiff;
    if (first == "caff")
        return Container::caf;
    if (first == "ADIF")
        return Container::adif;
    if (first == "OggS")
        return Container::ogg;
    if (first == "wvpk")
        return Container::wavpack;
    if (first == "MAC ")
        return Container::ape;
    if (first == "MPCK" || (first.starts_with("MP+") && (byteAt(bytes, 3) & 15) == 7))
        return Container::musepack;
    if (first == "TTA1" || first == "TTA2")
        return Container::tta;
    if (first == "DSD ")
        return Container::dsf;
    if (first == "FRM8")
        return Container::dff;
    if (text(bytes, 0, 8) == "\x30\x26\xB2\x75\x8E\x66\xCF\x11")
        return Container::asf;
    // QuickTime files from before the "ftyp" box begin with one of the others.
    if (second == "ftyp" || second == "moov" || second == "mdat" || second == "wide")
        return Container::mp4;
    if (isAdtsFrame(bytes))
        return Container::adts;
    return isMpegFrame(bytes) ? Container::mpeg : Container::other;
}

} // namespace

std::optional<Id3v2Header> id3v2Header(const OpeningBytes& bytes) {
    if (text(bytes, 0, 3) != "ID3" || byteAt(bytes, 3) == 0xff || byteAt(bytes, 4) == 0xff)
        return std::nullopt;
    Id3v2Header header{byteAt(bytes, 3), 0, Id3v2Header::bytes};
    for (std::size_t i = 6; i < 10; ++i) {
        if (byteAt(bytes, i) > 0x7f)
            return std::nullopt;
        header.size = header.size << 7 | bytes[i];
    }
    const bool hasFooter = header.version >= 4 && (byteAt(bytes, 5) & 0x10) != 0;
    header.wholeSize += header.size + (hasFooter ? Id3v2Header::bytes : 0);
    return header;
}

ContainerFacts detectContainer(const ReadOpening& read) {
    constexpr int mostTags = 8; // some files carry several, one behind the other
    ContainerFacts facts;
    OpeningBytes bytes{};
    for (int tags = 0; tags <= mostTags && read(facts.audioStart, bytes); ++tags) {
        const auto tag = id3v2Header(bytes);
        if (!tag) {
            facts.container = bySignature(bytes);
            break;
        }
        facts.audioStart += tag->wholeSize;
    }
    return facts;
}

ContainerFacts detectContainer(const ByteSource& file) {
    return detectContainer([&file](qint64 offset, OpeningBytes& bytes) {
        const QByteArray read = file.read(offset, std::ssize(bytes));
        std::copy(read.begin(), read.end(), bytes.begin());
        return read.size() == std::ssize(bytes);
    });
}

} // namespace halvane
