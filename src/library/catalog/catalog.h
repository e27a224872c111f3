// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/album_derivation.h"
#include "library/catalog/folded_texts.h"

#include <memory>
#include <optional>

namespace halvane {

/// One artist of the library, with the exact name that the tracks carry.
struct CatalogArtist {
    QString name;
    quint32 number = 0; ///< in the artist column
    qint64 albumCount = 0;
    qint64 trackCount = 0;
    std::optional<Artwork> coverImageData; ///< of the first track that has one
    std::optional<FileUrl> coverURL;       ///< of the first track that has one
};

/// A snapshot of everything that is derived from the tracks: albums, artists and search texts. It
/// never changes once it is built. Any thread.
struct Catalog {
    std::shared_ptr<const TrackRows> rows;
    TrackColumns columns;
    std::vector<Album> albums;          ///< by artist, then title
    std::vector<quint32> albumOfRow;    ///< for each row
    std::vector<CatalogArtist> artists; ///< by name, in code point order
    qint64 totalBytes = 0;              ///< of all files whose size is known
    std::size_t lovedCount = 0;         ///< of the rows, when this was built

    FoldedTexts titles;      ///< for each row
    FoldedTexts artistTexts; ///< for each text of the artist column, and so on
    FoldedTexts albumTexts;
    FoldedTexts genreTexts;
    FoldedTexts formatTexts;
    FoldedTexts albumTiles; ///< for each album its title, artist and genre

    /// The first album of an id, or null.
    [[nodiscard]] const Album* albumWithID(const QString& id) const;
    /// The artist of an exact name, or null.
    [[nodiscard]] const CatalogArtist* artistNamed(const QString& name) const;
};

std::shared_ptr<const Catalog> buildCatalog(std::shared_ptr<const TrackRows> rows,
                                            ResolvedLanguage language,
                                            const QSet<QString>& lovedPaths = {});

/// The rows whose title, artist, album, genre or format contains the folded query, ascending. The
/// query is not empty. `within` limits the search to some rows, ascending; null means all.
std::vector<quint32> rowsMatching(const Catalog& catalog, const QByteArray& foldedQuery,
                                  const std::vector<quint32>* within);

/// The album that a playing entry belongs to, or null. It has the id of the entry's grouping key;
/// failing that, its title and artist are the entry's without regard to letter case.
const Album* albumOfEntry(const Catalog& catalog, const QString& albumTitle, const QString& artist,
                          ResolvedLanguage language);

} // namespace halvane
