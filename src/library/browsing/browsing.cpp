// SPDX-License-Identifier: MIT
#include "library/browsing/browsing.h"

#include "library/browsing/cover_store.h"
#include "library/user/language_setting.h"
#include "library/user/playlists.h"
#include "library/user/track_user_data.h"

#include <algorithm>

namespace halvane {

Browsing::Browsing(const LibraryStore& store, const CatalogPublisher& catalog,
                   const Playlists& playlists, const TrackUserData& userData,
                   const LanguageSetting& language, const RowState& rows, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_playlists(playlists)
    , m_userData(userData)
    , m_language(language)
    , m_covers(*rows.covers)
    , m_tracks(rows)
    , m_albums(m_covers)
    , m_artists(m_covers, language) {
    connect(&catalog, &CatalogPublisher::catalogChanged, this, &Browsing::catalogChanged);
    followPlaylists();
    followUserData();
    catalogChanged();
}

void Browsing::followPlaylists() {
    connect(&m_playlists, &Playlists::trackPathsChanged, this, [this](const QUuid& id) {
        if (id == m_selectedPlaylistID)
            sourceChanged();
    });
    connect(&m_playlists, &Playlists::nameChanged, this, [this](const QUuid& id) {
        if (id == m_selectedPlaylistID)
            Q_EMIT selectedPlaylistNameChanged();
    });
    connect(this, &Browsing::selectedPlaylistIDChanged, this,
            &Browsing::selectedPlaylistNameChanged);
    connect(&m_playlists, &Playlists::deleted, this, [this](const QUuid& id) {
        if (id == m_selectedPlaylistID)
            setSelectedPlaylistID({});
    });
}

void Browsing::followUserData() {
    connect(&m_userData, &TrackUserData::lovedChanged, this, &Browsing::lovedChanged);
    connect(&m_userData, &TrackUserData::reset, this, &Browsing::lovedReset);
    connect(&m_userData, &TrackUserData::ratingChanged, this,
            [this](const QString& path) { refreshRow(path, {TrackRole::rating}); });
}

template<typename T>
bool Browsing::assign(T& field, const T& value, void (Browsing::*changed)()) {
    assertOwnThread(*this);
    if (field == value)
        return false;
    field = value;
    Q_EMIT(this->*changed)();
    return true;
}

// Albums

const Album* Browsing::focusedAlbum() const {
    return m_mode == LibraryMode::albums && !m_selectedAlbumID.isEmpty()
               ? catalog()->albumWithID(m_selectedAlbumID)
               : nullptr;
}

const Album* Browsing::selectedAlbum() const {
    const Catalog& now = *catalog();
    if (!m_selectedAlbumID.isEmpty()) {
        if (const Album* album = now.albumWithID(m_selectedAlbumID))
            return album;
    }
    return now.albums.empty() ? nullptr : &now.albums.front();
}

const Album* Browsing::artworkAlbum(const std::optional<QueueItem>& current) const {
    return current ? albumOfEntry(*catalog(), current->album, current->artist,
                                  m_language.resolvedLanguage())
                   : selectedAlbum();
}

Album Browsing::shown(const Album* album) const {
    if (!album)
        return {};
    m_covers.keyFor(album->coverImageData, album->coverURL);
    return *album;
}

QString Browsing::selectedPlaylistName() const {
    const Playlist* playlist = m_playlists.find(m_selectedPlaylistID);
    return playlist ? playlist->name : QString();
}

void Browsing::selectAlbum(const QueueItem& entry) {
    if (const Album* album =
            albumOfEntry(*catalog(), entry.album, entry.artist, m_language.resolvedLanguage()))
        setSelectedAlbumID(album->id);
}

// Navigation

void Browsing::setSearchText(const QString& text) {
    if (!assign(m_searchText, text, &Browsing::searchTextChanged))
        return;
    const QByteArray query = foldedForSearch(m_searchText.trimmed());
    if (query == m_query)
        return;
    m_query = query;
    refreshTracks();
    refreshAlbums();
    refreshArtists();
    Q_EMIT turnedTo();
}

void Browsing::setFocusedArtist(const QString& name) {
    if (assign(m_focusedArtist, name, &Browsing::focusedArtistChanged))
        sourceChanged();
}

void Browsing::setSelectedAlbumID(const QString& id) {
    if (!assign(m_selectedAlbumID, id, &Browsing::selectedAlbumIDChanged))
        return;
    Q_EMIT selectedAlbumChanged();
    Q_EMIT focusedAlbumChanged();
    sourceChanged();
}

void Browsing::setSelectedPlaylistID(const QUuid& id) {
    if (!assign(m_selectedPlaylistID, id, &Browsing::selectedPlaylistIDChanged))
        return;
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::enter(LibraryMode mode, SidebarItem sidebar, bool lovedOnly) {
    assign(m_selectedPlaylistID, QUuid(), &Browsing::selectedPlaylistIDChanged);
    m_showLovedOnly = lovedOnly;
    assign(m_sidebar, sidebar, &Browsing::selectedSidebarChanged);
    if (assign(m_mode, mode, &Browsing::modeChanged))
        Q_EMIT focusedAlbumChanged();
}

void Browsing::selectBrowseMode(LibraryMode mode) {
    const SidebarItem sidebar = mode == LibraryMode::albums    ? SidebarItem::albums
                                : mode == LibraryMode::artists ? SidebarItem::artists
                                                               : SidebarItem::tracks;
    enter(mode, sidebar, false);
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::selectSidebarItem(SidebarItem item) {
    switch (item) {
    case SidebarItem::library:
        return goHome();
    case SidebarItem::albums:
        enter(LibraryMode::albums, item, false);
        break;
    case SidebarItem::artists:
        enter(LibraryMode::artists, item, false);
        break;
    case SidebarItem::tracks:
    case SidebarItem::loved:
        enter(LibraryMode::songs, item, item == SidebarItem::loved);
        break;
    }
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::goHome() {
    enter(LibraryMode::albums, SidebarItem::library, false);
    setSelectedAlbumID({});
    assign(m_focusedArtist, QString(), &Browsing::focusedArtistChanged);
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::jumpToArtist(const QString& name) {
    Q_EMIT jumping();
    enter(LibraryMode::artists, SidebarItem::artists, false);
    assign(m_focusedArtist, name, &Browsing::focusedArtistChanged);
    sourceChanged();
    Q_EMIT jumped();
}

void Browsing::jumpToAlbum(const QueueItem& entry) {
    if (entry.id.isNull())
        return;
    Q_EMIT jumping();
    enter(LibraryMode::albums, SidebarItem::albums, false);
    selectAlbum(entry);
    sourceChanged();
    Q_EMIT jumped();
}

// What the rows show

void Browsing::refreshRow(const QString& path, const QList<int>& roles) {
    if (const TrackPtr track = m_store.track(path))
        m_tracks.refresh(*track, roles);
}

void Browsing::lovedChanged(const QString& path) {
    if (m_showLovedOnly && m_selectedPlaylistID.isNull())
        sourceChanged();
    refreshRow(path, {TrackRole::isLoved});
}

void Browsing::lovedReset() {
    if (m_showLovedOnly)
        sourceChanged();
    m_tracks.refreshAll({TrackRole::isLoved, TrackRole::rating});
}

void Browsing::availabilityChanged(const QString& path) {
    refreshRow(path, {TrackRole::availability});
}

void Browsing::availabilityReset() {
    m_tracks.refreshAll({TrackRole::availability});
}

void Browsing::currentChanged(const QString& path) {
    refreshRow(std::exchange(m_currentPath, path), {TrackListModel::IsPlayingRole});
    refreshRow(path, {TrackListModel::IsPlayingRole});
}

// The lists

void Browsing::catalogChanged() {
    if (!m_selectedAlbumID.isEmpty() && !catalog()->albumWithID(m_selectedAlbumID))
        setSelectedAlbumID({});
    sourceChanged();
    refreshAlbums();
    refreshArtists();
    Q_EMIT selectedAlbumChanged();
    Q_EMIT focusedAlbumChanged();
}

void Browsing::sourceChanged() {
    m_source = sourceRows();
    m_found.reset();
    refreshTracks();
}

Browsing::SourceRows Browsing::sourceRows() const {
    if (!m_selectedPlaylistID.isNull()) {
        const Playlist* playlist = m_playlists.find(m_selectedPlaylistID);
        return playlist ? rowsOfPaths(playlist->trackPaths) : std::vector<quint32>();
    }
    if (m_showLovedOnly) {
        const QSet<QString>& loved = m_userData.lovedPaths();
        auto rows = rowsOfPaths(std::vector<QString>(loved.cbegin(), loved.cend()));
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    if (const Album* album = focusedAlbum())
        return rowsOfAlbum(album->id);
    if (m_mode == LibraryMode::artists && !m_focusedArtist.isEmpty())
        return rowsOfArtist(m_focusedArtist);
    return std::nullopt;
}

std::vector<quint32> Browsing::rowsOfPaths(const std::vector<QString>& paths) const {
    std::vector<quint32> rows;
    if (m_catalog.isCurrent()) {
        for (const QString& path : paths) {
            if (const auto row = m_store.rowOf(path))
                rows.push_back(static_cast<quint32>(*row));
        }
        return rows;
    }
    // The store has changed since the catalog was derived, so its row numbers are others.
    QHash<QString, quint32> rowOf;
    const TrackRows& all = *catalog()->rows;
    const QSet<QString> wanted(paths.cbegin(), paths.cend());
    for (std::size_t row = 0; row < all.size(); ++row) {
        const QString path = all[row]->path();
        if (wanted.contains(path))
            rowOf.insert(path, static_cast<quint32>(row));
    }
    for (const QString& path : paths) {
        const auto row = rowOf.constFind(path);
        if (row != rowOf.cend())
            rows.push_back(*row);
    }
    return rows;
}

std::vector<quint32> Browsing::rowsOfAlbum(const QString& id) const {
    const Catalog& now = *catalog();
    std::vector<bool> isWanted(now.albums.size());
    for (std::size_t album = 0; album < now.albums.size(); ++album)
        isWanted[album] = now.albums[album].id == id;
    std::vector<quint32> rows;
    for (std::size_t row = 0; row < now.albumOfRow.size(); ++row) {
        if (isWanted[now.albumOfRow[row]])
            rows.push_back(static_cast<quint32>(row));
    }
    return rows;
}

std::vector<quint32> Browsing::rowsOfArtist(const QString& name) const {
    std::vector<quint32> rows;
    const Catalog& now = *catalog();
    const CatalogArtist* artist = now.artistNamed(name);
    if (!artist)
        return rows;
    const std::vector<quint32>& numbers = now.columns.artist.ofRow;
    for (std::size_t row = 0; row < numbers.size(); ++row) {
        if (numbers[row] == artist->number)
            rows.push_back(static_cast<quint32>(row));
    }
    return rows;
}

void Browsing::refreshTracks() {
    const Catalog& now = *catalog();
    const std::vector<quint32>* shown = m_source ? &*m_source : nullptr;
    if (!m_query.isEmpty()) {
        const bool grew = m_found && m_query.contains(m_foundQuery);
        m_found = rowsMatching(now, m_query, grew ? &*m_found : shown);
        m_foundQuery = m_query;
        shown = &*m_found;
    } else {
        m_found.reset();
    }
    std::vector<const Track*> items;
    if (shown) {
        items.reserve(shown->size());
        for (const quint32 row : *shown)
            items.push_back((*now.rows)[row].get());
    } else {
        items.reserve(now.rows->size());
        for (const TrackPtr& row : *now.rows)
            items.push_back(row.get());
    }
    m_tracks.setItems(catalog(), std::move(items));
}

void Browsing::refreshAlbums() {
    const Catalog& now = *catalog();
    const auto matches =
        m_query.isEmpty() ? std::vector<quint8>() : now.albumTiles.matches(m_query);
    std::vector<const Album*> items;
    items.reserve(now.albums.size());
    for (std::size_t i = 0; i < now.albums.size(); ++i) {
        if (matches.empty() || matches[i] != 0)
            items.push_back(&now.albums[i]);
    }
    m_albums.setItems(catalog(), std::move(items));
}

void Browsing::refreshArtists() {
    const Catalog& now = *catalog();
    const auto matches =
        m_query.isEmpty() ? std::vector<quint8>() : now.artistTexts.matches(m_query);
    std::vector<const CatalogArtist*> items;
    items.reserve(now.artists.size());
    for (const CatalogArtist& artist : now.artists) {
        if (matches.empty() || matches[artist.number] != 0)
            items.push_back(&artist);
    }
    m_artists.setItems(catalog(), std::move(items));
}

} // namespace halvane
