// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/cache/cached_track_metadata.h"

#include <QHash>

#include <vector>

namespace halvane {

/// The records of an index, found by path. They never change once they are read. Any thread.
class MetadataIndex {
  public:
    MetadataIndex() = default;
    /// The later of two records with one path counts.
    explicit MetadataIndex(std::vector<std::vector<CachedTrackMetadata>> portions);
    // Moving leaves the records where they are; a copy would point into the original.
    MetadataIndex(MetadataIndex&&) = default;
    MetadataIndex& operator=(MetadataIndex&&) = default;

    /// How many paths it knows.
    [[nodiscard]] qsizetype size() const { return m_byPath.size(); }
    /// The record of a standardized path, or null.
    [[nodiscard]] const CachedTrackMetadata* find(const QString& path) const {
        return m_byPath.value(path);
    }
    [[nodiscard]] const QHash<QString, const CachedTrackMetadata*>& records() const {
        return m_byPath;
    }

  private:
    std::vector<std::vector<CachedTrackMetadata>> m_portions;
    QHash<QString, const CachedTrackMetadata*> m_byPath;
};

/// Decodes an index, a JSON array of records. Empty when the file holds something else, when a
/// record lacks a required key, or when a value is of another kind. Unknown keys are ignored. Equal
/// texts mostly share their memory. A long index is decoded on several threads.
MetadataIndex decodeIndex(const QString& file);

} // namespace halvane
