// SPDX-License-Identifier: MIT
#pragma once

#include "model/queue_item.h"
#include "model/track.h"

#include <optional>

namespace halvane {

/// A new queue entry for a track, with an id of its own. It is not current. None for a track
/// without a file. Any thread.
std::optional<QueueItem> queueItemFromTrack(const Track& track);

/// What a library track carries beyond the record of its file.
struct TrackExtras {
    qint64 rating = 0;
    qint64 plays = 0;
    bool loved = false;
};

/// A new library track with an id of its own, from what was read of a file. Any thread.
Track trackFromQueueItem(QueueItem item, const TrackExtras& extras);

} // namespace halvane
