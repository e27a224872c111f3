// SPDX-License-Identifier: MIT
#include "audio/files/container_signature.h"

#include "libav/container.h"

#include <fcntl.h>
#include <unistd.h>

namespace halvane {

const char* containerBySignature(const QByteArray& fileName) {
    const int file = ::open(fileName.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return nullptr;
    const auto facts = detectContainer([file](qint64 offset, OpeningBytes& bytes) {
        return ::pread(file, bytes.data(), bytes.size(), offset) == std::ssize(bytes);
    });
    ::close(file);
    switch (facts.container) {
    case Container::mpeg:
        return "mp3";
    case Container::flac:
        return "flac";
    case Container::mp4:
        return "mov";
    case Container::wav:
        return "wav";
    case Container::aiff:
        return "aiff";
    case Container::caf:
        return "caf";
    case Container::ogg:
        return "ogg";
    case Container::wavpack:
        return "wv";
    case Container::ape:
        return "ape";
    case Container::tta:
        return "tta";
    case Container::dsf:
        return "dsf";
    case Container::dff:
        return "iff";
    case Container::asf:
        return "asf";
    case Container::musepack: // two readers, one for each of its versions
    case Container::adts:     // the two bytes that begin a frame are too few to rule out all others
    case Container::adif:
    case Container::other:
        break;
    }
    return nullptr;
}

} // namespace halvane
