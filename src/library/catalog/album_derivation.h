// SPDX-License-Identifier: MIT
// How the album list follows from the track list. Pure; any thread.
#pragma once

#include "library/catalog/track_columns.h"
#include "model/album.h"
#include "model/enums.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace halvane {

/// What the tracks of one album have in common. All three fields count. Spellings that differ only
/// in letter case are different albums with one id.
struct AlbumGroupKey {
    QString id;
    QString title;  ///< trimmed, or the text for an unknown album
    QString artist; ///< trimmed, or the text for an unknown artist

    bool operator==(const AlbumGroupKey&) const = default;
};

inline size_t qHash(const AlbumGroupKey& key, size_t seed = 0) {
    return Hasher(seed).add(key.id).add(key.title).add(key.artist).result();
}

/// `artist` leads the album.
AlbumGroupKey albumGroupKey(const QString& title, const QString& artist, ResolvedLanguage language);

/// Whether a stands before b on an album whose tracks are all numbered: by disc, track and file
/// name. A track without a disc is on the first.
bool isBeforeOnAlbum(const Track& a, const Track& b);

/// By which the artist who leads a track's album is sorted; empty: by the name.
QString sortNameOfLead(const Track& track);

/// The trimmed text that occurs most often. The earliest wins a tie; none if all are blank.
std::optional<QString> mostCommonValue(const QStringList& values);

/// The first one or two distinct format labels, or "Audio".
QString albumQuality(const TrackRows& tracks);

/// Three colours for an album without a cover. They follow from the names alone, so that the album
/// always looks the same.
std::vector<Color> albumColors(const QString& title, const QString& artist);

struct DerivedAlbums {
    std::vector<Album> albums;       ///< by artist, then title, as the user's language sorts
    std::vector<quint32> albumOfRow; ///< the place in `albums` for each row
};

/// The time is linear in the number of rows and n log n in the number of albums.
DerivedAlbums deriveAlbums(const TrackRows& rows, const TrackColumns& columns,
                           ResolvedLanguage language);

} // namespace halvane
