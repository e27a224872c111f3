// SPDX-License-Identifier: MIT
#include "library/browsing/browsing.h"

#include "library/browsing/artist_order.h"
#include "library/browsing/cover_store.h"
#include "library/browsing/live_list_rows.h"
#include "library/browsing/table_place.h"
#include "library/user/language_setting.h"
#include "library/user/live_lists.h"
#include "library/user/playlists.h"
#include "library/user/track_user_data.h"
#include "model/raw_value.h"
#include "presentation/l10n.h"

#include <QDateTime>

#include <algorithm>
#include <iterator>

namespace halvane {

namespace {

// Some rows as they follow each other among all.
std::vector<quint32> inOrder(const std::vector<quint32>& some, const std::vector<quint32>& all) {
    std::vector<bool> isOne(all.size());
    for (const quint32 row : some)
        isOne[row] = true;
    std::vector<quint32> ordered;
    ordered.reserve(some.size());
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(ordered),
                 [&](quint32 row) { return isOne[row]; });
    return ordered;
}

} // namespace

Browsing::Browsing(const LibraryStore& store, CatalogPublisher& catalog, const Playlists& playlists,
                   const LiveLists& liveLists, const TrackUserData& userData,
                   const LanguageSetting& language, TableOrder& order, const RowState& rows,
                   QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_lookup(store, catalog)
    , m_catalog(catalog)
    , m_playlists(playlists)
    , m_liveLists(liveLists)
    , m_liveListTracks(liveLists, store, catalog, userData)
    , m_userData(userData)
    , m_language(language)
    , m_order(order)
    , m_covers(*rows.covers)
    , m_tracks(rows)
    , m_albums(m_covers)
    , m_artists(m_covers, language) {
    connect(&catalog, &CatalogPublisher::catalogChanged, this, &Browsing::catalogChanged);
    connect(&catalog, &CatalogPublisher::sortedRowsChanged, this, &Browsing::sortedRowsChanged);
    connect(&order, &TableOrder::chosen, this, &Browsing::orderChosen);
    followPlaylists();
    followLiveLists();
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

void Browsing::followLiveLists() {
    connect(&m_liveLists, &LiveLists::changed, this, [this](const QUuid& id) {
        if (id != m_liveListID)
            return;
        Q_EMIT selectedLiveListChanged();
        sourceChanged();
        Q_EMIT turnedTo();
    });
    connect(&m_liveLists, &LiveLists::removed, this, [this](const QUuid& id) {
        if (id == m_liveListID)
            leaveLiveList();
    });
}

// A playlist that is shown stays.
void Browsing::leaveLiveList() {
    if (m_selectedPlaylistID.isNull())
        return selectSidebarItem(SidebarItem::tracks);
    assign(m_liveListID, QUuid(), &Browsing::selectedLiveListChanged);
    assign(m_sidebar, SidebarItem::tracks, &Browsing::selectedSidebarChanged);
}

void Browsing::followUserData() {
    connect(&m_userData, &TrackUserData::lovedChanged, this, &Browsing::lovedChanged);
    connect(&m_userData, &TrackUserData::reset, this, &Browsing::lovedReset);
    connect(&m_userData, &TrackUserData::ratingChanged, this,
            [this](const QString& path) { refreshRow(path, {TrackRole::rating}); });
    connect(&m_userData, &TrackUserData::playsChanged, this,
            [this](const QString& path) { refreshRow(path, {TrackListModel::PlaysRole}); });
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
    return m_mode == LibraryMode::albums && !m_focusedAlbumID.isEmpty()
               ? catalog()->albumWithID(m_focusedAlbumID)
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
    return current ? albumOf(*current) : selectedAlbum();
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

QString Browsing::selectedLiveListName() const {
    return m_liveListTracks.nameOf(m_liveListID);
}

const Album* Browsing::albumOf(const QueueItem& entry) const {
    return albumOfEntry(*catalog(), entry.album, entry.leadArtist(), m_language.resolvedLanguage());
}

void Browsing::selectPlayedAlbum(const QString& id) {
    if (assign(m_selectedAlbumID, id, &Browsing::selectedAlbumIDChanged))
        Q_EMIT selectedAlbumChanged();
    Q_EMIT albumChosen(id);
}

void Browsing::selectPlayedAlbum(const QueueItem& entry) {
    if (const Album* album = albumOf(entry))
        selectPlayedAlbum(album->id);
}

// Navigation

void Browsing::setSearchText(const QString& text) {
    if (!assign(m_searchText, text, &Browsing::searchTextChanged))
        return;
    if (!m_search.setText(m_searchText, QDateTime::currentDateTime()))
        return;
    m_search.lookThrough(*catalog(), m_liveListTracks.saidOfRows());
    refreshTracks();
    refreshAlbums();
    refreshArtists();
    Q_EMIT turnedTo();
}

void Browsing::setArtistOrder(ArtistOrder order) {
    assertOwnThread(*this);
    m_artistOrder = order;
    refreshArtists();
}

void Browsing::setFocusedArtist(const QString& name) {
    if (assign(m_focusedArtist, name, &Browsing::focusedArtistChanged))
        sourceChanged();
}

void Browsing::setSelectedAlbumID(const QString& id) {
    selectPlayedAlbum(id);
    if (assign(m_focusedAlbumID, id, &Browsing::focusedAlbumChanged))
        sourceChanged();
}

void Browsing::setSelectedPlaylistID(const QUuid& id) {
    if (!assign(m_selectedPlaylistID, id, &Browsing::selectedPlaylistIDChanged))
        return;
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::enter(LibraryMode mode, SidebarItem sidebar) {
    assign(m_selectedPlaylistID, QUuid(), &Browsing::selectedPlaylistIDChanged);
    if (sidebar != SidebarItem::liveList)
        assign(m_liveListID, QUuid(), &Browsing::selectedLiveListChanged);
    assign(m_sidebar, sidebar, &Browsing::selectedSidebarChanged);
    if (assign(m_mode, mode, &Browsing::modeChanged))
        Q_EMIT focusedAlbumChanged();
}

void Browsing::selectBrowseMode(LibraryMode mode) {
    const SidebarItem sidebar = mode == LibraryMode::albums    ? SidebarItem::albums
                                : mode == LibraryMode::artists ? SidebarItem::artists
                                                               : SidebarItem::tracks;
    enter(mode, sidebar);
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::selectSidebarItem(SidebarItem item) {
    switch (item) {
    case SidebarItem::library:
        return goHome();
    case SidebarItem::albums:
        enter(LibraryMode::albums, item);
        break;
    case SidebarItem::artists:
        enter(LibraryMode::artists, item);
        break;
    case SidebarItem::tracks:
    case SidebarItem::loved:
    case SidebarItem::recentlyAdded:
    case SidebarItem::recentlyPlayed:
    case SidebarItem::mostPlayed:
    case SidebarItem::topRated:
        enter(LibraryMode::songs, item);
        break;
    case SidebarItem::liveList: // it takes an id to choose one
        return;
    }
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::selectLiveList(const QUuid& id) {
    if (!m_liveLists.find(id))
        return;
    enter(LibraryMode::songs, SidebarItem::liveList);
    assign(m_liveListID, id, &Browsing::selectedLiveListChanged);
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::goHome() {
    enter(LibraryMode::albums, SidebarItem::library);
    setSelectedAlbumID({});
    assign(m_focusedArtist, QString(), &Browsing::focusedArtistChanged);
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::jumpToArtist(const QString& name) {
    Q_EMIT jumping();
    enter(LibraryMode::artists, SidebarItem::artists);
    assign(m_focusedArtist, name, &Browsing::focusedArtistChanged);
    sourceChanged();
    Q_EMIT jumped();
}

void Browsing::jumpToAlbum(const QueueItem& entry) {
    if (entry.id.isNull())
        return;
    Q_EMIT jumping();
    enter(LibraryMode::albums, SidebarItem::albums);
    if (const Album* album = albumOf(entry))
        setSelectedAlbumID(album->id);
    sourceChanged();
    Q_EMIT jumped();
}

// What the rows show

void Browsing::refreshRow(const QString& path, const QList<int>& roles) {
    if (const TrackPtr track = m_store.track(path))
        m_tracks.refresh(*track, roles);
}

void Browsing::lovedChanged(const QString& path) {
    if (showLovedOnly() && m_selectedPlaylistID.isNull())
        sourceChanged();
    refreshRow(path, {TrackRole::isLoved});
}

void Browsing::lovedReset() {
    if (showLovedOnly() || isLiveList(m_sidebar))
        sourceChanged();
    m_tracks.refreshAll({TrackRole::isLoved, TrackRole::rating, TrackListModel::PlaysRole});
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
        assign(m_selectedAlbumID, QString(), &Browsing::selectedAlbumIDChanged);
    if (!m_focusedAlbumID.isEmpty() && !catalog()->albumWithID(m_focusedAlbumID))
        m_focusedAlbumID.clear();
    m_search.lookThroughAnew(*catalog(), m_liveListTracks.saidOfRows());
    sourceChanged();
    refreshAlbums();
    refreshArtists();
    Q_EMIT selectedAlbumChanged();
    Q_EMIT focusedAlbumChanged();
}

QString Browsing::tablePlace() const {
    if (!m_selectedPlaylistID.isNull())
        return TablePlace::playlist(m_selectedPlaylistID);
    if (m_sidebar == SidebarItem::liveList)
        return TablePlace::liveList(m_liveListID);
    if (m_mode == LibraryMode::songs)
        return rawValue(m_sidebar);
    if (m_mode == LibraryMode::artists)
        return m_focusedArtist.isEmpty() ? QString() : TablePlace::artist;
    return hasFocusedAlbum() ? TablePlace::album : QString();
}

void Browsing::placeChanged() {
    m_order.setPlace(m_place);
    m_catalog.sortOutdated(); // now that nobody looks at these rows
    Q_EMIT tablePlaceChanged();
}

void Browsing::orderChosen() {
    sourceChanged();
    Q_EMIT turnedTo();
}

void Browsing::sortedRowsChanged() {
    const bool isSortedInPlace = m_source && m_source->size() <= CatalogPublisher::doneInPlace;
    if (m_order.by() != TrackOrder::library && !isSortedInPlace)
        orderChosen();
}

TrackRows Browsing::sortedTracks() const {
    const bool isOwnList = m_selectedPlaylistID.isNull() && isLiveList(m_sidebar);
    if ((m_order.by() == TrackOrder::library && !isOwnList) || !m_source)
        return {};
    return catalog()->tracksAt(*m_source);
}

LiveList Browsing::liveList() const {
    return m_sidebar == SidebarItem::liveList ? m_liveLists.list(m_liveListID)
                                              : standardLiveList(m_sidebar);
}

int Browsing::countOf(const LiveList& list) const {
    return static_cast<int>(m_liveListTracks.rowsOf(list).size());
}

QString Browsing::sortedPlace() const {
    if (!m_selectedPlaylistID.isNull())
        return selectedPlaylistName();
    if (const Album* album = focusedAlbum())
        return album->title;
    if (m_mode == LibraryMode::artists && !m_focusedArtist.isEmpty())
        return m_focusedArtist;
    if (m_sidebar == SidebarItem::liveList)
        return selectedLiveListName();
    const SidebarItem list = m_mode == LibraryMode::songs ? m_sidebar : SidebarItem::tracks;
    return L10n::text(L10n::placeName(list), m_language.resolvedLanguage());
}

void Browsing::sourceChanged() {
    if (const QString place = tablePlace(); place != std::exchange(m_place, place))
        placeChanged();
    m_source = sorted(rowsOfPlace());
    m_search.searchOthers();
    refreshTracks();
}

Browsing::SourceRows Browsing::rowsOfPlace() const {
    if (!m_selectedPlaylistID.isNull()) {
        const Playlist* playlist = m_playlists.find(m_selectedPlaylistID);
        return playlist ? m_lookup.rowsOf(playlist->trackPaths) : std::vector<quint32>();
    }
    if (isLiveList(m_sidebar))
        return m_liveListTracks.rowsOf(liveList());
    if (showLovedOnly()) {
        const QSet<QString>& loved = m_userData.lovedPaths();
        auto rows = m_lookup.rowsOf(std::vector<QString>(loved.cbegin(), loved.cend()));
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    if (const Album* album = focusedAlbum())
        return catalog()->rowsOfAlbum(album->id);
    if (m_mode == LibraryMode::artists && !m_focusedArtist.isEmpty())
        return catalog()->rowsOfArtist(m_focusedArtist);
    return std::nullopt;
}

// Many rows stay as they are until a worker has sorted the whole catalog, of which they then take
// their order.
Browsing::SourceRows Browsing::sorted(SourceRows rows) {
    if (m_order.by() == TrackOrder::library)
        return rows;
    const std::size_t count = rows ? rows->size() : catalog()->rows->size();
    if (count <= CatalogPublisher::doneInPlace)
        return m_catalog.sortedRows(m_order.sorting(),
                                    rows ? *std::move(rows) : allRows(*catalog()));
    m_catalog.setSorting(m_order.sorting());
    const std::vector<quint32>* all = m_catalog.sortedRows();
    if (!all)
        return rows;
    return rows ? inOrder(*rows, *all) : *all;
}

void Browsing::refreshTracks() {
    const Catalog& now = *catalog();
    const std::vector<quint32>* shown = m_source ? &*m_source : nullptr;
    if (!m_search.isEmpty())
        shown = &m_search.rows(now, shown);
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
    assign(m_hasVisibleTracks, m_tracks.size() > 0, &Browsing::hasVisibleTracksChanged);
}

void Browsing::refreshAlbums() {
    const Catalog& now = *catalog();
    const auto matches = m_search.albums(now);
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
    const auto matches = m_search.artists(now);
    std::vector<const CatalogArtist*> items;
    items.reserve(now.artists.size());
    for (const CatalogArtist& artist : now.artists) {
        if (matches.empty() || matches[artist.number] != 0)
            items.push_back(&artist);
    }
    for (const CatalogArtist& guest : now.guests) {
        if (matches.empty() || matches[guest.number] != 0)
            items.push_back(&guest);
    }
    if (m_artistOrder == ArtistOrder::readers)
        sortForReaders(items);
    m_artists.setItems(catalog(), std::move(items));
}

} // namespace halvane
