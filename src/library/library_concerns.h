// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/playback_engine.h"
#include "library/browsing/browsing.h"
#include "library/browsing/cover_store.h"
#include "library/browsing/sidebar_model.h"
#include "library/browsing/view_state.h"
#include "library/catalog/library_catalog.h"
#include "library/desktop/now_playing.h"
#include "library/desktop/remote_player_adapter.h"
#include "library/environment.h"
#include "library/import/bookmarks.h"
#include "library/import/cache_persistence.h"
#include "library/import/imported_paths.h"
#include "library/import/importer.h"
#include "library/import/metadata_healing.h"
#include "library/import/restoration.h"
#include "library/playback/collection_player.h"
#include "library/playback/engine_adapter.h"
#include "library/playback/play_queue.h"
#include "library/playback/progress_clock.h"
#include "library/playback/transport.h"
#include "library/playback/transport_settings.h"
#include "library/sound/equalizer_settings.h"
#include "library/sound/output_device_list_model.h"
#include "library/sound/output_devices.h"
#include "library/sound/sound_check.h"
#include "library/status_line.h"
#include "library/tidying/availability.h"
#include "library/tidying/cloud_downloads.h"
#include "library/tidying/duplicates.h"
#include "library/tidying/maintenance.h"
#include "library/tidying/maintenance_lists.h"
#include "library/user/ambient_color.h"
#include "library/user/language_setting.h"
#include "library/user/playlists.h"
#include "library/user/theme_settings.h"
#include "library/user/track_user_data.h"
#include "metadata/parallel/reading_journal.h"

namespace halvane {

/// The library's concerns, each in a class of its own, in the order in which they are made, and
/// what connects them. Main thread.
class LibraryConcerns : public QObject {
    Q_OBJECT

  public:
    /// Makes everything, with nothing restored and nothing playing.
    explicit LibraryConcerns(const Environment& environment);
    /// Waits for a save of the index, and for nothing else.
    ~LibraryConcerns() override;

    /// Restores what is remembered and begins to listen to the outside. Once.
    void start();

    Environment outside;

    // What the user has chosen and said.
    LanguageSetting language;
    TrackUserData userData;
    Playlists playlists;
    ViewState views;

    // What the library holds.
    CoverStore covers;
    LibraryStore store;
    LibraryCatalog catalog;
    MetadataCache cache;
    std::shared_ptr<ReadingJournal> journal; ///< of files that crash or hang their readers
    ImportedPaths importedPaths;
    CachePersistence persistence;
    Bookmarks bookmarks;
    Duplicates duplicates;

    // What plays.
    AudioPlaybackEngine engine;
    EngineAdapter transportEngine;
    StatusLine status;
    ProgressClock progress;
    PlayQueue queue;
    CloudDownloads downloads;
    Availability availability;
    Transport transport;
    TransportSettings transportSettings;
    EqualizerSettings equalizer;
    SoundCheck soundCheck;
    OutputDevices output;
    OutputDeviceListModel outputDeviceList;

    // How the library comes, changes and goes.
    MetadataHealing healing;
    Importer importer;
    Restoration restoration;
    Maintenance maintenance;

    // What is shown.
    Browsing browsing;
    SidebarModel sidebar;
    MaintenanceLists maintenanceLists;
    CollectionPlayer collections;
    AmbientColor ambient;
    ThemeSettings theme;
    RemotePlayerAdapter remote;
    NowPlaying nowPlaying;

    ResolvedLanguage resolvedLanguage() const { return language.resolvedLanguage(); }

  private:
    RowState rowState();
    TransportCollaborators transportCollaborators();
    SoundCheck::Collaborators soundCheckCollaborators();
    ImportCollaborators importCollaborators();
    RestorationCollaborators restorationCollaborators();
    MaintenanceCollaborators maintenanceCollaborators();
    std::size_t sidebarCount(SidebarItem item) const;
    void showEntry(const QueueItem& entry);
    void selectedAlbumChanged();
    OutputDevices::Collaborators outputCollaborators();
    void libraryGrew();
    void availabilityChanged(const QSet<QString>& paths);

    void connectRows();
    void connectNowPlaying();
    void connectLanguage();
    void installEngineCallbacks();
    void observeApplication();
};

} // namespace halvane
