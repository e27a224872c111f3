// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// Reads a file of the given container with TagLib. Finds nothing in containers that TagLib does
/// not know. Pictures stay in memory only as long as the result. Any thread.
FileMetadata readWithTagLib(BoundedFile& file, const ContainerFacts& facts);

} // namespace halvane
