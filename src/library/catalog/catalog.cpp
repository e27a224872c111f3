// SPDX-License-Identifier: MIT
#include "library/catalog/catalog.h"

#include "library/catalog/collation.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace halvane {

namespace {

FoldedTexts foldedColumn(const InternedColumn& column) {
    FoldedTexts folded;
    for (const QString& text : column.texts)
        folded.add(text);
    return folded;
}

// Pairs of an artist's number and an album's place.
using Appearances = QSet<quint64>;

quint64 appearance(quint32 artist, quint32 album) {
    return static_cast<quint64>(artist) << 32 | album;
}

void count(CatalogArtist& artist, const Track& track) {
    ++artist.trackCount;
    if (!artist.coverImageData)
        artist.coverImageData = track.coverImageData;
    if (!artist.coverURL)
        artist.coverURL = track.coverURL;
}

class ArtistList {
  public:
    explicit ArtistList(const InternedColumn& column)
        : m_artists(column.texts.size())
        , m_sortNames(column.texts) {
        for (std::size_t i = 0; i < m_artists.size(); ++i) {
            m_artists[i].name = column.texts[i];
            m_artists[i].number = static_cast<quint32>(i);
        }
    }

    [[nodiscard]] bool holds(quint32 number) const { return m_artists[number].trackCount > 0; }
    void add(quint32 number, const Track& track, quint32 album, const QString& sortName) {
        count(m_artists[number], track);
        if (!sortName.isEmpty())
            m_sortNames[number] = sortName;
        m_albums.insert(appearance(number, album));
    }
    std::vector<CatalogArtist> sorted() {
        for (const quint64 pair : m_albums)
            ++m_artists[pair >> 32].albumCount;
        std::vector<quint32> order;
        for (const CatalogArtist& artist : m_artists)
            if (artist.trackCount > 0)
                order.push_back(artist.number);
        std::stable_sort(order.begin(), order.end(), [&](quint32 a, quint32 b) {
            return codePointLess(m_sortNames[a], m_sortNames[b]);
        });
        std::vector<CatalogArtist> sorted;
        sorted.reserve(order.size());
        for (const quint32 number : order) {
            sorted.push_back(std::move(m_artists[number]));
            sorted.back().sortName = m_sortNames[number];
        }
        return sorted;
    }

  private:
    std::vector<CatalogArtist> m_artists; // by number
    std::vector<QString> m_sortNames;     // by number
    Appearances m_albums;
};

// Fills in the artists and guests, and gives the albums that guests are heard on.
Appearances deriveArtists(Catalog& catalog) {
    const TrackColumns& columns = catalog.columns;
    ArtistList leaders(columns.artist);
    std::vector<quint32> guestRows;
    for (quint32 row = 0; row < catalog.rows->size(); ++row) {
        const Track& track = *(*catalog.rows)[row];
        const quint32 lead = columns.leadOfRow[row];
        leaders.add(lead, track, catalog.albumOfRow[row], sortNameOfLead(track));
        if (lead != columns.artist.ofRow[row])
            guestRows.push_back(row);
    }
    Appearances appearances;
    if (!guestRows.empty()) {
        ArtistList guests(columns.artist);
        for (const quint32 row : guestRows) {
            const Track& track = *(*catalog.rows)[row];
            const quint32 number = columns.artist.ofRow[row];
            appearances.insert(appearance(number, catalog.albumOfRow[row]));
            const SortNames* names = track.albumTags.sortNames.get();
            if (!leaders.holds(number))
                guests.add(number, track, catalog.albumOfRow[row],
                           names ? names->artist : QString());
        }
        catalog.guests = guests.sorted();
        for (CatalogArtist& guest : catalog.guests)
            guest.isGuest = true;
    }
    catalog.artists = leaders.sorted();
    return appearances;
}

FoldedTexts foldedTiles(const Catalog& catalog, const Appearances& guests) {
    std::vector<std::vector<quint32>> guestsOf(guests.isEmpty() ? 0 : catalog.albums.size());
    for (const quint64 pair : guests)
        guestsOf[pair & 0xffffffff].push_back(static_cast<quint32>(pair >> 32));
    FoldedTexts tiles;
    for (std::size_t i = 0; i < catalog.albums.size(); ++i) {
        // A zero byte would be folded away. A line feed can't be typed into a search.
        const Album& album = catalog.albums[i];
        QString text = album.title + u'\n' + album.artist + u'\n' + album.genre;
        if (!guestsOf.empty())
            for (const quint32 guest : guestsOf[i])
                text += u'\n' + catalog.columns.artist.texts[guest];
        tiles.add(text);
    }
    return tiles;
}

} // namespace

void followAlbums(const Catalog& catalog, std::vector<quint32>& rows) {
    QHash<quint32, std::vector<std::size_t>> placesOfAlbum;
    for (std::size_t place = 0; place < rows.size(); ++place) {
        const quint32 album = catalog.albumOfRow[rows[place]];
        if (catalog.albums[album].discCount > 0)
            placesOfAlbum[album].push_back(place);
    }
    for (const std::vector<std::size_t>& places : std::as_const(placesOfAlbum)) {
        std::vector<quint32> ordered;
        ordered.reserve(places.size());
        for (const std::size_t place : places)
            ordered.push_back(rows[place]);
        std::stable_sort(ordered.begin(), ordered.end(), [&](quint32 a, quint32 b) {
            return isBeforeOnAlbum(*(*catalog.rows)[a], *(*catalog.rows)[b]);
        });
        for (std::size_t i = 0; i < places.size(); ++i)
            rows[places[i]] = ordered[i];
    }
}

const Album* Catalog::albumWithID(const QString& id) const {
    const auto found = std::find_if(albums.cbegin(), albums.cend(),
                                    [&](const Album& album) { return album.id == id; });
    return found == albums.cend() ? nullptr : &*found;
}

const CatalogArtist* Catalog::artistNamed(const QString& name) const {
    for (const auto* list : {&artists, &guests}) {
        const auto found =
            std::find_if(list->cbegin(), list->cend(),
                         [&](const CatalogArtist& artist) { return artist.name == name; });
        if (found != list->cend())
            return &*found;
    }
    return nullptr;
}

std::vector<quint32> Catalog::rowsOfAlbum(const QString& id) const {
    std::vector<bool> isWanted(albums.size());
    for (std::size_t album = 0; album < albums.size(); ++album)
        isWanted[album] = albums[album].id == id;
    std::vector<quint32> found;
    for (quint32 row = 0; row < albumOfRow.size(); ++row)
        if (isWanted[albumOfRow[row]])
            found.push_back(row);
    followAlbums(*this, found);
    return found;
}

TrackRows Catalog::tracksAt(const std::vector<quint32>& of) const {
    TrackRows tracks;
    tracks.reserve(of.size());
    for (const quint32 row : of)
        tracks.push_back((*rows)[row]);
    return tracks;
}

std::vector<quint32> Catalog::rowsOfArtist(const QString& name) const {
    const CatalogArtist* artist = artistNamed(name);
    if (!artist)
        return {};
    std::vector<quint32> found;
    std::vector<quint32> onOthers;
    for (quint32 row = 0; row < columns.leadOfRow.size(); ++row) {
        if (columns.leadOfRow[row] == artist->number)
            found.push_back(row);
        else if (columns.artist.ofRow[row] == artist->number)
            onOthers.push_back(row);
    }
    followAlbums(*this, found);
    followAlbums(*this, onOthers);
    found.insert(found.end(), onOthers.cbegin(), onOthers.cend());
    return found;
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
    const Appearances guests = deriveArtists(*catalog);

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
    catalog->albumTiles = foldedTiles(*catalog, guests);
    return catalog;
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
