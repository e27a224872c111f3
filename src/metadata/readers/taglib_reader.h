// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// What TagLib finds in a file of the given container; nothing for containers it does not know.
/// Any thread. Pictures stay in memory only as long as the result lives.
FileMetadata readWithTagLib(BoundedFile& file, const ContainerFacts& facts);

} // namespace halvane
