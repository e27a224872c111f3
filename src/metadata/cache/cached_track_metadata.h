// SPDX-License-Identifier: MIT
#pragma once

#include "model/queue_item.h"

#include <optional>

namespace halvane {

/// What the cache keeps of one file. Plain value, any thread.
struct CachedTrackMetadata {
    QString path;                ///< standardized; the record's identity
    double modificationDate = 0; ///< the file's, seconds since 2001-01-01 UTC; 0 when not known
    double addedDate = 0;        ///< the track's, seconds since 2001-01-01 UTC; 0 when not known
    qint64 fileSize = -1;        ///< the file's, in bytes; -1 when not known
    QString title;
    QString artist;
    QString album;
    QString genre;
    qint64 year = 0;
    QString duration;
    std::optional<double> durationSeconds;
    QString quality;
    QString sampleRate;
    QString bitDepth;
    AlbumTags albumTags;
    LevelTags levelTags;
    SaidTags saidTags;
    std::optional<FileUrl> coverURL;
    bool hasEmbeddedArtwork = false;
    quint8 readerVersion = 0; ///< 0: the record does not say
    SoundIdentity identity;

    CachedTrackMetadata() = default;
    /// The record of a loaded item. Its date is the one that the file had when it was read, so that
    /// the next start reads tags that have changed since.
    CachedTrackMetadata(const QueueItem& item, const QString& path);

    /// A new item with an id of its own. Its picture is read from the cache when it is needed.
    [[nodiscard]] QueueItem item(const QString& cacheDirectory, const FileUrl& file) const;
};

/// One record as a JSON object.
void appendJson(QByteArray& json, const CachedTrackMetadata& record);

/// The file that keeps the embedded picture of a track.
QString artworkPath(const QString& cacheDirectory, const QString& trackPath);

} // namespace halvane
