// SPDX-License-Identifier: MIT
#include "library/catalog/catalog.h"

#include "library/catalog/collation.h"

#include <QSet>

#include <algorithm>
#include <numeric>

namespace halvane {

namespace {

FoldedTexts foldedColumn(const InternedColumn& column) {
    FoldedTexts folded;
    for (const QString& text : column.texts)
        folded.add(text);
    return folded;
}

std::vector<CatalogArtist> artistsOf(const Catalog& catalog) {
    const InternedColumn& column = catalog.columns.artist;
    std::vector<CatalogArtist> artists(column.texts.size());
    for (std::size_t i = 0; i < artists.size(); ++i) {
        artists[i].name = column.texts[i];
        artists[i].number = static_cast<quint32>(i);
    }
    QSet<quint64> albumsOfArtists;
    for (std::size_t row = 0; row < catalog.rows->size(); ++row) {
        const quint32 number = column.ofRow[row];
        const Track& track = *(*catalog.rows)[row];
        CatalogArtist& artist = artists[number];
        ++artist.trackCount;
        albumsOfArtists.insert(static_cast<quint64>(number) << 32 | catalog.albumOfRow[row]);
        if (!artist.coverImageData)
            artist.coverImageData = track.coverImageData;
        if (!artist.coverURL)
            artist.coverURL = track.coverURL;
    }
    for (const quint64 pair : albumsOfArtists)
        ++artists[pair >> 32].albumCount;
    std::vector<quint32> order(artists.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](quint32 a, quint32 b) {
        return codePointLess(artists[a].name, artists[b].name);
    });
    std::vector<CatalogArtist> sorted;
    sorted.reserve(order.size());
    for (const quint32 number : order)
        sorted.push_back(std::move(artists[number]));
    return sorted;
}

} // namespace

const Album* Catalog::albumWithID(const QString& id) const {
    const auto found = std::find_if(albums.cbegin(), albums.cend(),
                                    [&](const Album& album) { return album.id == id; });
    return found == albums.cend() ? nullptr : &*found;
}

const CatalogArtist* Catalog::artistNamed(const QString& name) const {
    const auto found = std::lower_bound(
        artists.cbegin(), artists.cend(), name,
        [](const CatalogArtist& a, const QString& b) { return codePointLess(a.name, b); });
    return found == artists.cend() || found->name != name ? nullptr : &*found;
}

std::shared_ptr<const Catalog> buildCatalog(std::shared_ptr<const TrackRows> rows,
                                            ResolvedLanguage language,
                                            const QSet<QString>& lovedPaths) {
    auto catalog = std::make_shared<Catalog>();
    catalog->rows = std::move(rows);
    catalog->columns = columnsOf(*catalog->rows);
    DerivedAlbums derived = deriveAlbums(*catalog->rows, catalog->columns, language);
    catalog->albums = std::move(derived.albums);
    catalog->albumOfRow = std::move(derived.albumOfRow);
    catalog->artists = artistsOf(*catalog);

    catalog->titles.reserve(catalog->rows->size(), catalog->rows->size() * 24);
    for (const TrackPtr& row : *catalog->rows) {
        catalog->titles.add(row->title);
        catalog->totalBytes += std::max<qint64>(row->fileSize, 0);
        if (!lovedPaths.isEmpty() && lovedPaths.contains(row->path()))
            ++catalog->lovedCount;
    }
    catalog->artistTexts = foldedColumn(catalog->columns.artist);
    catalog->albumTexts = foldedColumn(catalog->columns.album);
    catalog->genreTexts = foldedColumn(catalog->columns.genre);
    catalog->formatTexts = foldedColumn(catalog->columns.format);
    for (const Album& album : catalog->albums) {
        // A zero byte would be folded away. A line feed can't be typed into a search.
        catalog->albumTiles.add(QString(album.title + u'\n' + album.artist + u'\n' + album.genre));
    }
    return catalog;
}

std::vector<quint32> rowsMatching(const Catalog& catalog, const QByteArray& foldedQuery,
                                  const std::vector<quint32>* within) {
    const TrackColumns& columns = catalog.columns;
    const auto artists = catalog.artistTexts.matches(foldedQuery);
    const auto albums = catalog.albumTexts.matches(foldedQuery);
    const auto genres = catalog.genreTexts.matches(foldedQuery);
    const auto formats = catalog.formatTexts.matches(foldedQuery);
    const auto matchesColumns = [&](quint32 row) {
        return (artists[columns.artist.ofRow[row]] | albums[columns.album.ofRow[row]] |
                genres[columns.genre.ofRow[row]] | formats[columns.format.ofRow[row]]) != 0;
    };
    std::vector<quint32> found;
    // One run over all titles is several times cheaper than a search of each.
    constexpr std::size_t runAdvantage = 4;
    if (within && within->size() < catalog.titles.size() / runAdvantage) {
        for (const quint32 row : *within) {
            if (matchesColumns(row) || catalog.titles.contains(row, foldedQuery))
                found.push_back(row);
        }
        return found;
    }
    const auto titles = catalog.titles.matches(foldedQuery);
    if (within) {
        for (const quint32 row : *within) {
            if (titles[row] != 0 || matchesColumns(row))
                found.push_back(row);
        }
        return found;
    }
    for (quint32 row = 0; row < titles.size(); ++row) {
        if (titles[row] != 0 || matchesColumns(row))
            found.push_back(row);
    }
    return found;
}

const Album* albumOfEntry(const Catalog& catalog, const QString& albumTitle, const QString& artist,
                          ResolvedLanguage language) {
    const AlbumGroupKey key = albumGroupKey(albumTitle, artist, language);
    if (const Album* album = catalog.albumWithID(key.id))
        return album;
    const QCollator collator = caseInsensitiveCollator();
    const auto found =
        std::find_if(catalog.albums.cbegin(), catalog.albums.cend(), [&](const Album& album) {
            return collator.compare(album.title, albumTitle) == 0 &&
                   collator.compare(album.artist, artist) == 0;
        });
    return found == catalog.albums.cend() ? nullptr : &*found;
}

} // namespace halvane
