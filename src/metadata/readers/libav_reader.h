// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// Reads a file with libavformat: CAF, and other files that TagLib can make nothing of. Any thread.
FileMetadata readWithLibav(BoundedFile& file, Container container);

} // namespace halvane
