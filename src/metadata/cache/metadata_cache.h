// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/cache/metadata_index.h"
#include "metadata/track_metadata_loader.h"

#include <functional>
#include <memory>

namespace halvane {

/// Keeps on disk what was read of the library's files: "library-cache.json" and, in "Artwork", a
/// file for each embedded picture. Holds nothing in memory between calls. All operations block on
/// the disk and may run on any thread but the main one. One save at a time. No failure is reported,
/// because the files can be read again: an unreadable index is an empty cache, and a failed write
/// leaves the old file.
class MetadataCache {
  public:
    /// `directory` is made when something is first saved.
    explicit MetadataCache(const QString& directory)
        : m_directory(directory) {}

    [[nodiscard]] const QString& cacheDirectory() const { return m_directory; }
    void ensureDirectoriesExist() const;
    /// Where a track's embedded picture is kept: a name made of the SHA-256 of its path.
    [[nodiscard]] FileUrl artworkFileURL(const QString& forPath) const;
    /// Seconds since 2001-01-01 UTC, 0 when it can't be read.
    static double modificationDate(const QString& atPath);

    /// Records by path.
    [[nodiscard]] MetadataIndex loadIndex() const;

    /// Replaces the index by one of exactly these items. Items without a file are left out. The
    /// last of several items with one path counts. A picture that is already kept is not written
    /// again.
    void save(const std::vector<QueueItem>& items) const;
    /// The same for items that are made one by one and are never all in memory.
    void save(std::size_t count, const std::function<QueueItem(std::size_t)>& itemAt) const;

    /// The items of files, in the order of the input. An item comes from the index where the date
    /// of the file is that of its record, and from the file otherwise. A missing file yields its
    /// record, or nothing where it has none. Opens no file and reads no picture of a known,
    /// unchanged track.
    [[nodiscard]] std::vector<QueueItem>
    queueItems(const std::vector<FileUrl>& urls, const TrackMetadataLoader::Fallbacks& fallbacks,
               const TrackMetadataLoader::Accompaniment& with = {}) const;
    /// The same with an index that is loaded already.
    [[nodiscard]] std::vector<LoadedItem>
    loadItems(const std::vector<FileUrl>& urls, const TrackMetadataLoader::Fallbacks& fallbacks,
              const MetadataIndex& index,
              const TrackMetadataLoader::Accompaniment& with = {}) const;
    /// The same, handed over in portions while later files are looked at.
    void streamItems(const std::vector<FileUrl>& urls,
                     const TrackMetadataLoader::Fallbacks& fallbacks,
                     std::shared_ptr<const MetadataIndex> index,
                     TrackMetadataLoader::Accompaniment with,
                     const TrackMetadataLoader::TakeItems& take) const;

  private:
    QString m_directory;
};

} // namespace halvane
