// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/cache/metadata_cache.h"

#include <memory>
#include <stop_token>

namespace halvane {

class CloudFiles;
class ReadingJournal;

/// What a worker takes along to read files. Copies share the parts, because a read that hangs in a
/// disk outlives the concern that began it.
struct ReadingNeeds {
    MetadataCache cache;
    std::shared_ptr<ReadingJournal> journal;
    std::shared_ptr<const CloudFiles> cloudFiles;

    /// For one run of reading, which ends early when `stop` asks for it.
    [[nodiscard]] TrackMetadataLoader::Accompaniment accompaniment(std::stop_token stop) const;
};

} // namespace halvane
