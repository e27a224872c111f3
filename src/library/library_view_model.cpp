// SPDX-License-Identifier: MIT
#include "library/library_view_model.h"

#include "library/browsing/row_ranges.h"
#include "library/browsing/table_place.h"
#include "library/catalog/library_summary.h"
#include "library/library_concerns.h"
#include "metadata/file_dates.h"
#include "platform/session/notifications.h"
#include "platform/session/sleep_inhibitor.h"
#include "presentation/l10n.h"

#include <QGuiApplication>

namespace halvane {

namespace {

bool isApplicationActive() {
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

} // namespace

LibraryViewModel::LibraryViewModel(const Environment& environment, QObject* parent)
    : QObject(parent)
    , m_environment(environment) {
    const QString artworkFolder = m_environment.cacheFolder + QStringLiteral("/NowPlaying");

    // What the user has chosen and said
    m_language =
        std::make_unique<LanguageSetting>(m_environment.preferences, m_environment.languages);
    m_userData = std::make_unique<TrackUserData>(m_environment.preferences);
    m_playlists = std::make_unique<Playlists>(m_environment.preferences);
    m_liveLists = std::make_unique<LiveLists>(m_environment.preferences);
    m_views = std::make_unique<ViewState>(m_environment.preferences);
    m_history = std::make_unique<UndoHistory>();

    // What the library holds
    m_covers = std::make_shared<CoverStore>();
    m_store = std::make_unique<LibraryStore>();
    m_catalog = std::make_unique<CatalogPublisher>(*m_store, *m_userData, *m_language);
    m_cache = std::make_unique<MetadataCache>(m_environment.dataFolder);
    m_journal = std::make_shared<ReadingJournal>(m_environment.cacheFolder);
    m_importedPaths = std::make_unique<ImportedPaths>(m_environment.preferences, *m_store);
    m_persistence = std::make_unique<CachePersistence>(*m_store, *m_cache);
    m_bookmarks = std::make_unique<Bookmarks>(m_environment.preferences);
    m_duplicates = std::make_unique<Duplicates>(*m_store);

    // What plays
    m_engine = std::make_unique<AudioPlaybackEngine>(m_environment.output, m_environment.clock,
                                                     m_environment.cloudFiles);
    m_status = std::make_unique<StatusLine>(m_environment.clock);
    m_progressClock = std::make_unique<ProgressClock>(*m_engine, m_environment.clock);
    m_queue = std::make_unique<PlayQueue>(rowState());
    m_availability = std::make_unique<Availability>(*m_store, *m_queue, m_environment.cloudFiles);
    m_downloads = std::make_unique<CloudDownloads>(*m_availability, *m_environment.cloudFiles,
                                                   m_environment.clock, *m_status, *m_language);
    m_soundCheck = std::make_unique<SoundCheck>(m_environment.preferences, *m_store,
                                                *m_availability, m_environment.cloudFiles);
    m_transport =
        std::make_unique<Transport>(*m_engine, *m_queue, *m_availability, *m_soundCheck, *m_status,
                                    *m_progressClock, *m_language, m_environment.clock);
    m_transportSettings =
        std::make_unique<TransportSettings>(m_environment.preferences, *m_transport);
    m_queueMemory = std::make_unique<QueueMemory>(m_environment.preferences, *m_queue, *m_transport,
                                                  m_environment.clock, m_environment.dataFolder);
    m_sleepTimer =
        std::make_unique<SleepTimer>(*m_transport, m_environment.clock, *m_status, *m_language);

    // How it sounds, and where
    m_equalizer = std::make_unique<EqualizerSettings>(m_environment.preferences, *m_language);
    m_output = std::make_unique<OutputDevices>(
        m_environment.devices, m_environment.preferences, *m_language,
        [this](std::optional<std::uint32_t> id) { return m_engine->setOutputDevice(id); });
    m_outputDevices = std::make_unique<OutputDeviceListModel>(*m_output);
    m_signalPath = std::make_unique<SignalPath>(*m_queue, *m_transport, *m_engine, *m_output);

    // How the library comes, changes and goes
    const ReadingNeeds needs{*m_cache, m_journal, m_environment.cloudFiles};
    m_healing = std::make_unique<MetadataHealing>(*m_store, *m_catalog, *m_queue, *m_persistence,
                                                  *m_language, needs);
    m_renewal = std::make_unique<RecordRenewal>(*m_store, *m_catalog, *m_queue, *m_persistence,
                                                *m_language, needs);
    m_soundMemory = std::make_unique<SoundMemory>(
        SoundMemoryNeeds{m_environment.preferences, *m_store, *m_userData, *m_playlists,
                         *m_soundCheck, *m_availability});
    m_importing = std::make_unique<Importer>(*m_store, *m_catalog, *m_queue, *m_importedPaths,
                                             *m_playlists, m_environment.fileChooser,
                                             m_environment.clock, *m_status, *m_language, needs);
    m_restoration = std::make_unique<Restoration>(*m_store, *m_catalog, *m_queue, *m_importedPaths,
                                                  *m_persistence, *m_language, *m_queueMemory,
                                                  needs, m_environment.firstPicture);
    m_tidying =
        std::make_unique<Tidying>(*m_store, *m_catalog, *m_queue, *m_transport, *m_playlists,
                                  *m_availability, *m_duplicates, m_environment.preferences);
    m_movedTracks = std::make_unique<MovedTracks>(
        MovedTracksNeeds{*m_store, *m_catalog, *m_queue, *m_transport, *m_playlists, *m_tidying,
                         *m_availability, *m_soundMemory},
        *m_status, *m_language);
    m_followedFolders = std::make_unique<FollowedFolders>(
        FollowedFoldersNeeds{m_environment.preferences, *m_store, *m_availability, *m_importing,
                             *m_tidying, *m_language, needs});
    m_removals = std::make_unique<RemovalHistory>(
        RemovalNeeds{*m_store, *m_catalog, *m_importedPaths, *m_queue, *m_transport, *m_playlists,
                     *m_liveLists, *m_userData, *m_tidying},
        *m_history, *m_status, *m_language);
    m_coverFiles =
        std::make_unique<CoverFiles>(*m_store, *m_catalog, *m_queue, *m_persistence, m_covers);

    // What is shown
    m_tableOrder = std::make_unique<TableOrder>(m_environment.preferences);
    m_tableColumns = std::make_unique<TableColumns>(m_environment.preferences);
    m_browsing = std::make_unique<Browsing>(*m_store, *m_catalog, *m_playlists, *m_liveLists,
                                            *m_userData, *m_language, *m_tableOrder, rowState());
    m_sidebar = std::make_unique<SidebarModel>(*m_catalog);
    m_tidyingLists = std::make_unique<TidyingLists>(*m_store, *m_availability, *m_duplicates);
    m_collections = std::make_unique<CollectionPlayer>(
        *m_store, *m_catalog, *m_playlists, *m_availability, *m_browsing, *m_queue, *m_transport);
    m_queueEditing =
        std::make_unique<QueueEditing>(*m_store, *m_collections, *m_playlists, *m_queue,
                                       *m_transport, *m_history, *m_status, *m_language);
    m_playlistExport = std::make_unique<PlaylistExport>(
        *m_playlists, *m_store, m_environment.fileChooser, *m_status, *m_language);
    m_saidTransfer = std::make_unique<SaidTransfer>(
        SaidTransferNeeds{*m_store, *m_userData, *m_soundMemory, *m_playlists,
                          m_environment.fileChooser, *m_status, *m_language});
    m_player = std::make_unique<PlayerDisplay>(*m_queue, *m_transport, *m_progressClock, *m_views,
                                               *m_userData, *m_browsing, *m_language);
    m_ambient = std::make_unique<AmbientColor>();
    m_appearance = std::make_unique<ThemeSettings>(m_environment.preferences, *m_ambient);
    m_nowPlaying =
        std::make_unique<NowPlaying>(m_environment.mediaControls, m_environment.notifications,
                                     *m_transport, *m_queue, isApplicationActive, artworkFolder);

    connectRows();
    connectSummary();
    connectSound();
    connectFiles();
    connectTransport();
    connectNowPlaying();
}

LibraryViewModel::~LibraryViewModel() {
    m_journal->close();
}

void LibraryViewModel::start() {
    m_language->restore();
    m_transportSettings->restore();
    m_views->restoreNowPlayingPanel();
    m_appearance->restoreSpectrum();
    m_equalizer->restore();
    m_userData->restore();
    m_playlists->restore();
    m_liveLists->restore();
    m_appearance->restoreTheme();
    m_views->restoreRemainingTime();
    m_views->restoreTileSize();
    m_views->restoreArtistOrder();
    m_output->restore();
    m_soundCheck->restore();
    m_soundMemory->restore();
    m_tableOrder->restore();
    m_catalog->setSorting(m_tableOrder->sortingOf(TablePlace::tracks));
    m_tableColumns->restore();
    m_queueMemory->restore();
    m_followedFolders->restore();
    m_bookmarks->restoreBookmarkAccess();
    m_restoration->restoreImportedAudio();
    observeApplication();
    m_nowPlaying->setupRemoteCommands();
    m_environment.notifications.requestAuthorization();
    m_engine->setVolume(m_transport->volume());
}

RowState LibraryViewModel::rowState() {
    RowState state;
    state.isLoved = [this](const QString& path) { return m_userData->isLoved(path); };
    state.rating = [this](const QString& path) {
        return static_cast<int>(m_userData->rating(path));
    };
    state.plays = [this](const QString& path) { return m_userData->playCount(path); };
    state.availability = [this](const QString& path) { return m_availability->state(path); };
    state.isCurrent = [this](const QString& path) { return m_transport->isTrackPlaying(path); };
    state.covers = m_covers.get();
    return state;
}

SpectrumModel* LibraryViewModel::spectrum() const {
    return &m_engine->spectrum();
}

int LibraryViewModel::trackCount() const {
    return static_cast<int>(m_catalog->published()->rows->size());
}

QString LibraryViewModel::librarySummary() const {
    const Catalog& now = *m_catalog->published();
    return halvane::librarySummary(now.rows->size(), now.albums.size(),
                                   now.totalBytes - m_availability->missingBytes(),
                                   m_language->resolvedLanguage());
}

// What follows from what

void LibraryViewModel::libraryGrew() {
    m_availability->refreshAvailability();
    m_duplicates->refresh();
    m_soundMemory->survey();
    m_soundCheck->scanLoudnessIfNeeded();
}

void LibraryViewModel::showEntry(const QueueItem& entry) {
    m_browsing->selectPlayedAlbum(entry);
    m_ambient->updateAmbientColor(entry.coverImageData, entry.coverURL,
                                  albumColors(entry.album, entry.leadArtist()).front());
}

void LibraryViewModel::selectedAlbumChanged() {
    // While a file is loaded, the colour is that of the current entry.
    if (m_transport->hasLoadedFile())
        return;
    if (const Album* album = m_browsing->selectedAlbum())
        m_ambient->updateAmbientColor(album->coverImageData, album->coverURL,
                                      album->colors.front());
}

void LibraryViewModel::connectRows() {
    connect(m_userData.get(), &TrackUserData::lovedChanged, m_queue.get(),
            [this](const QString& path) { m_queue->refresh(path, {TrackRole::isLoved}); });
    connect(m_userData.get(), &TrackUserData::reset, m_queue.get(),
            [this] { m_queue->refreshAll({TrackRole::isLoved}); });
    connect(m_queue.get(), &PlayQueue::currentChanged, this,
            [this] { m_browsing->currentChanged(m_queue->currentPath()); });
    connect(m_availability.get(), &Availability::statesChanged, this,
            &LibraryViewModel::availabilityChanged);
    connect(m_browsing.get(), &Browsing::selectedAlbumIDChanged, this,
            &LibraryViewModel::selectedAlbumChanged);
    connect(m_browsing.get(), &Browsing::tablePlaceChanged, m_tableColumns.get(),
            [this] { m_tableColumns->setPlace(m_browsing->tablePlace()); });
    connect(m_views.get(), &ViewState::artistOrderChanged, m_browsing.get(),
            [this] { m_browsing->setArtistOrder(m_views->artistOrder()); });
    const auto forget = [this](const QString& place) {
        m_tableOrder->forget(place);
        m_tableColumns->forget(place);
    };
    const auto remember = [this](const QString& place) {
        m_tableOrder->remember(place);
        m_tableColumns->remember(place);
    };
    connect(m_playlists.get(), &Playlists::deleted, this,
            [forget](const QUuid& id) { forget(TablePlace::playlist(id)); });
    connect(m_playlists.get(), &Playlists::cameBack, this,
            [remember](const QUuid& id) { remember(TablePlace::playlist(id)); });
    connect(m_liveLists.get(), &LiveLists::removed, this,
            [forget](const QUuid& id) { forget(TablePlace::liveList(id)); });
    connect(m_liveLists.get(), &LiveLists::cameBack, this,
            [remember](const QUuid& id) { remember(TablePlace::liveList(id)); });
    // The full-screen player would hide the place that a jump shows.
    connect(m_browsing.get(), &Browsing::jumping, this,
            [this] { m_views->setShowFullPlayer(false); });
    connect(m_history.get(), &UndoHistory::changed, m_status.get(), &StatusLine::withdrawUndo);
}

void LibraryViewModel::availabilityChanged(const QSet<QString>& paths) {
    // Finding very many rows would take longer than drawing all visible ones again.
    if (static_cast<std::size_t>(paths.size()) > mostNarrowRanges) {
        m_browsing->availabilityReset();
        m_queue->refreshAll({TrackRole::availability});
        return;
    }
    for (const QString& path : paths) {
        m_browsing->availabilityChanged(path);
        m_queue->refresh(path, {TrackRole::availability});
    }
}

void LibraryViewModel::coversChanged(const QSet<QString>& keys) {
    const auto entry = m_queue->currentItem();
    if (!entry || !m_transport->hasLoadedFile()) {
        selectedAlbumChanged();
        return;
    }
    if (!keys.contains(coverKey(entry->coverImageData, entry->coverURL)))
        return;
    m_nowPlaying->artworkChanged();
    m_ambient->updateAmbientColor(entry->coverImageData, entry->coverURL,
                                  albumColors(entry->album, entry->artist).front());
}

void LibraryViewModel::connectSummary() {
    connect(m_catalog.get(), &CatalogPublisher::catalogChanged, this,
            &LibraryViewModel::trackCountChanged);
    connect(m_catalog.get(), &CatalogPublisher::catalogChanged, this,
            &LibraryViewModel::librarySummaryChanged);
    connect(m_availability.get(), &Availability::unavailablePathsChanged, this,
            &LibraryViewModel::librarySummaryChanged);
    connect(m_language.get(), &LanguageSetting::languageChanged, this,
            &LibraryViewModel::librarySummaryChanged);
}

void LibraryViewModel::connectSound() {
    m_soundCheck->setAlbumTracks(
        [this](const TrackPtr& track) { return m_catalog->albumAround(track); });
    connect(m_equalizer.get(), &EqualizerSettings::applied, m_engine.get(),
            &AudioPlaybackEngine::setEQ);
    connect(m_output.get(), &OutputDevices::switchFailed, this, [this] {
        m_status->show(L10n::text(L10nKey::deviceSwitchFailed, m_language->resolvedLanguage()),
                       true);
        m_transport->adoptEngineState();
    });
}

void LibraryViewModel::connectFiles() {
    // A file that has come back may be one that could not be read.
    connect(m_availability.get(), &Availability::refreshed, m_healing.get(),
            &MetadataHealing::healIncompleteMetadata);
    // It comes at the start, after an import, and when the user comes back to the program, perhaps
    // from a file manager.
    connect(m_availability.get(), &Availability::refreshed, m_coverFiles.get(),
            &CoverFiles::refresh);
    // A copy may stand in for what is missing now.
    connect(m_availability.get(), &Availability::refreshed, m_soundMemory.get(),
            &SoundMemory::mendPlaylists);
    connect(m_availability.get(), &Availability::refreshed, m_movedTracks.get(),
            &MovedTracks::settle);
    connect(m_soundMemory.get(), &SoundMemory::surveyed, m_movedTracks.get(), &MovedTracks::settle);
    connect(m_movedTracks.get(), &MovedTracks::moved, this, [this] {
        m_persistence->persistMetadataCache();
        libraryGrew();
    });
    connect(m_renewal.get(), &RecordRenewal::finished, m_soundMemory.get(), &SoundMemory::survey);
    // Its cover may have come while the window stayed in front.
    connect(m_browsing.get(), &Browsing::albumChosen, m_coverFiles.get(),
            &CoverFiles::refreshAlbum);
    connect(m_coverFiles.get(), &CoverFiles::changed, this, &LibraryViewModel::coversChanged);
    connect(m_importing.get(), &Importer::rootsGiven, m_bookmarks.get(),
            &Bookmarks::persistBookmarks);
    // A removal under way would take those of its tracks that are added again.
    connect(m_importing.get(), &Importer::adding, m_tidying.get(), &Tidying::finishRemoval);
    connect(m_transport.get(), &Transport::chosen, m_importing.get(), &Importer::giveWay);
    connect(m_importing.get(), &Importer::playAsked, m_transport.get(),
            [this](const QUuid& entry) { m_transport->playOn(entry); });
    connect(m_importing.get(), &Importer::playlistAsked, m_collections.get(),
            &CollectionPlayer::playPlaylist);
    connect(m_importing.get(), &Importer::imported, this, [this] {
        m_persistence->persistMetadataCache();
        libraryGrew();
        m_renewal->renewOldRecords();
    });
    // The engine knows how long the current file really is. Its record may be replaced by one that
    // was read while it plays.
    const auto correctLength = [this] {
        m_healing->correctLength(m_queue->currentPath(), m_transport->durationSeconds());
    };
    connect(m_transport.get(), &Transport::loadedFileChanged, this, correctLength);
    connect(m_queue.get(), &PlayQueue::currentRecordChanged, this, correctLength);
    connect(m_restoration.get(), &Restoration::finished, this, [this] {
        m_catalog->whenCurrent(this, [this] {
            libraryGrew();
            m_renewal->renewOldRecords();
            m_followedFolders->begin();
        });
    });
    connect(m_followedFolders.get(), &FollowedFolders::filesWentOrCame, m_availability.get(),
            &Availability::refreshAvailability);
    connect(m_followedFolders.get(), &FollowedFolders::readAgain, m_healing.get(),
            &MetadataHealing::applyHealedMetadata);
    connect(m_removals.get(), &RemovalHistory::cameBack, this, [this] {
        m_persistence->persistMetadataCache();
        libraryGrew();
    });
    connect(m_tidying.get(), &Tidying::removing, m_soundMemory.get(), &SoundMemory::leaving);
    connect(m_tidying.get(), &Tidying::removed, m_soundMemory.get(), &SoundMemory::left);
    connect(m_tidying.get(), &Tidying::removed, m_userData.get(), &TrackUserData::forget);
    connect(m_tidying.get(), &Tidying::removed, m_soundCheck.get(), &SoundCheck::forget);
}

void LibraryViewModel::connectTransport() {
    connect(m_transport.get(), &Transport::isPlayingChanged, this,
            [this] { m_environment.sleepInhibitor.setInhibited(m_transport->isPlaying()); });
    connect(m_transport.get(), &Transport::playStarted, m_userData.get(),
            [this](const QString& path) {
                m_userData->countPlay(path, static_cast<qint64>(m_environment.clock.wallTime() -
                                                                referenceDateOffset));
            });
    connect(m_transport.get(), &Transport::trackChanged, m_soundCheck.get(),
            [this](const QueueItem& entry) {
                m_soundCheck->setPlayed(
                    {entry.path(), m_transport->successorPath().value_or(QString())});
            });
    connect(m_transport.get(), &Transport::becameCurrent, this, &LibraryViewModel::showEntry);
}

void LibraryViewModel::connectNowPlaying() {
    NowPlaying* nowPlaying = m_nowPlaying.get();
    connect(m_transport.get(), &Transport::nowPlayingChanged, nowPlaying,
            &NowPlaying::updateNowPlayingInfo);
    connect(m_transport.get(), &Transport::trackChanged, nowPlaying,
            &NowPlaying::notifyTrackChange);
    connect(m_transport.get(), &Transport::positionJumped, nowPlaying, &NowPlaying::positionJumped);
    connect(m_transport.get(), &Transport::repeatModeChanged, nowPlaying, &NowPlaying::updateModes);
    connect(m_transport.get(), &Transport::isShuffleEnabledChanged, nowPlaying,
            &NowPlaying::updateModes);
    connect(m_transport.get(), &Transport::volumeChanged, nowPlaying, &NowPlaying::updateModes);
    connect(m_queue.get(), &PlayQueue::entriesChanged, nowPlaying, &NowPlaying::updateModes);
    connect(m_queue.get(), &PlayQueue::currentRecordChanged, nowPlaying,
            &NowPlaying::updateNowPlayingInfo);
    connect(nowPlaying, &NowPlaying::fileAsked, m_importing.get(), [this](const QString& path) {
        m_importing->importDroppedURLs({QUrl::fromLocalFile(path)});
    });
}

void LibraryViewModel::observeApplication() {
    auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (application) {
        connect(application, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    if (state != Qt::ApplicationActive)
                        return;
                    m_nowPlaying->applicationActivated();
                    m_availability->refreshAvailability();
                    m_followedFolders->lookAround();
                    m_language->systemLanguagesChanged();
                });
    }
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] {
        m_views->setQuitting();
        m_queueMemory->save();
    });
}

} // namespace halvane
