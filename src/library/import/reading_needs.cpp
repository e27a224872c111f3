// SPDX-License-Identifier: MIT
#include "library/import/reading_needs.h"

#include "platform/cloud/cloud_files.h"

namespace halvane {

TrackMetadataLoader::Accompaniment ReadingNeeds::accompaniment(std::stop_token stop) const {
    TrackMetadataLoader::Accompaniment with;
    with.journal = journal;
    with.stop = std::move(stop);
    with.isEvicted = [cloud = cloudFiles](const QString& path) {
        return cloud->blocksWhenOpened(path);
    };
    return with;
}

} // namespace halvane
