// SPDX-License-Identifier: MIT
#pragma once

#include "libav/byte_source.h"
#include "libav/container.h"

#include <vector>

namespace halvane {

/// Bytes of a file from `begin` to before `end`.
struct ByteRange {
    qint64 begin = 0;
    qint64 end = 0;
};

/// Where the coded sound of a file lies: what stays when its tags, its pictures and the container's
/// own tables change. The ranges follow one another as the sound does. Empty where there is none.
/// MP4 is not known here unless it is fragmented. Reads headers only, but all page headers of an
/// Ogg file, for which most of it is read. Any thread.
std::vector<ByteRange> soundExtent(const ByteSource& file, const ContainerFacts& facts);

} // namespace halvane
