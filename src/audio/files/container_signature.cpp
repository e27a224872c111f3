// SPDX-License-Identifier: MIT
#include "audio/files/container_signature.h"

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace halvane {

namespace {

using Bytes = std::array<unsigned char, 12>;

std::string_view text(const Bytes& bytes, std::size_t from, std::size_t length) {
    return {reinterpret_cast<const char*>(bytes.data()) + from, length};
}

bool isId3v2(const Bytes& bytes) {
    return text(bytes, 0, 3) == "ID3" && bytes[3] != 0xff && bytes[4] != 0xff;
}

/// With its header, and the footer where it has one.
off_t id3v2Bytes(const Bytes& bytes) {
    off_t size = 0;
    for (std::size_t i = 6; i < 10; ++i)
        size = size << 7 | (bytes[i] & 0x7f);
    return size + (bytes[5] & 0x10 ? 20 : 10);
}

/// The header of a frame of layer III, without any value that is reserved.
bool isMp3Frame(const Bytes& bytes) {
    const bool isVersion = (bytes[1] & 0x18) != 0x08;
    const bool isBitrate = (bytes[2] & 0xf0) != 0xf0 && (bytes[2] & 0xf0) != 0;
    const bool isRate = (bytes[2] & 0x0c) != 0x0c;
    return bytes[0] == 0xff && (bytes[1] & 0xe6) == 0xe2 && isVersion && isBitrate && isRate;
}

const char* nameOf(const Bytes& bytes) {
    if (text(bytes, 0, 4) == "fLaC")
        return "flac";
    if (text(bytes, 0, 4) == "RIFF" && text(bytes, 8, 4) == "WAVE")
        return "wav";
    if (text(bytes, 0, 4) == "FORM" && text(bytes, 8, 3) == "AIF")
        return "aiff";
    if (text(bytes, 0, 4) == "caff")
        return "caf";
    if (text(bytes, 4, 4) == "ftyp")
        return "mov";
    return isMp3Frame(bytes) ? "mp3" : nullptr;
}

} // namespace

const char* containerBySignature(const QByteArray& fileName) {
    constexpr int mostTags = 8; // one behind the other
    const int file = ::open(fileName.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return nullptr;
    const char* name = nullptr;
    off_t offset = 0;
    for (int tags = 0; tags <= mostTags; ++tags) {
        Bytes bytes{};
        if (::pread(file, bytes.data(), bytes.size(), offset) != ssize_t(bytes.size()))
            break;
        if (!isId3v2(bytes)) {
            name = nameOf(bytes);
            break;
        }
        offset += id3v2Bytes(bytes);
    }
    ::close(file);
    return name;
}

} // namespace halvane
