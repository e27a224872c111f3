// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace halvane {

class AudioDecoder;

/// Which part of a raw timeline is the music.
struct StreamExtent {
    std::int64_t delay = 0;  ///< frames that the encoder put in front
    std::int64_t length = 0; ///< frames of music
};

/// Finds the extent of a file that has just been opened, from the figures in its container where it
/// has them, otherwise by reading the file through. May move the decoder.
StreamExtent findExtent(AudioDecoder& decoder, const QString& path);

} // namespace halvane
