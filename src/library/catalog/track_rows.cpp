// SPDX-License-Identifier: MIT
#include "library/catalog/track_rows.h"

#include "library/catalog/track_conversion.h"

namespace halvane {

TrackRows rowsFromLoaded(std::vector<LoadedItem> loaded) {
    TrackRows rows;
    rows.reserve(loaded.size());
    for (LoadedItem& file : loaded)
        rows.push_back(makeRow(trackFromQueueItem(std::move(file.item), {})));
    return rows;
}

TrackPtr rowReadAgain(const Track& known, LoadedItem read) {
    Track track = trackFromQueueItem(
        std::move(read.item), {.rating = known.rating, .plays = known.plays, .loved = known.loved});
    track.id = known.id;
    return makeRow(std::move(track));
}

QStringList pathsOf(const TrackRows& rows) {
    QStringList paths;
    for (const TrackPtr& row : rows)
        if (row->sourceURL)
            paths.append(row->path());
    return paths;
}

} // namespace halvane
