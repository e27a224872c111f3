// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"

namespace halvane {

/// What a file holds, told by its bytes and only then by its name.
enum class Container { mpeg, adts, adif, flac, mp4, wav, aiff, caf, other };

struct ContainerFacts {
    Container container = Container::other;
    qint64 audioStart = 0; ///< where what follows ID3v2 tags begins
};

/// Looks at the first bytes, behind ID3v2 tags where there are any. The extension decides what no
/// signature tells.
ContainerFacts detectContainer(BoundedFile& file, const QString& lowerCasedExtension);

/// Whether the boxes of an MP4 file nest so deep, or are so many, that a parser that recurses into
/// them could run out of stack or memory.
bool mp4NestsTooDeep(BoundedFile& file);

} // namespace halvane
