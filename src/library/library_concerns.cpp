// SPDX-License-Identifier: MIT
#include "library/library_concerns.h"

#include "library/browsing/row_ranges.h"
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

LibraryConcerns::LibraryConcerns(const Environment& environment)
    : outside(environment)
    , language(outside.preferences, outside.languages)
    , userData(outside.preferences)
    , playlists(outside.preferences)
    , views(outside.preferences)
    , catalog(store, userData, [this] { return resolvedLanguage(); })
    , cache(outside.dataFolder)
    , journal(std::make_shared<ReadingJournal>(outside.cacheFolder))
    , importedPaths(outside.preferences, store)
    , persistence(store, cache)
    , bookmarks(outside.preferences)
    , duplicates(store)
    , engine(outside.output, outside.clock)
    , transportEngine(engine)
    , status(outside.clock)
    , progress(transportEngine, outside.clock)
    , queue(rowState())
    , downloads({outside.clock, *outside.cloudFiles, [this] { availability.refreshAvailability(); },
                 [this] { return !availability.cloudPendingPaths().isEmpty(); }})
    , availability({store, queue, outside.cloudFiles,
                    [this](const QSet<QString>& paths) { downloads.startCloudDownloads(paths); },
                    [this] { healing.healIncompleteMetadata(); }})
    , transport(transportCollaborators())
    , transportSettings(outside.preferences, transport)
    , equalizer(outside.preferences,
                [this](bool enabled, const std::vector<double>& gains, double preamp) {
                    engine.setEQ(enabled, gains, preamp);
                })
    , soundCheck(outside.preferences, outside.cloudFiles, soundCheckCollaborators())
    , output(outside.devices, outside.preferences, outputCollaborators())
    , outputDeviceList(output)
    , healing({store, queue, persistence, outside.cloudFiles, journal,
               [this] { return resolvedLanguage(); }, [this] { catalog.rebuildImportedAlbums(); }})
    , importer(importCollaborators())
    , restoration(restorationCollaborators())
    , maintenance(maintenanceCollaborators())
    , browsing({store, catalog, playlists, covers,
                [this]() -> const QSet<QString>& { return userData.lovedPaths(); },
                [this] { return resolvedLanguage(); }},
               rowState())
    , sidebar([this](SidebarItem item) { return sidebarCount(item); })
    , maintenanceLists(store, availability, duplicates)
    , collections({store, catalog, playlists, availability, browsing, queue, transport})
    , theme(outside.preferences, ambient)
    , remote(transport, queue, engine)
    , nowPlaying(outside.mediaControls, outside.notifications, remote, isApplicationActive,
                 outside.cacheFolder + QStringLiteral("/NowPlaying")) {
    connectRows();
    connectNowPlaying();
    connectLanguage();
    connect(&browsing, &Browsing::selectedAlbumIDChanged, this,
            &LibraryConcerns::selectedAlbumChanged);
    connect(&transport, &Transport::isPlayingChanged, this,
            [this] { outside.sleepInhibitor.setInhibited(transport.isPlaying()); });
}

LibraryConcerns::~LibraryConcerns() {
    journal->close();
}

void LibraryConcerns::start() {
    language.restore();
    transportSettings.restore();
    views.restoreNowPlayingPanel();
    theme.restoreSpectrum();
    equalizer.restore();
    userData.restore();
    playlists.restore();
    theme.restoreTheme();
    views.restoreRemainingTime();
    output.restore();
    soundCheck.restore();
    bookmarks.restoreBookmarkAccess();
    restoration.restoreImportedAudio();
    observeApplication();
    nowPlaying.setupRemoteCommands();
    outside.notifications.requestAuthorization();
    engine.setVolume(transport.volume());
    installEngineCallbacks();
}

// What the concerns ask of each other

RowState LibraryConcerns::rowState() {
    RowState state;
    state.isLoved = [this](const QString& path) { return userData.isLoved(path); };
    state.rating = [this](const QString& path) { return int(userData.rating(path)); };
    state.availability = [this](const QString& path) { return availability.state(path); };
    state.isCurrent = [this](const QString& path) { return transport.isTrackPlaying(path); };
    state.covers = &covers;
    return state;
}

TransportCollaborators LibraryConcerns::transportCollaborators() {
    return {
        .engine = transportEngine,
        .queue = queue,
        .files = availability,
        .status = status,
        .progress = progress,
        .clock = outside.clock,
        .random = systemRandomIndex(),
        .language = [this] { return resolvedLanguage(); },
        .soundCheckGain = [this](const QString& path) { return soundCheck.soundCheckGain(path); },
        .countPlay = [this](const QString& path) { userData.countPlay(path); },
        .showEntry = [this](const QueueItem& entry) { showEntry(entry); },
        .updateNowPlaying = [this] { nowPlaying.updateNowPlayingInfo(); },
        .notifyTrackChange =
            [this](const QueueItem& entry) { nowPlaying.notifyTrackChange(entry); },
    };
}

SoundCheck::Collaborators LibraryConcerns::soundCheckCollaborators() {
    SoundCheck::Collaborators with;
    with.visitFiles = [this](const std::function<void(const FileUrl&)>& visit) {
        for (const TrackPtr& track : store.rows()) {
            if (track->sourceURL)
                visit(*track->sourceURL);
        }
    };
    with.isAvailable = [this](const QString& path) {
        return availability.state(path) == TrackAvailability::available;
    };
    with.currentPath = [this] {
        const QString path = queue.currentPath();
        return path.isEmpty() ? std::nullopt : std::optional(path);
    };
    with.setTrackGain = [this](double dB) { engine.setTrackGain(dB); };
    return with;
}

OutputDevices::Collaborators LibraryConcerns::outputCollaborators() {
    return {
        .routeEngine =
            [this](std::optional<std::uint32_t> id) { return engine.setOutputDevice(id); },
        .switchFailed =
            [this] {
                status.show(L10n::text(L10nKey::deviceSwitchFailed, resolvedLanguage()), true);
                transport.adoptEngineState();
            },
        .builtInOutput = [this] { return L10n::text(L10nKey::builtInOutput, resolvedLanguage()); },
    };
}

ImportCollaborators LibraryConcerns::importCollaborators() {
    return {
        .library = store,
        .queue = queue,
        .status = status,
        .bookmarks = bookmarks,
        .importedPaths = importedPaths,
        .persistence = persistence,
        .fileChooser = outside.fileChooser,
        .clock = outside.clock,
        .cloudFiles = outside.cloudFiles,
        .cache = cache,
        .journal = journal,
        .language = [this] { return resolvedLanguage(); },
        .play = [this](const QUuid& entry) { transport.playItem(entry, true); },
        .finishRemoval = [this] { maintenance.finishRemoval(); },
        .rebuildImportedAlbums = [this] { catalog.rebuildImportedAlbums(); },
        .importEnded = [this] { libraryGrew(); },
    };
}

RestorationCollaborators LibraryConcerns::restorationCollaborators() {
    return {
        .library = store,
        .catalog = catalog,
        .queue = queue,
        .importedPaths = importedPaths,
        .persistence = persistence,
        .cloudFiles = outside.cloudFiles,
        .cache = cache,
        .journal = journal,
        .firstPicture = outside.firstPicture,
        .language = [this] { return resolvedLanguage(); },
        .restored = [this] { catalog.whenCurrent(this, [this] { libraryGrew(); }); },
    };
}

MaintenanceCollaborators LibraryConcerns::maintenanceCollaborators() {
    return {
        .library = store,
        .queue = queue,
        .playlists = playlists,
        .userData = userData,
        .availability = availability,
        .downloads = downloads,
        .duplicates = duplicates,
        .status = status,
        .preferences = outside.preferences,
        .language = [this] { return resolvedLanguage(); },
        .stopPlayer = [this] { transport.stopPlayer(true); },
        .replanSuccessor = [this] { transport.replanSuccessor(); },
        .forgetLoudness = [this](const QSet<QString>& paths) { soundCheck.forget(paths); },
        .rebuildImportedAlbums = [this] { catalog.rebuildImportedAlbums(); },
    };
}

void LibraryConcerns::libraryGrew() {
    availability.refreshAvailability();
    duplicates.refresh();
    soundCheck.scanLoudnessIfNeeded();
}

void LibraryConcerns::showEntry(const QueueItem& entry) {
    browsing.selectAlbum(entry);
    ambient.updateAmbientColor(entry.coverImageData, entry.coverURL,
                               albumColors(entry.album, entry.artist).front());
}

void LibraryConcerns::selectedAlbumChanged() {
    // While something is loaded, the colour is that of what plays.
    if (engine.hasFile())
        return;
    if (const Album* album = browsing.selectedAlbum())
        ambient.updateAmbientColor(album->coverImageData, album->coverURL, album->colors.front());
}

std::size_t LibraryConcerns::sidebarCount(SidebarItem item) const {
    const Catalog& now = *catalog.catalog();
    switch (item) {
    case SidebarItem::library:
        return 0;
    case SidebarItem::albums:
        return now.albums.size();
    case SidebarItem::artists:
        return now.artists.size();
    case SidebarItem::tracks:
        return now.rows->size();
    case SidebarItem::loved:
        return catalog.lovedCount();
    }
    return 0;
}

// What follows from what

void LibraryConcerns::connectRows() {
    connect(&userData, &TrackUserData::lovedChanged, this, [this](const QString& path) {
        browsing.lovedChanged(path);
        queue.refresh(path, {PlayQueue::IsLovedRole});
        sidebar.refresh();
    });
    connect(&userData, &TrackUserData::ratingChanged, &browsing, &Browsing::ratingChanged);
    connect(&userData, &TrackUserData::reset, this, [this] {
        browsing.lovedReset();
        queue.refreshAll({PlayQueue::IsLovedRole});
        sidebar.refresh();
    });
    connect(&queue, &PlayQueue::currentChanged, this,
            [this] { browsing.currentChanged(queue.currentPath()); });
    connect(&catalog, &LibraryCatalog::catalogChanged, &sidebar, &SidebarModel::refresh);
    connect(&catalog, &LibraryCatalog::lovedCountChanged, &sidebar, &SidebarModel::refresh);
    connect(&availability, &Availability::statesChanged, this,
            &LibraryConcerns::availabilityChanged);
}

void LibraryConcerns::availabilityChanged(const QSet<QString>& paths) {
    // Finding very many rows would take longer than letting the views look at theirs again.
    if (static_cast<std::size_t>(paths.size()) > mostNarrowRanges) {
        browsing.availabilityReset();
        queue.refreshAll({PlayQueue::AvailabilityRole});
        return;
    }
    for (const QString& path : paths) {
        browsing.availabilityChanged(path);
        queue.refresh(path, {PlayQueue::AvailabilityRole});
    }
}

void LibraryConcerns::connectNowPlaying() {
    connect(&transport, &Transport::positionJumped, &nowPlaying, &NowPlaying::positionJumped);
    connect(&transport, &Transport::repeatModeChanged, &nowPlaying, &NowPlaying::updateModes);
    connect(&transport, &Transport::isShuffleEnabledChanged, &nowPlaying, &NowPlaying::updateModes);
    connect(&transport, &Transport::volumeChanged, &nowPlaying, &NowPlaying::updateModes);
    connect(&queue, &PlayQueue::entriesChanged, &nowPlaying, &NowPlaying::updateModes);
    connect(&queue, &PlayQueue::currentRecordChanged, &nowPlaying,
            &NowPlaying::updateNowPlayingInfo);
    remote.onImportFile = [this](const QString& path) {
        importer.importDroppedURLs({QUrl::fromLocalFile(path)});
    };
}

void LibraryConcerns::connectLanguage() {
    // Unknown names and lengths are texts, and part of what is derived.
    connect(&language, &LanguageSetting::languageChanged, &catalog,
            &LibraryCatalog::rebuildImportedAlbums);
    connect(&language, &LanguageSetting::languageChanged, &browsing, &Browsing::languageChanged);
    connect(&language, &LanguageSetting::languageChanged, &output, &OutputDevices::retranslate);
}

// The outside

void LibraryConcerns::observeApplication() {
    auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (application) {
        connect(application, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    if (state != Qt::ApplicationActive)
                        return;
                    availability.refreshAvailability();
                    language.systemLanguagesChanged();
                });
    }
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            [this] { views.setQuitting(); });
}

void LibraryConcerns::installEngineCallbacks() {
    // The engine is a part of this object and calls nobody once it is gone.
    engine.onTrackEnd = [this] { transport.trackEnded(); };
    engine.onGraphRebuilt = [this] { transport.attemptGaplessPreschedule(); };
    engine.onPauseRequested = [this](bool pause) { transport.pauseRequested(pause); };
    engine.onPlaybackInterrupted = [this](const QString& reason) { transport.interrupted(reason); };
}

} // namespace halvane
