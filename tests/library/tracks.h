// SPDX-License-Identifier: MIT
// Short ways to make tracks for the library's tests.
#pragma once

#include "library/catalog/library_store.h"

#include <vector>

namespace halvane::test {

/// A track whose file is at a path. Its title is the path's last component.
inline Track trackAt(const QString& path) {
    Track track;
    track.sourceURL = FileUrl(path);
    track.title = track.sourceURL->fileName();
    return track;
}

inline Track trackOf(const QString& path, const QString& title, const QString& artist,
                     const QString& album) {
    Track track = trackAt(path);
    track.title = title;
    track.artist = artist;
    track.album = album;
    return track;
}

/// The same, led by an album artist, with a disc and a number.
inline Track numbered(Track track, const QString& albumArtist, quint16 disc, quint16 number) {
    track.albumTags.albumArtist = albumArtist;
    track.albumTags.disc = disc;
    track.albumTags.track = number;
    return track;
}

inline TrackRows rowsOf(std::vector<Track> tracks) {
    TrackRows rows;
    for (Track& track : tracks)
        rows.push_back(makeRow(std::move(track)));
    return rows;
}

} // namespace halvane::test
