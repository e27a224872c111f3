// SPDX-License-Identifier: MIT
#pragma once

#include "libav/byte_source.h"

#include <QtGlobal>

#include <array>
#include <functional>
#include <optional>

namespace halvane {

/// What a file holds.
enum class Container {
    mpeg,
    adts,
    adif,
    flac,
    mp4,
    wav,
    aiff,
    caf,
    ogg,
    wavpack,
    ape,
    musepack,
    tta,
    dsf,
    dff,
    asf,
    other
};

/// The header of an ID3v2 tag (ID3v2.4.0 structure, 3.1).
struct Id3v2Header {
    static constexpr qint64 bytes = 10;

    unsigned version; ///< 2, 3 or 4 of those in use
    qint64 size;      ///< bytes behind the header, without the footer
    qint64 wholeSize; ///< bytes with the header and the footer
};

/// The bytes that tell what begins at a place in a file.
using OpeningBytes = std::array<char, 12>;

/// No header where a byte has a value that the standard rules out.
std::optional<Id3v2Header> id3v2Header(const OpeningBytes& bytes);

struct ContainerFacts {
    Container container = Container::other;
    qint64 audioStart = 0; ///< where the first byte behind ID3v2 tags is
};

/// Reads the bytes at an offset into `bytes`; whether the file has them all.
using ReadOpening = std::function<bool(qint64 offset, OpeningBytes& bytes)>;

/// Tells a container by the first bytes behind any ID3v2 tags. `other` stands for everything that
/// they do not show beyond doubt, such as junk in front of the first frame. Reads no further bytes,
/// and calls no function of libav. Any thread.
ContainerFacts detectContainer(const ReadOpening& read);
ContainerFacts detectContainer(const ByteSource& file);

} // namespace halvane
