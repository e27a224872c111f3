// SPDX-License-Identifier: MIT
#include "library/track_rows.h"

#include "library/track_conversion.h"

namespace halvane {

TrackRows rowsFromLoaded(std::vector<LoadedItem> loaded) {
    TrackRows rows;
    rows.reserve(loaded.size());
    for (LoadedItem& file : loaded) {
        TrackExtras extras;
        if (file.fileSize >= 0)
            extras.size = TrackMetadataLoader::byteCountText(file.fileSize);
        rows.push_back(makeRow(trackFromQueueItem(std::move(file.item), extras)));
    }
    return rows;
}

QStringList pathsOf(const TrackRows& rows) {
    QStringList paths;
    for (const TrackPtr& row : rows)
        if (row->sourceURL)
            paths.append(row->path());
    return paths;
}

} // namespace halvane
