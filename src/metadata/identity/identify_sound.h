// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "metadata/readers/bounded_file.h"
#include "model/sound_identity.h"

namespace halvane {

/// The identity of a file's sound as its header states it: a FLAC file has a checksum of the
/// decoded sound there. Not known where there is none. Reads nothing that reading the tags does not
/// read. Any thread.
SoundIdentity statedIdentity(BoundedFile& file, const ContainerFacts& facts);

/// The same, worked out where the header does not state it: from how many bytes of coded sound
/// there are, and from those at some places spread over them. Not known where the sound is not
/// found, or the file is exhausted. Any thread.
SoundIdentity identifySound(BoundedFile& file, const ContainerFacts& facts);

} // namespace halvane
