// SPDX-License-Identifier: MIT
#include "library/track_conversion.h"

namespace halvane {

std::optional<QueueItem> queueItemFromTrack(const Track& track) {
    if (!track.sourceURL)
        return std::nullopt;
    QueueItem item;
    item.title = track.title;
    item.artist = track.artist;
    item.album = track.album;
    item.duration = track.duration;
    item.quality = track.format;
    item.genre = track.genre;
    item.year = track.year;
    item.sampleRate = track.sampleRate;
    item.bitDepth = track.bitDepth;
    item.coverImageData = track.coverImageData;
    item.coverURL = track.coverURL;
    item.durationSeconds = track.durationSeconds;
    item.sourceURL = track.sourceURL;
    return item;
}

Track trackFromQueueItem(const QueueItem& item, const TrackExtras& extras) {
    Track track;
    track.title = item.title;
    track.artist = item.artist;
    track.album = item.album;
    track.genre = item.genre;
    track.year = item.year;
    track.duration = item.duration;
    track.format = item.quality;
    track.sampleRate = item.sampleRate;
    track.bitDepth = item.bitDepth;
    track.size = extras.size;
    track.rating = extras.rating;
    track.plays = extras.plays;
    track.loved = extras.loved;
    track.sourceURL = item.sourceURL;
    track.coverImageData = item.coverImageData;
    track.coverURL = item.coverURL;
    track.durationSeconds = item.durationSeconds;
    return track;
}

} // namespace halvane
