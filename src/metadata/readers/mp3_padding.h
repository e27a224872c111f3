// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"

namespace halvane {

/// How many samples of an MP3 stream are not music: what the encoder put before and after it, by
/// the figures that it leaves in the stream's first frame. 0 where there are none. Costs no read of
/// the disk right after the stream was looked at.
///
/// The layout is that of the LAME tag, which other encoders write too: behind the frame's side
/// information "Xing" or "Info", four bytes of flags, the fields that these announce, the encoder's
/// name in nine bytes, twelve more bytes, and then two numbers of 12 bits.
int mp3PaddingSamples(BoundedFile& file, qint64 firstFrame);

} // namespace halvane
