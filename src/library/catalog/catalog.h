// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/album_derivation.h"
#include "library/catalog/folded_texts.h"

#include <memory>
#include <optional>

namespace halvane {

/// One artist of the library, with the exact name that the tracks carry. The counts and covers are
/// of the albums that the artist leads, or those of a guest that the guest is heard on.
struct CatalogArtist {
    QString name;
    QString sortName;   ///< mostly the name
    quint32 number = 0; ///< in the artist column
    qint64 albumCount = 0;
    qint64 trackCount = 0;
    bool isGuest = false;                  ///< leads no album
    std::optional<Artwork> coverImageData; ///< of the first track that has one
    std::optional<FileUrl> coverURL;       ///< of the first track that has one
};

/// A snapshot of everything that is derived from the tracks: albums, artists and search texts. It
/// never changes once it is built. Any thread.
struct Catalog {
    std::shared_ptr<const TrackRows> rows;
    TrackColumns columns;
    std::vector<Album> albums;       ///< by artist, then title
    std::vector<quint32> albumOfRow; ///< for each row
    /// Those who lead an album, in code point order of their sort names, which are mostly the
    /// names.
    std::vector<CatalogArtist> artists;
    /// Those who are only heard on albums of others, in the same order.
    std::vector<CatalogArtist> guests;
    qint64 totalBytes = 0;      ///< of all files whose size is known
    std::size_t lovedCount = 0; ///< of the rows, when this was built

    FoldedTexts titles;      ///< for each row
    FoldedTexts artistTexts; ///< for each text of the artist column, and so on
    FoldedTexts albumTexts;
    FoldedTexts genreTexts;
    FoldedTexts formatTexts;
    FoldedTexts albumTiles; ///< for each album its title, artist, genre and guests

    /// The first album of an id, or null.
    [[nodiscard]] const Album* albumWithID(const QString& id) const;
    /// The artist or guest of an exact name, or null.
    [[nodiscard]] const CatalogArtist* artistNamed(const QString& name) const;

    /// The rows of the albums of an id, in the albums' own order where they have one, otherwise
    /// ascending.
    [[nodiscard]] std::vector<quint32> rowsOfAlbum(const QString& id) const;
    /// The rows of the albums that an artist leads, and then those on albums of others, each like
    /// the rows of an album.
    [[nodiscard]] std::vector<quint32> rowsOfArtist(const QString& name) const;
    /// The tracks of these rows, in their order.
    [[nodiscard]] TrackRows tracksAt(const std::vector<quint32>& of) const;
};

std::shared_ptr<const Catalog> buildCatalog(std::shared_ptr<const TrackRows> rows,
                                            ResolvedLanguage language,
                                            const QSet<QString>& lovedPaths = {});

/// Puts the rows of each album that has an order of its own in that order. They stay in the places
/// that they have among the others.
void followAlbums(const Catalog& catalog, std::vector<quint32>& rows);

/// The album that a playing entry belongs to, or null. `artist` leads the entry's album. The album
/// has the id of the entry's grouping key; failing that, its title and artist are the entry's
/// without regard to letter case.
const Album* albumOfEntry(const Catalog& catalog, const QString& albumTitle, const QString& artist,
                          ResolvedLanguage language);

} // namespace halvane
