// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"

namespace halvane {

/// Whether the boxes of an MP4 file nest so deep, or are so many, that a parser that recurses into
/// them could run out of stack or memory.
bool mp4NestsTooDeep(BoundedFile& file);

} // namespace halvane
