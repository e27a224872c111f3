// SPDX-License-Identifier: MIT
#include "library/catalog/track_rows.h"

#include "library/catalog/track_conversion.h"

#include <algorithm>

namespace halvane {

TrackRows rowsFromLoaded(std::vector<LoadedItem> loaded, double addedDate) {
    TrackRows rows;
    rows.reserve(loaded.size());
    for (LoadedItem& file : loaded) {
        file.item.addedDate = addedDate;
        rows.push_back(makeRow(trackFromQueueItem(std::move(file.item), {})));
    }
    return rows;
}

TrackPtr rowReadAgain(const Track& known, LoadedItem read) {
    Track track = trackFromQueueItem(
        std::move(read.item), {.rating = known.rating, .plays = known.plays, .loved = known.loved});
    track.id = known.id;
    track.addedDate = known.addedDate;
    return makeRow(std::move(track));
}

TrackRows takeLast(TrackRows& rows, std::size_t most) {
    const auto begin = rows.end() - static_cast<std::ptrdiff_t>(std::min(rows.size(), most));
    TrackRows last(begin, rows.end());
    rows.erase(begin, rows.end());
    return last;
}

QStringList pathsOf(const TrackRows& rows) {
    QStringList paths;
    for (const TrackPtr& row : rows)
        if (row->sourceURL)
            paths.append(row->path());
    return paths;
}

} // namespace halvane
