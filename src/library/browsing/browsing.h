// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/album_list_model.h"
#include "library/browsing/artist_list_model.h"
#include "library/browsing/library_search.h"
#include "library/browsing/live_list_tracks.h"
#include "library/browsing/table_order.h"
#include "library/browsing/track_list_model.h"
#include "library/catalog/catalog_publisher.h"
#include "model/queue_item.h"

namespace halvane {

class LiveLists;
class Playlists;
class TrackUserData;

/// Where the user is in the library, what is searched for, and the lists that follow from both.
/// Main thread.
class Browsing : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        halvane::SidebarItem selectedSidebar READ selectedSidebar NOTIFY selectedSidebarChanged)
    Q_PROPERTY(halvane::LibraryMode mode READ mode NOTIFY modeChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(QString focusedArtist READ focusedArtist WRITE setFocusedArtist NOTIFY
                   focusedArtistChanged) // empty: none
    Q_PROPERTY(QString selectedAlbumID READ selectedAlbumID WRITE setSelectedAlbumID NOTIFY
                   selectedAlbumIDChanged) // empty: none
    Q_PROPERTY(QUuid selectedPlaylistID READ selectedPlaylistID WRITE setSelectedPlaylistID NOTIFY
                   selectedPlaylistIDChanged) // null: none
    Q_PROPERTY(
        QString selectedPlaylistName READ selectedPlaylistName NOTIFY selectedPlaylistNameChanged)
    /// Of the live list that the user has made and is in; null: none.
    Q_PROPERTY(QUuid selectedLiveListID READ selectedLiveListID NOTIFY selectedLiveListChanged)
    Q_PROPERTY(
        QString selectedLiveListName READ selectedLiveListName NOTIFY selectedLiveListChanged)
    Q_PROPERTY(bool hasFocusedAlbum READ hasFocusedAlbum NOTIFY focusedAlbumChanged)
    Q_PROPERTY(halvane::Album focusedAlbum READ shownFocusedAlbum NOTIFY focusedAlbumChanged)
    Q_PROPERTY(QAbstractListModel* visibleTracks READ visibleTracks CONSTANT)
    Q_PROPERTY(bool hasVisibleTracks READ hasVisibleTracks NOTIFY hasVisibleTracksChanged)
    Q_PROPERTY(QAbstractListModel* visibleAlbums READ visibleAlbums CONSTANT)
    Q_PROPERTY(QAbstractListModel* visibleArtists READ visibleArtists CONSTANT)

  public:
    /// `rows` says what a row shows of a track; its covers are those of the albums and artists
    /// too. All references must outlive it.
    Browsing(const LibraryStore& store, CatalogPublisher& catalog, const Playlists& playlists,
             const LiveLists& liveLists, const TrackUserData& userData,
             const LanguageSetting& language, TableOrder& order, const RowState& rows,
             QObject* parent = nullptr);

    [[nodiscard]] SidebarItem selectedSidebar() const { return m_sidebar; }
    [[nodiscard]] LibraryMode mode() const { return m_mode; }
    [[nodiscard]] const QString& searchText() const { return m_searchText; }
    [[nodiscard]] const QString& focusedArtist() const { return m_focusedArtist; } ///< empty: none
    [[nodiscard]] const QString& selectedAlbumID() const {
        return m_selectedAlbumID;
    } ///< empty: none
    [[nodiscard]] bool showLovedOnly() const { return m_sidebar == SidebarItem::loved; }
    [[nodiscard]] const QUuid& selectedPlaylistID() const {
        return m_selectedPlaylistID;
    } ///< null: none

    /// Empty: none.
    [[nodiscard]] QString selectedPlaylistName() const;
    [[nodiscard]] const QUuid& selectedLiveListID() const { return m_liveListID; } ///< null: none
    [[nodiscard]] QString selectedLiveListName() const;

    /// How many tracks a live list has, or would have.
    Q_INVOKABLE [[nodiscard]] int countOf(const halvane::LiveList& list) const;
    [[nodiscard]] const LiveListTracks& liveListTracks() const { return m_liveListTracks; }

    TrackListModel* visibleTracks() { return &m_tracks; }
    [[nodiscard]] bool hasVisibleTracks() const { return m_hasVisibleTracks; }
    AlbumListModel* visibleAlbums() { return &m_albums; }
    ArtistListModel* visibleArtists() { return &m_artists; }

    /// All tracks of the table in the order that the user has chosen, not only those that a search
    /// finds. A list that the library keeps has such an order by itself. Empty while the table
    /// shows another order.
    [[nodiscard]] TrackRows sortedTracks() const;
    /// What the place of these tracks is called.
    [[nodiscard]] QString sortedPlace() const;
    /// The place that the table shows, see TablePlace. Empty while there is no table.
    [[nodiscard]] QString tablePlace() const;

    // These pointers are valid until the catalog changes.

    /// The album whose tracks somebody asked for, or null: the track table is limited to it.
    /// Playback goes on to other albums without changing it.
    [[nodiscard]] const Album* focusedAlbum() const;
    /// The selected album, or the first if none is selected. Null without albums.
    [[nodiscard]] const Album* selectedAlbum() const;
    /// The album whose artwork is shown for what plays: that of the current entry, or the selected
    /// album without a current entry.
    [[nodiscard]] const Album* artworkAlbum(const std::optional<QueueItem>& current) const;
    /// An album as a value, empty for null. Its cover can be read by its key.
    [[nodiscard]] Album shown(const Album* album) const;
    [[nodiscard]] bool hasFocusedAlbum() const { return focusedAlbum() != nullptr; }
    [[nodiscard]] Album shownFocusedAlbum() const { return shown(focusedAlbum()); }

    void setSearchText(const QString& text);
    void setArtistOrder(ArtistOrder order);
    void setFocusedArtist(const QString& name);
    /// Selects an album and limits the track table to it.
    void setSelectedAlbumID(const QString& id);
    void setSelectedPlaylistID(const QUuid& id);
    Q_INVOKABLE void selectBrowseMode(halvane::LibraryMode mode);
    Q_INVOKABLE void selectSidebarItem(halvane::SidebarItem item);
    /// Does nothing for an id that is not known.
    Q_INVOKABLE void selectLiveList(const QUuid& id);
    Q_INVOKABLE void goHome();
    Q_INVOKABLE void jumpToArtist(const QString& name);
    /// Does nothing for an entry that the queue does not have.
    Q_INVOKABLE void jumpToAlbum(const halvane::QueueItem& entry);
    /// Selects the album that is played. The track table stays as it is.
    void selectPlayedAlbum(const QString& id);
    /// The same for the album of a playing entry, if the library has it.
    void selectPlayedAlbum(const QueueItem& entry);

    // Something that the rows show has changed.
    void availabilityChanged(const QString& path);
    void availabilityReset();
    void currentChanged(const QString& path);

  Q_SIGNALS:
    void selectedSidebarChanged();
    void modeChanged();
    void searchTextChanged();
    void focusedArtistChanged();
    void selectedAlbumIDChanged();
    /// Somebody, or playback, has chosen this album, perhaps once more.
    void albumChosen(const QString& id);
    void selectedPlaylistIDChanged();
    void selectedPlaylistNameChanged();
    void selectedLiveListChanged();
    /// A jump is about to show another place of the library.
    void jumping();
    /// The lists show the place of a jump.
    void jumped();
    /// The lists show what another search found, or the place that was chosen.
    void turnedTo();
    void focusedAlbumChanged();
    void selectedAlbumChanged();
    void hasVisibleTracksChanged();
    /// The table shows another place, or there is no table any more.
    void tablePlaceChanged();

  private:
    /// Rows of the catalog. None means all of them.
    using SourceRows = std::optional<std::vector<quint32>>;

    [[nodiscard]] const Album* albumOf(const QueueItem& entry) const;
    void enter(LibraryMode mode, SidebarItem sidebar);
    void refreshRow(const QString& path, const QList<int>& roles);
    void followPlaylists();
    void followLiveLists();
    void leaveLiveList();
    void followUserData();
    void lovedChanged(const QString& path);
    void lovedReset();
    void catalogChanged();
    void orderChosen();
    void sortedRowsChanged();
    void placeChanged();
    void sourceChanged();
    void refreshTracks();
    void refreshAlbums();
    void refreshArtists();
    [[nodiscard]] SourceRows rowsOfPlace() const;
    [[nodiscard]] SourceRows sorted(SourceRows rows);
    [[nodiscard]] LiveList liveList() const;
    [[nodiscard]] const std::shared_ptr<const Catalog>& catalog() const {
        return m_catalog.published();
    }

    template<typename T>
    bool assign(T& field, const T& value, void (Browsing::*changed)());

    const LibraryStore& m_store;
    const RowLookup m_lookup;
    CatalogPublisher& m_catalog;
    const Playlists& m_playlists;
    const LiveLists& m_liveLists;
    const LiveListTracks m_liveListTracks;
    const TrackUserData& m_userData;
    const LanguageSetting& m_language;
    TableOrder& m_order;
    QString m_place; ///< of the table
    CoverStore& m_covers;
    SidebarItem m_sidebar = SidebarItem::library;
    LibraryMode m_mode = LibraryMode::albums;
    QString m_searchText;
    QString m_focusedArtist;
    ArtistOrder m_artistOrder = ArtistOrder::plain;
    QString m_selectedAlbumID;
    QString m_focusedAlbumID; ///< empty: none
    QUuid m_selectedPlaylistID;
    QUuid m_liveListID;

    LibrarySearch m_search;
    SourceRows m_source; ///< what is searched

    QString m_currentPath; ///< of the row that was last shown as playing
    TrackListModel m_tracks;
    bool m_hasVisibleTracks = false;
    AlbumListModel m_albums;
    ArtistListModel m_artists;
};

} // namespace halvane
