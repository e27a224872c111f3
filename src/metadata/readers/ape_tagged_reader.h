// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

/// Reads the containers whose tags stand behind the sound: WavPack, Monkey's Audio, Musepack and
/// True Audio. Any thread.
FileMetadata readApeTagged(BoundedFile& file, const ContainerFacts& facts);

} // namespace halvane
