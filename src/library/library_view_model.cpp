// SPDX-License-Identifier: MIT
#include "library/library_view_model.h"

#include "library/browsing/row_ranges.h"
#include "library/catalog/library_texts.h"
#include "library/library_concerns.h"
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
    , m_outside(environment) {
    const auto language = [this] { return m_language->resolvedLanguage(); };
    const auto rebuildAlbums = [this] { m_catalog->rebuildImportedAlbums(); };
    const QString artworkFolder = m_outside.cacheFolder + QStringLiteral("/NowPlaying");

    // What the user has chosen and said
    m_language = std::make_unique<LanguageSetting>(m_outside.preferences, m_outside.languages);
    m_userData = std::make_unique<TrackUserData>(m_outside.preferences);
    m_playlists = std::make_unique<Playlists>(m_outside.preferences);
    m_views = std::make_unique<ViewState>(m_outside.preferences);

    // What the library holds
    m_covers = std::make_unique<CoverStore>();
    m_store = std::make_unique<LibraryStore>();
    m_catalog = std::make_unique<LibraryCatalog>(*m_store, *m_userData, language);
    m_cache = std::make_unique<MetadataCache>(m_outside.dataFolder);
    m_journal = std::make_shared<ReadingJournal>(m_outside.cacheFolder);
    m_importedPaths = std::make_unique<ImportedPaths>(m_outside.preferences, *m_store);
    m_persistence = std::make_unique<CachePersistence>(*m_store, *m_cache);
    m_bookmarks = std::make_unique<Bookmarks>(m_outside.preferences);
    m_duplicates = std::make_unique<Duplicates>(*m_store);

    // What plays
    m_engine = std::make_unique<AudioPlaybackEngine>(m_outside.output, m_outside.clock);
    m_status = std::make_unique<StatusLine>(m_outside.clock);
    m_progressClock = std::make_unique<ProgressClock>(*m_engine, m_outside.clock);
    m_queue = std::make_unique<PlayQueue>(rowState());
    m_downloads = std::make_unique<CloudDownloads>(CloudDownloads::Collaborators{
        .clock = m_outside.clock,
        .cloudFiles = *m_outside.cloudFiles,
        .refreshAvailability = [this] { m_availability->refreshAvailability(); },
        .arePending = [this] { return !m_availability->cloudPendingPaths().isEmpty(); },
    });
    m_availability = std::make_unique<Availability>(AvailabilityCollaborators{
        .library = *m_store,
        .queue = *m_queue,
        .cloudFiles = m_outside.cloudFiles,
        .startCloudDownloads =
            [this](const auto& paths) { m_downloads->startCloudDownloads(paths); },
        .healIncompleteMetadata = [this] { m_healing->healIncompleteMetadata(); },
    });
    m_transport = std::make_unique<Transport>(TransportCollaborators{
        .engine = *m_engine,
        .queue = *m_queue,
        .files = *m_availability,
        .status = *m_status,
        .progress = *m_progressClock,
        .clock = m_outside.clock,
        .random = systemRandomIndex(),
        .language = language,
        .soundCheckGain =
            [this](const QString& path) { return m_soundCheck->soundCheckGain(path); },
    });
    m_transportSettings = std::make_unique<TransportSettings>(m_outside.preferences, *m_transport);

    // How it sounds, and where
    m_equalizer = std::make_unique<EqualizerSettings>(
        m_outside.preferences, *m_language,
        [this](bool enabled, const std::vector<double>& gains, double preamp) {
            m_engine->setEQ(enabled, gains, preamp);
        });
    m_soundCheck = std::make_unique<SoundCheck>(
        m_outside.preferences, m_outside.cloudFiles,
        SoundCheck::Collaborators{
            .visitFiles =
                [this](const std::function<void(const FileUrl&)>& visit) {
                    for (const TrackPtr& track : m_store->rows()) {
                        if (track->sourceURL)
                            visit(*track->sourceURL);
                    }
                },
            .isAvailable =
                [this](const QString& path) {
                    return m_availability->state(path) == TrackAvailability::available;
                },
            .currentPath =
                [this] {
                    const QString path = m_queue->currentPath();
                    return path.isEmpty() ? std::nullopt : std::optional(path);
                },
            .setTrackGain = [this](double dB) { m_engine->setTrackGain(dB); },
        });
    m_output = std::make_unique<OutputDevices>(
        m_outside.devices, m_outside.preferences,
        OutputDevices::Collaborators{
            .routeEngine =
                [this](std::optional<std::uint32_t> id) { return m_engine->setOutputDevice(id); },
            .switchFailed =
                [this, language] {
                    m_status->show(L10n::text(L10nKey::deviceSwitchFailed, language()), true);
                    m_transport->adoptEngineState();
                },
            .builtInOutput = [language] { return L10n::text(L10nKey::builtInOutput, language()); },
        });
    m_outputDevices = std::make_unique<OutputDeviceListModel>(*m_output);
    m_signalPath = std::make_unique<SignalPath>(*m_queue, *m_transport, *m_engine, *m_output);

    // How the library comes, changes and goes
    m_healing = std::make_unique<MetadataHealing>(HealingCollaborators{
        .library = *m_store,
        .queue = *m_queue,
        .persistence = *m_persistence,
        .cloudFiles = m_outside.cloudFiles,
        .journal = m_journal,
        .language = language,
        .rebuildImportedAlbums = rebuildAlbums,
    });
    m_importing = std::make_unique<Importer>(ImportCollaborators{
        .library = *m_store,
        .queue = *m_queue,
        .status = *m_status,
        .bookmarks = *m_bookmarks,
        .importedPaths = *m_importedPaths,
        .persistence = *m_persistence,
        .fileChooser = m_outside.fileChooser,
        .clock = m_outside.clock,
        .cloudFiles = m_outside.cloudFiles,
        .cache = *m_cache,
        .journal = m_journal,
        .language = language,
        .play = [this](const QUuid& entry) { m_transport->playItem(entry, true); },
        .finishRemoval = [this] { m_tidying->finishRemoval(); },
        .rebuildImportedAlbums = rebuildAlbums,
        .importEnded = [this] { libraryGrew(); },
    });
    m_restoration = std::make_unique<Restoration>(RestorationCollaborators{
        .library = *m_store,
        .catalog = *m_catalog,
        .queue = *m_queue,
        .importedPaths = *m_importedPaths,
        .persistence = *m_persistence,
        .cloudFiles = m_outside.cloudFiles,
        .cache = *m_cache,
        .journal = m_journal,
        .firstPicture = m_outside.firstPicture,
        .language = language,
        .restored = [this] { m_catalog->whenCurrent(this, [this] { libraryGrew(); }); },
    });
    m_tidying = std::make_unique<Maintenance>(MaintenanceCollaborators{
        .library = *m_store,
        .queue = *m_queue,
        .playlists = *m_playlists,
        .userData = *m_userData,
        .availability = *m_availability,
        .downloads = *m_downloads,
        .duplicates = *m_duplicates,
        .status = *m_status,
        .preferences = m_outside.preferences,
        .language = language,
        .stopPlayer = [this] { m_transport->stopPlayer(true); },
        .replanSuccessor = [this] { m_transport->replanSuccessor(); },
        .forgetLoudness = [this](const QSet<QString>& paths) { m_soundCheck->forget(paths); },
        .rebuildImportedAlbums = rebuildAlbums,
    });

    // What is shown
    m_browsing = std::make_unique<Browsing>(
        BrowsingCollaborators{
            .store = *m_store,
            .catalog = *m_catalog,
            .playlists = *m_playlists,
            .covers = *m_covers,
            .lovedPaths = [this]() -> const QSet<QString>& { return m_userData->lovedPaths(); },
            .language = language,
        },
        rowState());
    m_sidebar = std::make_unique<SidebarModel>([this](SidebarItem item) {
        return sidebarCount(item, *m_catalog->catalog(), m_catalog->lovedCount());
    });
    m_tidyingLists = std::make_unique<MaintenanceLists>(*m_store, *m_availability, *m_duplicates);
    m_collections = std::make_unique<CollectionPlayer>(CollectionPlayer::Collaborators{
        .store = *m_store,
        .catalog = *m_catalog,
        .playlists = *m_playlists,
        .files = *m_availability,
        .browsing = *m_browsing,
        .queue = *m_queue,
        .transport = *m_transport,
    });
    m_player = std::make_unique<PlayerDisplay>(*m_queue, *m_progressClock, *m_views, *m_userData,
                                               *m_browsing, *m_language);
    m_ambient = std::make_unique<AmbientColor>();
    m_appearance = std::make_unique<ThemeSettings>(m_outside.preferences, *m_ambient);
    m_nowPlaying =
        std::make_unique<NowPlaying>(m_outside.mediaControls, m_outside.notifications, *m_transport,
                                     *m_queue, *m_engine, isApplicationActive, artworkFolder);

    connectRows();
    connectCatalog();
    connectTransport();
    connectNowPlaying();
    connectLanguage();
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
    m_appearance->restoreTheme();
    m_views->restoreRemainingTime();
    m_output->restore();
    m_soundCheck->restore();
    m_bookmarks->restoreBookmarkAccess();
    m_restoration->restoreImportedAudio();
    observeApplication();
    m_nowPlaying->setupRemoteCommands();
    m_outside.notifications.requestAuthorization();
    m_engine->setVolume(m_transport->volume());
}

RowState LibraryViewModel::rowState() {
    RowState state;
    state.isLoved = [this](const QString& path) { return m_userData->isLoved(path); };
    state.rating = [this](const QString& path) { return int(m_userData->rating(path)); };
    state.availability = [this](const QString& path) { return m_availability->state(path); };
    state.isCurrent = [this](const QString& path) { return m_transport->isTrackPlaying(path); };
    state.covers = m_covers.get();
    return state;
}

SpectrumModel* LibraryViewModel::spectrum() const {
    return &m_engine->spectrum();
}

int LibraryViewModel::trackCount() const {
    return static_cast<int>(m_catalog->catalog()->rows->size());
}

QString LibraryViewModel::librarySummary() const {
    const Catalog& now = *m_catalog->catalog();
    return halvane::librarySummary(now.rows->size(), now.albums.size(),
                                   now.totalBytes - m_availability->missingBytes(),
                                   m_language->resolvedLanguage());
}

// What follows from what

void LibraryViewModel::libraryGrew() {
    m_availability->refreshAvailability();
    m_duplicates->refresh();
    m_soundCheck->scanLoudnessIfNeeded();
}

void LibraryViewModel::showEntry(const QueueItem& entry) {
    m_browsing->selectAlbum(entry);
    m_ambient->updateAmbientColor(entry.coverImageData, entry.coverURL,
                                  albumColors(entry.album, entry.artist).front());
}

void LibraryViewModel::selectedAlbumChanged() {
    // While something is loaded, the colour is that of what plays.
    if (m_engine->hasFile())
        return;
    if (const Album* album = m_browsing->selectedAlbum())
        m_ambient->updateAmbientColor(album->coverImageData, album->coverURL,
                                      album->colors.front());
}

void LibraryViewModel::connectRows() {
    connect(m_userData.get(), &TrackUserData::lovedChanged, this, [this](const QString& path) {
        m_browsing->lovedChanged(path);
        m_queue->refresh(path, {PlayQueue::IsLovedRole});
        m_sidebar->refresh();
    });
    connect(m_userData.get(), &TrackUserData::ratingChanged, m_browsing.get(),
            &Browsing::ratingChanged);
    connect(m_userData.get(), &TrackUserData::reset, this, [this] {
        m_browsing->lovedReset();
        m_queue->refreshAll({PlayQueue::IsLovedRole});
        m_sidebar->refresh();
    });
    connect(m_queue.get(), &PlayQueue::currentChanged, this,
            [this] { m_browsing->currentChanged(m_queue->currentPath()); });
    connect(m_availability.get(), &Availability::statesChanged, this,
            &LibraryViewModel::availabilityChanged);
    connect(m_browsing.get(), &Browsing::selectedAlbumIDChanged, this,
            &LibraryViewModel::selectedAlbumChanged);
    // The full-screen player would hide where a jump leads.
    connect(m_browsing.get(), &Browsing::jumping, this,
            [this] { m_views->setShowFullPlayer(false); });
}

void LibraryViewModel::availabilityChanged(const QSet<QString>& paths) {
    // Finding very many rows would take longer than letting the views look at theirs again.
    if (static_cast<std::size_t>(paths.size()) > mostNarrowRanges) {
        m_browsing->availabilityReset();
        m_queue->refreshAll({PlayQueue::AvailabilityRole});
        return;
    }
    for (const QString& path : paths) {
        m_browsing->availabilityChanged(path);
        m_queue->refresh(path, {PlayQueue::AvailabilityRole});
    }
}

void LibraryViewModel::connectCatalog() {
    connect(m_catalog.get(), &LibraryCatalog::catalogChanged, m_sidebar.get(),
            &SidebarModel::refresh);
    connect(m_catalog.get(), &LibraryCatalog::lovedCountChanged, m_sidebar.get(),
            &SidebarModel::refresh);
    connect(m_catalog.get(), &LibraryCatalog::catalogChanged, this,
            &LibraryViewModel::trackCountChanged);
    connect(m_catalog.get(), &LibraryCatalog::catalogChanged, this,
            &LibraryViewModel::librarySummaryChanged);
    connect(m_availability.get(), &Availability::unavailablePathsChanged, this,
            &LibraryViewModel::librarySummaryChanged);
}

void LibraryViewModel::connectTransport() {
    connect(m_transport.get(), &Transport::isPlayingChanged, this,
            [this] { m_outside.sleepInhibitor.setInhibited(m_transport->isPlaying()); });
    connect(m_transport.get(), &Transport::playStarted, m_userData.get(),
            &TrackUserData::countPlay);
    connect(m_transport.get(), &Transport::becameCurrent, this, &LibraryViewModel::showEntry);
    // The engine is a part of this object and calls nobody once it is gone.
    m_engine->onTrackEnd = [this] { m_transport->trackEnded(); };
    m_engine->onGraphRebuilt = [this] { m_transport->attemptGaplessPreschedule(); };
    m_engine->onPauseRequested = [this](bool pause) { m_transport->pauseRequested(pause); };
    m_engine->onPlaybackInterrupted = [this](const QString& reason) {
        m_transport->interrupted(reason);
    };
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

void LibraryViewModel::connectLanguage() {
    // Unknown names and lengths are texts, and part of what is derived.
    connect(m_language.get(), &LanguageSetting::languageChanged, m_catalog.get(),
            &LibraryCatalog::rebuildImportedAlbums);
    connect(m_language.get(), &LanguageSetting::languageChanged, m_browsing.get(),
            &Browsing::languageChanged);
    connect(m_language.get(), &LanguageSetting::languageChanged, m_output.get(),
            &OutputDevices::retranslate);
    connect(m_language.get(), &LanguageSetting::languageChanged, this,
            &LibraryViewModel::librarySummaryChanged);
}

void LibraryViewModel::observeApplication() {
    auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (application) {
        connect(application, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    if (state != Qt::ApplicationActive)
                        return;
                    m_availability->refreshAvailability();
                    m_language->systemLanguagesChanged();
                });
    }
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            [this] { m_views->setQuitting(); });
}

} // namespace halvane
