// SPDX-License-Identifier: MIT
#pragma once

#include "model/album_tags.h"
#include "model/artwork.h"
#include "model/file_url.h"
#include "model/fresh_id.h"
#include "model/hash.h"
#include "model/level_tags.h"
#include "model/reader_version.h"
#include "model/said_tags.h"
#include "model/sound_identity.h"

#include <QMetaType>
#include <QUuid>

#include <optional>

namespace halvane {

/// One entry of the play queue, and what reading one file yields. Two entries for one file differ
/// by their ids. Plain value, any thread.
struct QueueItem {
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString artist MEMBER artist)
    Q_PROPERTY(QString album MEMBER album)
    Q_PROPERTY(QString duration MEMBER duration)
    Q_PROPERTY(QString quality MEMBER quality)
    Q_PROPERTY(bool isPlaying MEMBER isPlaying)
    Q_PROPERTY(QString path READ path)

  public:
    QUuid id = freshId();
    QString title;
    QString artist;
    QString album;
    QString duration; ///< display text
    QString quality;  ///< format label, a track's `format`
    QString genre;
    qint64 year = 0;    ///< 0 = unknown
    QString sampleRate; ///< display text
    QString bitDepth;   ///< display text
    AlbumTags albumTags;
    LevelTags levelTags;
    SaidTags saidTags;
    std::optional<Artwork> coverImageData;
    std::optional<FileUrl> coverURL;
    std::optional<double> durationSeconds;
    std::optional<FileUrl> sourceURL;
    /// The file's date when this was read from it, in seconds since 2001-01-01 UTC; 0 = not known.
    double readDate = 0;
    double addedDate = 0;   ///< of its track, in the same way; 0 = not known
    qint64 fileSize = -1;   ///< the file's, in bytes, when this was read from it; -1 = not known
    bool isPlaying = false; ///< set on the entry that is current
    quint8 readerVersion = currentReaderVersion; ///< of what was read from the file
    SoundIdentity identity;

    /// The standardized path of the file, empty without one.
    [[nodiscard]] QString path() const {
        return sourceURL ? sourceURL->standardizedPath() : QString();
    }

    /// Who leads the album: the album artist where there is one, else the track's artist.
    [[nodiscard]] const QString& leadArtist() const {
        return albumTags.albumArtist.isEmpty() ? artist : albumTags.albumArtist;
    }

    bool operator==(const QueueItem&) const = default;
};

inline size_t qHash(const QueueItem& v, size_t seed = 0) {
    return Hasher(seed)
        .add(v.id)
        .add(v.title)
        .add(v.artist)
        .add(v.album)
        .add(v.duration)
        .add(v.quality)
        .add(v.genre)
        .add(v.year)
        .add(v.sampleRate)
        .add(v.bitDepth)
        .add(v.albumTags)
        .add(v.levelTags)
        .add(v.coverImageData)
        .add(v.coverURL)
        .add(v.durationSeconds)
        .add(v.sourceURL)
        .add(v.readDate)
        .add(v.addedDate)
        .add(v.isPlaying)
        .result();
}

} // namespace halvane
