// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// Reads an Ogg file that holds Vorbis, Opus, FLAC or Speex. The length is that of all links that
/// play as one, the tags are the first one's. Any thread.
FileMetadata readOgg(BoundedFile& file);

} // namespace halvane
