// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// Tags and stream facts of WAV and AIFF files, both made of chunks. TagLib finds the chunks and
/// reads the tags in them. The text chunks of AIFF and the bytes that describe the stream are read
/// here, because TagLib does not tell them. Any thread.
FileMetadata readRiff(BoundedFile& file, Container container);

} // namespace halvane
