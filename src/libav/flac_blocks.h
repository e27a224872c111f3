// SPDX-License-Identifier: MIT
#pragma once

#include "libav/byte_source.h"

#include <cstdint>
#include <optional>

namespace halvane {

/// How many frames of sound a FLAC file has whose header does not say, as one that was written to a
/// pipe: the last block tells where it lies (RFC 9639, 9.1). `start` is where the stream begins.
/// None where no whole block ends the file. Any thread.
std::optional<std::int64_t> flacEnd(const ByteSource& file, qint64 start);

/// A place in a FLAC stream: the byte where a block begins, and its first frame of sound.
struct FlacPlace {
    qint64 position = 0;
    std::int64_t frame = 0;
};

/// A block that begins at `frame`, or so little before it that one or two reads lead there. Both
/// places that it lies between are known: the second may be the stream's end. Looks at few places,
/// as each may cost a slow disk's whole delay. `blockSize` is the frames of a block where all are
/// as long. None where the stream is damaged, or the places are wrong. Any thread.
std::optional<FlacPlace> flacBlockBefore(const ByteSource& file, std::int64_t frame, int blockSize,
                                         FlacPlace low, FlacPlace high);

} // namespace halvane
