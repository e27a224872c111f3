// SPDX-License-Identifier: MIT
#pragma once

#include "model/hash.h"

#include <QString>

#include <memory>

namespace halvane {

/// The texts by which a file wants to be sorted, such as "Beatles, The". Empty: as it is written.
struct SortNames {
    QString artist;
    QString albumArtist;
    QString album;

    [[nodiscard]] bool isEmpty() const {
        return artist.isEmpty() && albumArtist.isEmpty() && album.isEmpty();
    }
    bool operator==(const SortNames&) const = default;
};

/// What the tags of a file say of its place in an album. Plain value, any thread.
struct AlbumTags {
    QString albumArtist; ///< empty: the track's artist leads the album
    /// Few files have any, and the tracks of an album share them. Null: none.
    std::shared_ptr<const SortNames> sortNames;
    quint16 disc = 0;  ///< from 1; 0 = not known
    quint16 track = 0; ///< from 1; 0 = not known

    bool operator==(const AlbumTags& other) const {
        const bool sortAlike = sortNames && other.sortNames ? *sortNames == *other.sortNames
                                                            : sortNames == other.sortNames;
        return sortAlike && disc == other.disc && track == other.track &&
               albumArtist == other.albumArtist;
    }
};

inline size_t qHash(const AlbumTags& v, size_t seed = 0) {
    Hasher hasher(seed);
    hasher.add(v.albumArtist).add(v.disc).add(v.track);
    if (v.sortNames)
        hasher.add(v.sortNames->artist).add(v.sortNames->albumArtist).add(v.sortNames->album);
    return hasher.result();
}

} // namespace halvane
