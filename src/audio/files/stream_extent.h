// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container_figures.h"

#include <QString>

namespace halvane {

class AudioDecoder;

/// Finds the extent of a file that has just been opened, from the figures in its container where it
/// has them, otherwise by reading the file through. May move the decoder.
StreamExtent findExtent(AudioDecoder& decoder, const QString& path);

} // namespace halvane
