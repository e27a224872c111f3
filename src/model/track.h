// SPDX-License-Identifier: MIT
#pragma once

#include "model/album_tags.h"
#include "model/artwork.h"
#include "model/file_size.h"
#include "model/file_url.h"
#include "model/fresh_id.h"
#include "model/hash.h"
#include "model/level_tags.h"
#include "model/reader_version.h"
#include "model/said_tags.h"
#include "model/sound_identity.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace halvane {

/// One audio file of the library. The loved flag, rating and play count that the user changes are
/// kept by path elsewhere. The three fields here are those that the track was made with. Plain
/// value, any thread.
struct Track {
    QUuid id = freshId();
    QString title;
    QString artist;
    QString album;
    QString genre;
    qint64 year = 0;      ///< 0 = unknown
    QString duration;     ///< display text
    QString format;       ///< quality label
    QString sampleRate;   ///< display text
    QString bitDepth;     ///< display text
    qint64 fileSize = -1; ///< bytes; -1 = not known
    qint64 rating = 0;
    qint64 plays = 0;
    bool loved = false;
    quint8 readerVersion = currentReaderVersion; ///< of what was read from the file
    SoundIdentity identity;
    AlbumTags albumTags;
    LevelTags levelTags;
    SaidTags saidTags;
    std::optional<FileUrl> sourceURL;
    std::optional<Artwork> coverImageData;
    std::optional<FileUrl> coverURL;
    std::optional<double> durationSeconds;
    /// The file's date when this was read from it, in seconds since 2001-01-01 UTC; 0 = not known.
    double readDate = 0;
    /// When it came into the library, in seconds since 2001-01-01 UTC; 0 = not known.
    double addedDate = 0;

    /// The standardized path of the file, empty without one.
    [[nodiscard]] QString path() const {
        return sourceURL ? sourceURL->standardizedPath() : QString();
    }

    /// Who leads the album: the album artist where there is one, else the track's artist.
    [[nodiscard]] const QString& leadArtist() const {
        return albumTags.albumArtist.isEmpty() ? artist : albumTags.albumArtist;
    }

    /// Display text of the file's size, empty while it is not known.
    [[nodiscard]] QString size() const {
        return fileSize < 0 ? QString() : byteCountText(fileSize);
    }

    bool operator==(const Track&) const = default;
};

inline size_t qHash(const Track& v, size_t seed = 0) {
    return Hasher(seed)
        .add(v.id)
        .add(v.title)
        .add(v.artist)
        .add(v.album)
        .add(v.genre)
        .add(v.year)
        .add(v.duration)
        .add(v.format)
        .add(v.sampleRate)
        .add(v.bitDepth)
        .add(v.rating)
        .add(v.plays)
        .add(v.loved)
        .add(v.albumTags)
        .add(v.levelTags)
        .add(v.sourceURL)
        .add(v.coverImageData)
        .add(v.coverURL)
        .add(v.durationSeconds)
        .add(v.readDate)
        .add(v.addedDate)
        .result();
}

} // namespace halvane
