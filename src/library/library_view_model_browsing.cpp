// SPDX-License-Identifier: MIT
// Browsing, searching and playlists, as the views see them.
#include "library/catalog/library_texts.h"
#include "library/library_concerns.h"
#include "library/library_view_model.h"

namespace halvane {

void LibraryViewModel::forwardBrowsing() {
    using Self = LibraryViewModel;
    const Browsing* browsing = &m_concerns->browsing;
    connect(browsing, &Browsing::selectedSidebarChanged, this, &Self::selectedSidebarChanged);
    connect(browsing, &Browsing::modeChanged, this, &Self::modeChanged);
    connect(browsing, &Browsing::searchTextChanged, this, &Self::searchTextChanged);
    connect(browsing, &Browsing::focusedArtistChanged, this, &Self::focusedArtistChanged);
    connect(browsing, &Browsing::selectedAlbumIDChanged, this, &Self::selectedAlbumIDChanged);
    connect(browsing, &Browsing::showLovedOnlyChanged, this, &Self::showLovedOnlyChanged);
    connect(browsing, &Browsing::selectedPlaylistIDChanged, this, &Self::selectedPlaylistIDChanged);
    connect(browsing, &Browsing::selectedPlaylistIDChanged, this,
            &Self::selectedPlaylistNameChanged);
    connect(browsing, &Browsing::focusedAlbumChanged, this, &Self::focusedAlbumChanged);
    connect(browsing, &Browsing::selectedAlbumChanged, this, &Self::selectedAlbumChanged);
    connect(browsing, &Browsing::selectedAlbumChanged, this, &Self::currentArtworkAlbumChanged);
    connect(browsing, &Browsing::visibleTrackCountChanged, this, &Self::visibleTrackCountChanged);
    connect(&m_concerns->playlists, &Playlists::nameChanged, this, [this](const QUuid& id) {
        if (id == selectedPlaylistID())
            Q_EMIT selectedPlaylistNameChanged();
    });

    const LibraryCatalog* catalog = &m_concerns->catalog;
    connect(catalog, &LibraryCatalog::catalogChanged, this, &Self::trackCountChanged);
    connect(catalog, &LibraryCatalog::catalogChanged, this, &Self::librarySummaryChanged);
    connect(&m_concerns->userData, &TrackUserData::lovedChanged, this,
            &Self::isCurrentTrackLovedChanged);
    connect(&m_concerns->userData, &TrackUserData::reset, this, &Self::isCurrentTrackLovedChanged);
}

SidebarItem LibraryViewModel::selectedSidebar() const {
    return m_concerns->browsing.selectedSidebar();
}
LibraryMode LibraryViewModel::mode() const {
    return m_concerns->browsing.mode();
}
QString LibraryViewModel::searchText() const {
    return m_concerns->browsing.searchText();
}
void LibraryViewModel::setSearchText(const QString& text) {
    m_concerns->browsing.setSearchText(text);
}
QString LibraryViewModel::focusedArtist() const {
    return m_concerns->browsing.focusedArtist();
}
void LibraryViewModel::setFocusedArtist(const QString& name) {
    m_concerns->browsing.setFocusedArtist(name);
}
QString LibraryViewModel::selectedAlbumID() const {
    return m_concerns->browsing.selectedAlbumID();
}
void LibraryViewModel::setSelectedAlbumID(const QString& id) {
    m_concerns->browsing.setSelectedAlbumID(id);
}
bool LibraryViewModel::showLovedOnly() const {
    return m_concerns->browsing.showLovedOnly();
}
QUuid LibraryViewModel::selectedPlaylistID() const {
    return m_concerns->browsing.selectedPlaylistID();
}
void LibraryViewModel::setSelectedPlaylistID(const QUuid& id) {
    m_concerns->browsing.setSelectedPlaylistID(id);
}
QString LibraryViewModel::selectedPlaylistName() const {
    const Playlist* playlist = m_concerns->playlists.find(selectedPlaylistID());
    return playlist ? playlist->name : QString();
}

QAbstractListModel* LibraryViewModel::visibleTracks() {
    return &m_concerns->browsing.visibleTracks();
}
QAbstractListModel* LibraryViewModel::visibleAlbums() {
    return &m_concerns->browsing.visibleAlbums();
}
QAbstractListModel* LibraryViewModel::visibleArtists() {
    return &m_concerns->browsing.visibleArtists();
}
QAbstractListModel* LibraryViewModel::playlists() {
    return &m_concerns->playlists;
}
QAbstractListModel* LibraryViewModel::sidebarItems() {
    return &m_concerns->sidebar;
}
int LibraryViewModel::visibleTrackCount() const {
    return static_cast<int>(m_concerns->browsing.visibleTracks().size());
}
int LibraryViewModel::trackCount() const {
    return static_cast<int>(m_concerns->catalog.catalog()->rows->size());
}
QString LibraryViewModel::librarySummary() const {
    const Catalog& now = *m_concerns->catalog.catalog();
    return halvane::librarySummary(now.rows->size(), now.albums.size(), now.totalBytes,
                                   resolvedLanguage());
}

namespace {

Album valueOf(const Album* album, CoverStore& covers) {
    if (!album)
        return {};
    covers.keyFor(album->coverImageData, album->coverURL); // so that the album's key can be read
    return *album;
}

} // namespace

bool LibraryViewModel::hasFocusedAlbum() const {
    return m_concerns->browsing.focusedAlbum() != nullptr;
}
Album LibraryViewModel::focusedAlbum() const {
    return valueOf(m_concerns->browsing.focusedAlbum(), m_concerns->covers);
}
bool LibraryViewModel::hasSelectedAlbum() const {
    return m_concerns->browsing.selectedAlbum() != nullptr;
}
Album LibraryViewModel::selectedAlbum() const {
    return valueOf(m_concerns->browsing.selectedAlbum(), m_concerns->covers);
}
bool LibraryViewModel::hasCurrentArtworkAlbum() const {
    return m_concerns->browsing.artworkAlbum(m_concerns->queue.currentItem()) != nullptr;
}
Album LibraryViewModel::currentArtworkAlbum() const {
    return valueOf(m_concerns->browsing.artworkAlbum(m_concerns->queue.currentItem()),
                   m_concerns->covers);
}

void LibraryViewModel::selectBrowseMode(LibraryMode mode) {
    m_concerns->browsing.selectBrowseMode(mode);
}
void LibraryViewModel::selectSidebarItem(SidebarItem item) {
    m_concerns->browsing.selectSidebarItem(item);
}
void LibraryViewModel::goHome() {
    m_concerns->browsing.goHome();
}
void LibraryViewModel::jumpToArtist(const QString& name) {
    m_concerns->views.setShowFullPlayer(false);
    m_concerns->browsing.jumpToArtist(name);
}
void LibraryViewModel::jumpToAlbum(const QUuid& entry) {
    const auto row = m_concerns->queue.rowOfID(entry);
    if (!row)
        return;
    m_concerns->views.setShowFullPlayer(false);
    m_concerns->browsing.jumpToAlbum(m_concerns->queue.item(*row));
}
void LibraryViewModel::toggleLoved(const QString& path) {
    m_concerns->userData.toggleLoved(path);
}
void LibraryViewModel::setRating(int rating, const QString& path) {
    m_concerns->userData.setRating(rating, path);
}

QUuid LibraryViewModel::createPlaylist(const QString& name) {
    return m_concerns->playlists.createPlaylist(name).value_or(QUuid());
}
void LibraryViewModel::renamePlaylist(const QUuid& id, const QString& name) {
    m_concerns->playlists.renamePlaylist(id, name);
}
void LibraryViewModel::deletePlaylist(const QUuid& id) {
    m_concerns->playlists.deletePlaylist(id);
}
void LibraryViewModel::addTrackPaths(const QStringList& paths, const QUuid& toPlaylist) {
    m_concerns->playlists.addTrackPaths(paths, toPlaylist);
}
void LibraryViewModel::removeTrackPath(const QString& path, const QUuid& fromPlaylist) {
    m_concerns->playlists.removeTrackPath(path, fromPlaylist);
}

} // namespace halvane
