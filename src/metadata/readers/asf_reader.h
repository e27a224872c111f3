// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// Reads an ASF file (Windows Media Audio). Any thread.
FileMetadata readAsf(BoundedFile& file);

} // namespace halvane
