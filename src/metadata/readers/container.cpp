// SPDX-License-Identifier: MIT
#include "metadata/readers/container.h"

#include "metadata/readers/byte_order.h"

#include <array>
#include <string_view>
#include <vector>

namespace halvane {

namespace {

using Bytes = std::array<char, 12>;

std::string_view text(const Bytes& bytes, std::size_t from, std::size_t length) {
    return {bytes.data() + from, length};
}

bool readBytes(BoundedFile& file, qint64 offset, Bytes& bytes) {
    bytes.fill(0);
    return file.read(offset, bytes.size(), bytes.data()) >= 4;
}

Container bySignature(const Bytes& bytes) {
    const std::string_view four = text(bytes, 0, 4);
    const std::string_view second = text(bytes, 4, 4);
    const std::string_view third = text(bytes, 8, 4);
    if (four == "fLaC")
        return Container::flac;
    if (four == "RIFF" && third == "WAVE")
        return Container::wav;
    if (four == "FORM" && (third == "AIFF" || third == "AIFC"))
        return Container::aiff;
    if (four == "caff")
        return Container::caf;
    if (four == "ADIF")
        return Container::adif;
    if (second == "ftyp" || second == "moov" || second == "mdat" || second == "wide")
        return Container::mp4;
    const quint32 sync = bigEndian32(bytes.data()) >> 16;
    if ((sync & 0xfff6) == 0xfff0)
        return Container::adts;
    if ((sync & 0xffe0) == 0xffe0 && (sync & 0x06) != 0)
        return Container::mpeg;
    return Container::other;
}

bool isParent(std::string_view name) {
    constexpr std::string_view parents[] = {"moov", "udta", "mdia", "meta", "ilst", "stbl",
                                            "minf", "moof", "traf", "trak", "stsd"};
    for (const auto parent : parents)
        if (name == parent)
            return true;
    return false;
}

} // namespace

ContainerFacts detectContainer(BoundedFile& file, const QString& lowerCasedExtension) {
    ContainerFacts facts;
    Bytes bytes;
    // Some files carry several tags one after the other.
    for (int tag = 0; tag < 8; ++tag) {
        if (!readBytes(file, facts.audioStart, bytes))
            break;
        if (text(bytes, 0, 3) != "ID3" || bytes[3] == char(0xff))
            break;
        const bool hasFooter = (bytes[5] & 0x10) != 0;
        facts.audioStart += 10 + synchsafe32(bytes.data() + 6) + (hasFooter ? 10 : 0);
    }
    facts.container = bySignature(bytes);
    if (facts.container != Container::other)
        return facts;
    // Junk in front of the first frame, or nothing behind the tag: the name is all there is.
    if (lowerCasedExtension == QLatin1String("mp3"))
        facts.container = Container::mpeg;
    else if (lowerCasedExtension == QLatin1String("aac"))
        facts.container = Container::adts;
    return facts;
}

bool mp4NestsTooDeep(BoundedFile& file) {
    constexpr std::size_t deepest = 32;
    constexpr int mostBoxes = 20'000;
    std::vector<qint64> ends{file.size()};
    qint64 offset = 0;
    for (int boxes = 0; boxes < mostBoxes; ++boxes) {
        while (!ends.empty() && offset + 8 > ends.back()) {
            offset = std::max(offset, ends.back());
            ends.pop_back();
        }
        Bytes bytes;
        if (ends.empty() || !readBytes(file, offset, bytes))
            return file.isExhausted();
        qint64 length = bigEndian32(bytes.data());
        qint64 header = 8;
        if (length == 1) {
            char large[8] = {};
            file.read(offset + 8, 8, large);
            length = qFromBigEndian<qint64>(large);
            header = 16;
        }
        if (length == 0)
            length = file.size() - offset;
        if (length < header || length > file.size())
            return false; // no parser goes on behind such a box
        const std::string_view name = text(bytes, 4, 4);
        if (!isParent(name)) {
            offset += length;
            continue;
        }
        ends.push_back(offset + length);
        if (ends.size() > deepest)
            return true;
        offset += header + (name == "meta" ? 4 : name == "stsd" ? 8 : 0);
    }
    return true;
}

} // namespace halvane
