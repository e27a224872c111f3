// SPDX-License-Identifier: MIT
#include "library/browsing/track_roles.h"

#include "library/browsing/cover_store.h"

namespace halvane::TrackRole {

QVariant value(const Track& track, int role, const RowState& state) {
    switch (role) {
    case Qt::DisplayRole:
    case title:
        return track.title;
    case artist:
        return track.artist;
    case album:
        return track.album;
    case quality:
        return track.format;
    case duration:
        return track.duration;
    case path:
        return track.path();
    case isLoved:
        return state.isLoved(track.path());
    case rating:
        return state.rating(track.path());
    case availability:
        return QVariant::fromValue(state.availability(track.path()));
    case coverKey:
        return state.covers->keyFor(track.coverImageData, track.coverURL);
    default:
        return {};
    }
}

QHash<int, QByteArray> names() {
    return {{title, "title"},      {artist, "artist"},     {album, "album"},
            {quality, "quality"},  {duration, "duration"}, {path, "path"},
            {isLoved, "isLoved"},  {rating, "rating"},     {availability, "availability"},
            {coverKey, "coverKey"}};
}

} // namespace halvane::TrackRole
