// SPDX-License-Identifier: MIT
#include "library/catalog/track_conversion.h"

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
    item.albumTags = track.albumTags;
    item.levelTags = track.levelTags;
    item.saidTags = track.saidTags;
    item.readerVersion = track.readerVersion;
    item.identity = track.identity;
    item.coverImageData = track.coverImageData;
    item.coverURL = track.coverURL;
    item.durationSeconds = track.durationSeconds;
    item.readDate = track.readDate;
    item.addedDate = track.addedDate;
    item.fileSize = track.fileSize;
    item.sourceURL = track.sourceURL;
    return item;
}

Track trackFromQueueItem(QueueItem item, const TrackExtras& extras) {
    Track track;
    track.title = std::move(item.title);
    track.artist = std::move(item.artist);
    track.album = std::move(item.album);
    track.genre = std::move(item.genre);
    track.year = item.year;
    track.duration = std::move(item.duration);
    track.format = std::move(item.quality);
    track.sampleRate = std::move(item.sampleRate);
    track.bitDepth = std::move(item.bitDepth);
    track.albumTags = std::move(item.albumTags);
    track.levelTags = item.levelTags;
    track.saidTags = item.saidTags;
    track.readerVersion = item.readerVersion;
    track.identity = item.identity;
    track.fileSize = item.fileSize;
    track.rating = extras.rating;
    track.plays = extras.plays;
    track.loved = extras.loved;
    track.sourceURL = std::move(item.sourceURL);
    track.coverImageData = std::move(item.coverImageData);
    track.coverURL = std::move(item.coverURL);
    track.durationSeconds = item.durationSeconds;
    track.readDate = item.readDate;
    track.addedDate = item.addedDate;
    return track;
}

} // namespace halvane
