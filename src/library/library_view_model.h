// SPDX-License-Identifier: MIT
#pragma once

#include "library/environment.h"

#include <QObject>

#include <memory>

namespace halvane {

class AmbientColor;
class AudioPlaybackEngine;
class Availability;
class Bookmarks;
class Browsing;
class CachePersistence;
class CloudDownloads;
class CollectionPlayer;
class CoverFiles;
class CoverStore;
class Duplicates;
class EqualizerSettings;
class FollowedFolders;
class ImportedPaths;
class Importer;
class LanguageSetting;
class CatalogPublisher;
class LibraryStore;
class LiveLists;
class SaidTransfer;
class Tidying;
class TidyingLists;
class MetadataCache;
class MetadataHealing;
class RecordRenewal;
class RemovalHistory;
class NowPlaying;
class OutputDeviceListModel;
class OutputDevices;
class PlayQueue;
class QueueEditing;
class QueueMemory;
class PlayerDisplay;
class PlaylistExport;
class Playlists;
class ProgressClock;
class ReadingJournal;
class Restoration;
class SidebarModel;
class SignalPath;
class SleepTimer;
class SoundCheck;
class MovedTracks;
class SoundMemory;
class SpectrumModel;
class StatusLine;
class ThemeSettings;
class TableColumns;
class TableOrder;
class TrackUserData;
class Transport;
class TransportSettings;
class UndoHistory;
class ViewState;
struct QueueItem;
struct RowState;

/// The one controller: what every window, menu command and remote command sees and acts on. It owns
/// the concerns, builds them in the order in which they need each other, and offers each to the
/// views by name (`Library.transport.playNext(true)`). What a concern offers is in its own header.
/// Main thread only. Lives from the program's start to its end.
///
/// Paths are standardized absolute paths everywhere in it. Times are in seconds, gains in dB, and
/// fractions run from 0 to 1.
class LibraryViewModel : public QObject {
    Q_OBJECT
    Q_MOC_INCLUDE("library/library_concerns.h")

    // What plays
    Q_PROPERTY(halvane::Transport* transport READ transport CONSTANT)
    Q_PROPERTY(halvane::ProgressClock* progressClock READ progressClock CONSTANT)
    Q_PROPERTY(halvane::PlayQueue* queue READ queue CONSTANT)
    Q_PROPERTY(halvane::QueueEditing* queueEditing READ queueEditing CONSTANT)
    Q_PROPERTY(halvane::QueueMemory* queueMemory READ queueMemory CONSTANT)
    Q_PROPERTY(halvane::CollectionPlayer* collections READ collections CONSTANT)
    Q_PROPERTY(halvane::PlayerDisplay* player READ player CONSTANT)
    // How it sounds, and where
    Q_PROPERTY(halvane::EqualizerSettings* equalizer READ equalizer CONSTANT)
    Q_PROPERTY(halvane::SoundCheck* soundCheck READ soundCheck CONSTANT)
    Q_PROPERTY(halvane::SpectrumModel* spectrum READ spectrum CONSTANT)
    Q_PROPERTY(halvane::OutputDevices* output READ output CONSTANT)
    Q_PROPERTY(halvane::OutputDeviceListModel* outputDevices READ outputDevices CONSTANT)
    Q_PROPERTY(halvane::SignalPath* signalPath READ signalPath CONSTANT)
    // What the library holds, and how it comes and goes
    Q_PROPERTY(int trackCount READ trackCount NOTIFY trackCountChanged)
    Q_PROPERTY(QString librarySummary READ librarySummary NOTIFY librarySummaryChanged)
    Q_PROPERTY(halvane::Importer* importing READ importing CONSTANT)
    Q_PROPERTY(halvane::FollowedFolders* followedFolders READ followedFolders CONSTANT)
    Q_PROPERTY(halvane::Tidying* tidying READ tidying CONSTANT)
    Q_PROPERTY(halvane::TidyingLists* tidyingLists READ tidyingLists CONSTANT)
    Q_PROPERTY(halvane::CloudDownloads* downloads READ downloads CONSTANT)
    Q_PROPERTY(halvane::Duplicates* duplicates READ duplicates CONSTANT)
    Q_PROPERTY(halvane::CoverFiles* coverFiles READ coverFiles CONSTANT)
    // Where the user is, and what the windows show
    Q_PROPERTY(halvane::Browsing* browsing READ browsing CONSTANT)
    Q_PROPERTY(halvane::TableOrder* tableOrder READ tableOrder CONSTANT)
    Q_PROPERTY(halvane::TableColumns* tableColumns READ tableColumns CONSTANT)
    Q_PROPERTY(halvane::SidebarModel* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(halvane::ViewState* views READ views CONSTANT)
    Q_PROPERTY(halvane::StatusLine* status READ status CONSTANT)
    // What the user has said and chosen
    Q_PROPERTY(halvane::Playlists* playlists READ playlists CONSTANT)
    Q_PROPERTY(halvane::LiveLists* liveLists READ liveLists CONSTANT)
    Q_PROPERTY(halvane::PlaylistExport* playlistExport READ playlistExport CONSTANT)
    Q_PROPERTY(halvane::TrackUserData* userData READ userData CONSTANT)
    Q_PROPERTY(halvane::UndoHistory* history READ history CONSTANT)
    Q_PROPERTY(halvane::ThemeSettings* appearance READ appearance CONSTANT)
    Q_PROPERTY(halvane::AmbientColor* ambient READ ambient CONSTANT)
    Q_PROPERTY(halvane::LanguageSetting* language READ language CONSTANT)

  public:
    /// Makes every concern. Nothing is restored yet and nothing plays. The environment's parts must
    /// outlive it.
    explicit LibraryViewModel(const Environment& environment, QObject* parent = nullptr);
    /// Waits for a save of the index, and for nothing else.
    ~LibraryViewModel() override;

    /// Restores what was stored and begins to follow the environment. Nothing plays. To be called
    /// once.
    void start();

    [[nodiscard]] Transport* transport() const { return m_transport.get(); }
    [[nodiscard]] ProgressClock* progressClock() const { return m_progressClock.get(); }
    [[nodiscard]] PlayQueue* queue() const { return m_queue.get(); }
    [[nodiscard]] QueueEditing* queueEditing() const { return m_queueEditing.get(); }
    [[nodiscard]] QueueMemory* queueMemory() const { return m_queueMemory.get(); }
    [[nodiscard]] SleepTimer* sleepTimer() const { return m_sleepTimer.get(); }
    [[nodiscard]] CollectionPlayer* collections() const { return m_collections.get(); }
    [[nodiscard]] PlayerDisplay* player() const { return m_player.get(); }
    [[nodiscard]] EqualizerSettings* equalizer() const { return m_equalizer.get(); }
    [[nodiscard]] SoundCheck* soundCheck() const { return m_soundCheck.get(); }
    [[nodiscard]] SpectrumModel* spectrum() const;
    [[nodiscard]] OutputDevices* output() const { return m_output.get(); }
    [[nodiscard]] OutputDeviceListModel* outputDevices() const { return m_outputDevices.get(); }
    [[nodiscard]] SignalPath* signalPath() const { return m_signalPath.get(); }
    [[nodiscard]] int trackCount() const;
    /// How many tracks and albums there are, and how large their files are, in one line.
    [[nodiscard]] QString librarySummary() const;
    [[nodiscard]] Importer* importing() const { return m_importing.get(); }
    [[nodiscard]] FollowedFolders* followedFolders() const { return m_followedFolders.get(); }
    [[nodiscard]] Tidying* tidying() const { return m_tidying.get(); }
    [[nodiscard]] TidyingLists* tidyingLists() const { return m_tidyingLists.get(); }
    [[nodiscard]] CloudDownloads* downloads() const { return m_downloads.get(); }
    [[nodiscard]] Duplicates* duplicates() const { return m_duplicates.get(); }
    [[nodiscard]] CoverFiles* coverFiles() const { return m_coverFiles.get(); }
    [[nodiscard]] Browsing* browsing() const { return m_browsing.get(); }
    [[nodiscard]] TableOrder* tableOrder() const { return m_tableOrder.get(); }
    [[nodiscard]] TableColumns* tableColumns() const { return m_tableColumns.get(); }
    [[nodiscard]] SidebarModel* sidebar() const { return m_sidebar.get(); }
    [[nodiscard]] ViewState* views() const { return m_views.get(); }
    [[nodiscard]] StatusLine* status() const { return m_status.get(); }
    [[nodiscard]] Playlists* playlists() const { return m_playlists.get(); }
    [[nodiscard]] LiveLists* liveLists() const { return m_liveLists.get(); }
    [[nodiscard]] PlaylistExport* playlistExport() const { return m_playlistExport.get(); }
    [[nodiscard]] SaidTransfer* saidTransfer() const { return m_saidTransfer.get(); }
    [[nodiscard]] TrackUserData* userData() const { return m_userData.get(); }
    [[nodiscard]] UndoHistory* history() const { return m_history.get(); }
    [[nodiscard]] ThemeSettings* appearance() const { return m_appearance.get(); }
    [[nodiscard]] AmbientColor* ambient() const { return m_ambient.get(); }
    [[nodiscard]] LanguageSetting* language() const { return m_language.get(); }

    // What no view shows.
    [[nodiscard]] LibraryStore* store() const { return m_store.get(); }
    [[nodiscard]] CatalogPublisher* catalog() const { return m_catalog.get(); }
    [[nodiscard]] MetadataCache* cache() const { return m_cache.get(); }
    [[nodiscard]] Bookmarks* bookmarks() const { return m_bookmarks.get(); }
    [[nodiscard]] ImportedPaths* importedPaths() const { return m_importedPaths.get(); }
    [[nodiscard]] CachePersistence* persistence() const { return m_persistence.get(); }
    [[nodiscard]] Restoration* restoration() const { return m_restoration.get(); }
    [[nodiscard]] Availability* availability() const { return m_availability.get(); }
    [[nodiscard]] MetadataHealing* healing() const { return m_healing.get(); }
    [[nodiscard]] RecordRenewal* renewal() const { return m_renewal.get(); }
    [[nodiscard]] MovedTracks* movedTracks() const { return m_movedTracks.get(); }
    [[nodiscard]] SoundMemory* soundMemory() const { return m_soundMemory.get(); }
    [[nodiscard]] AudioPlaybackEngine* engine() const { return m_engine.get(); }
    /// The views' covers, by the keys that lists and albums carry. Any thread.
    [[nodiscard]] std::shared_ptr<CoverStore> covers() const { return m_covers; }

  Q_SIGNALS:
    void trackCountChanged();
    void librarySummaryChanged();

  private:
    RowState rowState();
    void libraryGrew();
    void showEntry(const QueueItem& entry);
    void selectedAlbumChanged();
    void availabilityChanged(const QSet<QString>& paths);
    void coversChanged(const QSet<QString>& keys);

    void connectRows();
    void connectSummary();
    void connectSound();
    void connectFiles();
    void connectTransport();
    void connectNowPlaying();
    void observeApplication();

    Environment m_environment;

    // Each concern is made after those that it needs and is destroyed before them.
    std::unique_ptr<LanguageSetting> m_language;
    std::unique_ptr<TrackUserData> m_userData;
    std::unique_ptr<Playlists> m_playlists;
    std::unique_ptr<LiveLists> m_liveLists;
    std::unique_ptr<ViewState> m_views;
    std::unique_ptr<UndoHistory> m_history;

    std::shared_ptr<CoverStore> m_covers; ///< shared with readers, which may hang in a disk
    std::unique_ptr<LibraryStore> m_store;
    std::unique_ptr<CatalogPublisher> m_catalog;
    std::unique_ptr<MetadataCache> m_cache;
    std::shared_ptr<ReadingJournal> m_journal; ///< of files that crash or hang their readers
    std::unique_ptr<ImportedPaths> m_importedPaths;
    std::unique_ptr<CachePersistence> m_persistence;
    std::unique_ptr<Bookmarks> m_bookmarks;
    std::unique_ptr<Duplicates> m_duplicates;

    std::unique_ptr<AudioPlaybackEngine> m_engine;
    std::unique_ptr<StatusLine> m_status;
    std::unique_ptr<ProgressClock> m_progressClock;
    std::unique_ptr<PlayQueue> m_queue;
    std::unique_ptr<Availability> m_availability;
    std::unique_ptr<CloudDownloads> m_downloads;
    std::unique_ptr<SoundCheck> m_soundCheck;
    std::unique_ptr<Transport> m_transport;
    std::unique_ptr<TransportSettings> m_transportSettings;
    std::unique_ptr<QueueMemory> m_queueMemory;
    std::unique_ptr<SleepTimer> m_sleepTimer;
    std::unique_ptr<EqualizerSettings> m_equalizer;
    std::unique_ptr<OutputDevices> m_output;
    std::unique_ptr<OutputDeviceListModel> m_outputDevices;
    std::unique_ptr<SignalPath> m_signalPath;

    std::unique_ptr<MetadataHealing> m_healing;
    std::unique_ptr<RecordRenewal> m_renewal;
    std::unique_ptr<SoundMemory> m_soundMemory;
    std::unique_ptr<Importer> m_importing;
    std::unique_ptr<Restoration> m_restoration;
    std::unique_ptr<Tidying> m_tidying;
    std::unique_ptr<MovedTracks> m_movedTracks;
    std::unique_ptr<FollowedFolders> m_followedFolders;
    std::unique_ptr<RemovalHistory> m_removals;
    std::unique_ptr<CoverFiles> m_coverFiles;

    std::unique_ptr<TableOrder> m_tableOrder;
    std::unique_ptr<TableColumns> m_tableColumns;
    std::unique_ptr<Browsing> m_browsing;
    std::unique_ptr<SidebarModel> m_sidebar;
    std::unique_ptr<TidyingLists> m_tidyingLists;
    std::unique_ptr<CollectionPlayer> m_collections;
    std::unique_ptr<QueueEditing> m_queueEditing;
    std::unique_ptr<PlaylistExport> m_playlistExport;
    std::unique_ptr<SaidTransfer> m_saidTransfer;
    std::unique_ptr<PlayerDisplay> m_player;
    std::unique_ptr<AmbientColor> m_ambient;
    std::unique_ptr<ThemeSettings> m_appearance;
    std::unique_ptr<NowPlaying> m_nowPlaying;
};

} // namespace halvane
