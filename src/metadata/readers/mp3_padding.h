// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"

namespace halvane {

/// How many samples the encoder put before and after the music of an MP3 stream, by the figures in
/// the stream's first frame. 0 where there are none. Costs no read of the disk right after the
/// stream was looked at.
///
/// The layout is that of the LAME tag, which other encoders write too. Behind the frame's side
/// information stand "Xing" or "Info", four bytes of flags, the fields that the flags announce, the
/// encoder's name in nine bytes, twelve more bytes, and two numbers of 12 bits.
int mp3PaddingSamples(BoundedFile& file, qint64 firstFrame);

} // namespace halvane
