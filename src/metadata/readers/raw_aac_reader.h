// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// Rate and length of AAC without a container: ADTS frames (ISO/IEC 13818-7, 6.2) are counted, an
/// ADIF header (6.1) tells its bitrate. The length of long files is guessed from their first
/// minutes. Any thread.
StreamFacts readRawAac(BoundedFile& file, const ContainerFacts& facts);

} // namespace halvane
