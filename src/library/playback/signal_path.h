// SPDX-License-Identifier: MIT
#pragma once

#include "model/queue_item.h"

#include <QString>

namespace halvane {

/// What the playing entry's sound goes through on its way out: codec, bit depth, and the file's
/// rate with the output's where they differ ("FLAC · 24-bit · 96 kHz → 48 kHz"). Rates in Hz, 0 or
/// less where unknown. Pure, any thread.
QString signalPathDescription(const QueueItem& item, double fileRate, double outputRate);

} // namespace halvane
