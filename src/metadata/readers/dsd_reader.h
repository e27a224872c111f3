// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// Reads Direct Stream Digital in a DSF or a DSDIFF file. The sample rate is that of its single
/// bits. Any thread.
FileMetadata readDsd(BoundedFile& file, Container container);

} // namespace halvane
