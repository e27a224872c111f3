// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/container.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// What TagLib finds in a file of the given container; nothing for containers it does not know.
/// Any thread. Pictures stay in memory only as long as the result lives.
FileMetadata readWithTagLib(BoundedFile& file, const ContainerFacts& facts);

} // namespace halvane
