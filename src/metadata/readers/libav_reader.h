// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// What libavformat finds in a file: for CAF, and for whatever else TagLib could make nothing of.
/// Any thread.
FileMetadata readWithLibav(BoundedFile& file, Container container);

} // namespace halvane
