// SPDX-License-Identifier: MIT
#pragma once

#include "library/environment.h"
#include "model/album.h"
#include "model/enums.h"
#include "model/queue_item.h"
#include "presentation/l10n.h"

#include <QAbstractListModel>
#include <QColor>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QUuid>

#include <memory>

namespace halvane {

class AudioPlaybackEngine;
class SpectrumModel;

/// The one controller: what every window, menu command and remote command sees and acts on. A
/// facade over one small class a concern; it owns them and passes on their properties and
/// operations under one roof, and holds no state of its own. Main thread only. Lives from the
/// program's start to its end.
///
/// Paths are standardized absolute paths; times are seconds, gains dB, fractions 0...1.
class LibraryViewModel : public QObject {
    Q_OBJECT

    // Navigation and search
    Q_PROPERTY(
        halvane::SidebarItem selectedSidebar READ selectedSidebar NOTIFY selectedSidebarChanged)
    Q_PROPERTY(halvane::LibraryMode mode READ mode NOTIFY modeChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(bool isSearchFieldFocused READ isSearchFieldFocused WRITE setSearchFieldFocused
                   NOTIFY isSearchFieldFocusedChanged)
    Q_PROPERTY(int searchFocusRequest READ searchFocusRequest NOTIFY searchFocusRequestChanged)
    Q_PROPERTY(QString focusedArtist READ focusedArtist WRITE setFocusedArtist NOTIFY
                   focusedArtistChanged) // empty: none
    Q_PROPERTY(QString selectedAlbumID READ selectedAlbumID WRITE setSelectedAlbumID NOTIFY
                   selectedAlbumIDChanged) // empty: none
    Q_PROPERTY(bool showLovedOnly READ showLovedOnly NOTIFY showLovedOnlyChanged)
    Q_PROPERTY(QUuid selectedPlaylistID READ selectedPlaylistID WRITE setSelectedPlaylistID NOTIFY
                   selectedPlaylistIDChanged) // null: none
    Q_PROPERTY(
        QString selectedPlaylistName READ selectedPlaylistName NOTIFY selectedPlaylistNameChanged)

    // Windows and panels
    Q_PROPERTY(bool showFullPlayer READ showFullPlayer WRITE setShowFullPlayer NOTIFY
                   showFullPlayerChanged)
    Q_PROPERTY(bool isMiniPlayerOpen READ isMiniPlayerOpen WRITE setMiniPlayerOpen NOTIFY
                   isMiniPlayerOpenChanged)
    Q_PROPERTY(bool showNowPlayingPanel READ showNowPlayingPanel WRITE setShowNowPlayingPanel NOTIFY
                   showNowPlayingPanelChanged)
    Q_PROPERTY(bool showMaintenance READ showMaintenance WRITE setShowMaintenance NOTIFY
                   showMaintenanceChanged)
    Q_PROPERTY(bool isQuitting READ isQuitting NOTIFY isQuittingChanged)

    // Transport
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString elapsedTime READ elapsedTime NOTIFY elapsedTimeChanged)
    Q_PROPERTY(QString durationDisplay READ durationDisplay NOTIFY durationDisplayChanged)
    Q_PROPERTY(bool isShuffleEnabled READ isShuffleEnabled NOTIFY isShuffleEnabledChanged)
    Q_PROPERTY(halvane::PlaybackRepeatMode repeatMode READ repeatMode NOTIFY repeatModeChanged)
    Q_PROPERTY(bool showRemainingTime READ showRemainingTime WRITE setShowRemainingTime NOTIFY
                   showRemainingTimeChanged)
    Q_PROPERTY(bool hasCurrentTrack READ hasCurrentTrack NOTIFY currentTrackChanged)
    Q_PROPERTY(halvane::QueueItem currentTrack READ currentTrack NOTIFY
                   currentTrackChanged) // empty texts: none
    Q_PROPERTY(bool isCurrentTrackLoved READ isCurrentTrackLoved NOTIFY isCurrentTrackLovedChanged)
    Q_PROPERTY(QString queuePositionText READ queuePositionText NOTIFY queuePositionTextChanged)
    Q_PROPERTY(QString queueSourceText READ queueSourceText NOTIFY queueSourceTextChanged)

    // Lists. Roles are in the models' headers.
    Q_PROPERTY(QAbstractListModel* playlist READ playlist CONSTANT) // the play queue
    Q_PROPERTY(QAbstractListModel* visibleTracks READ visibleTracks CONSTANT)
    Q_PROPERTY(QAbstractListModel* visibleAlbums READ visibleAlbums CONSTANT)
    Q_PROPERTY(QAbstractListModel* visibleArtists READ visibleArtists CONSTANT)
    Q_PROPERTY(QAbstractListModel* playlists READ playlists CONSTANT)
    Q_PROPERTY(QAbstractListModel* sidebarItems READ sidebarItems CONSTANT)
    Q_PROPERTY(int visibleTrackCount READ visibleTrackCount NOTIFY visibleTrackCountChanged)
    Q_PROPERTY(int trackCount READ trackCount NOTIFY trackCountChanged)
    Q_PROPERTY(QString librarySummary READ librarySummary NOTIFY librarySummaryChanged)
    Q_PROPERTY(bool hasFocusedAlbum READ hasFocusedAlbum NOTIFY focusedAlbumChanged)
    Q_PROPERTY(halvane::Album focusedAlbum READ focusedAlbum NOTIFY focusedAlbumChanged)
    Q_PROPERTY(bool hasSelectedAlbum READ hasSelectedAlbum NOTIFY selectedAlbumChanged)
    Q_PROPERTY(halvane::Album selectedAlbum READ selectedAlbum NOTIFY selectedAlbumChanged)
    Q_PROPERTY(
        bool hasCurrentArtworkAlbum READ hasCurrentArtworkAlbum NOTIFY currentArtworkAlbumChanged)
    Q_PROPERTY(halvane::Album currentArtworkAlbum READ currentArtworkAlbum NOTIFY
                   currentArtworkAlbumChanged)

    // Status line and import
    Q_PROPERTY(QString lastImportMessage READ lastImportMessage NOTIFY lastImportMessageChanged)
    Q_PROPERTY(bool statusIsError READ statusIsError NOTIFY statusIsErrorChanged)
    Q_PROPERTY(double importProgress READ importProgress NOTIFY
                   importProgressChanged) // below 0: none runs

    // Maintenance
    Q_PROPERTY(
        int maintenanceActionCount READ maintenanceActionCount NOTIFY maintenanceActionCountChanged)
    Q_PROPERTY(
        bool cloudDownloadInFlight READ cloudDownloadInFlight NOTIFY cloudDownloadInFlightChanged)
    Q_PROPERTY(int duplicateGroupCount READ duplicateGroupCount NOTIFY duplicateGroupCountChanged)
    Q_PROPERTY(QAbstractListModel* cloudPendingTracks READ cloudPendingTracks CONSTANT)
    Q_PROPERTY(QAbstractListModel* missingTracks READ missingTracks CONSTANT)
    Q_PROPERTY(QAbstractListModel* duplicateTracks READ duplicateTracks CONSTANT)

    // Equalizer and Sound Check
    Q_PROPERTY(bool eqEnabled READ eqEnabled WRITE setEqEnabled NOTIFY eqEnabledChanged)
    Q_PROPERTY(QList<double> eqGains READ eqGains NOTIFY eqGainsChanged)
    Q_PROPERTY(double eqPreamp READ eqPreamp WRITE setEqPreamp NOTIFY eqPreampChanged)
    Q_PROPERTY(QString currentEQPresetID READ currentEQPresetID NOTIFY
                   currentEQPresetIDChanged) // empty: none
    Q_PROPERTY(QString presetMenuTitle READ presetMenuTitle NOTIFY presetMenuTitleChanged)
    Q_PROPERTY(QStringList userEQPresetNames READ userEQPresetNames NOTIFY userEQPresetsChanged)
    Q_PROPERTY(bool soundCheckEnabled READ soundCheckEnabled WRITE setSoundCheckEnabled NOTIFY
                   soundCheckEnabledChanged)
    Q_PROPERTY(halvane::SpectrumModel* spectrum READ spectrum CONSTANT)

    // Output
    Q_PROPERTY(QString outputDeviceName READ outputDeviceName NOTIFY outputDeviceNameChanged)
    Q_PROPERTY(QAbstractListModel* availableOutputDevices READ availableOutputDevices CONSTANT)
    Q_PROPERTY(QString selectedOutputDeviceName READ selectedOutputDeviceName NOTIFY
                   selectedOutputDeviceNameChanged) // empty: the system's default
    Q_PROPERTY(QString signalPathDescription READ signalPathDescription NOTIFY
                   signalPathDescriptionChanged)

    // Appearance
    Q_PROPERTY(halvane::AppLanguage languageSetting READ languageSetting WRITE setLanguageSetting
                   NOTIFY languageChanged)
    Q_PROPERTY(
        halvane::ResolvedLanguage resolvedLanguage READ resolvedLanguage NOTIFY languageChanged)
    Q_PROPERTY(halvane::SpectrumTintMode themeAccentMode READ themeAccentMode WRITE
                   setThemeAccentMode NOTIFY themeChanged)
    Q_PROPERTY(QColor customThemeAccent READ customThemeAccent WRITE setCustomThemeAccent NOTIFY
                   themeChanged)
    Q_PROPERTY(halvane::CornerStyle themeCornerStyle READ themeCornerStyle WRITE setThemeCornerStyle
                   NOTIFY themeChanged)
    Q_PROPERTY(halvane::BackgroundStyle themeBackgroundStyle READ themeBackgroundStyle WRITE
                   setThemeBackgroundStyle NOTIFY themeChanged)
    Q_PROPERTY(halvane::SpectrumTintMode spectrumTintMode READ spectrumTintMode WRITE
                   setSpectrumTintMode NOTIFY spectrumTintChanged)
    Q_PROPERTY(QColor customSpectrumColor READ customSpectrumColor WRITE setCustomSpectrumColor
                   NOTIFY spectrumTintChanged)
    Q_PROPERTY(QColor spectrumTint READ spectrumTint NOTIFY spectrumTintChanged)
    Q_PROPERTY(QColor ambientColor READ ambientColor NOTIFY ambientColorChanged)
    Q_PROPERTY(double ambientBackgroundBoost READ ambientBackgroundBoost NOTIFY themeChanged)

    // Operations

  public:
    LibraryViewModel(Environment environment, QObject* parent = nullptr);
    ~LibraryViewModel() override;

    // Transport and queue
    Q_INVOKABLE void togglePlayback();
    Q_INVOKABLE void playNext(bool manual);
    Q_INVOKABLE void playPrevious();
    Q_INVOKABLE void playTrack(const QUuid& id);
    Q_INVOKABLE void playAlbum(const QString& id);
    Q_INVOKABLE void playArtist(const QString& name);
    Q_INVOKABLE void playPlaylist(const QUuid& id);
    Q_INVOKABLE void playItem(const QUuid& id, bool userInitiated);
    Q_INVOKABLE void moveQueueItem(const QUuid& id, const QUuid& toPositionOf);
    Q_INVOKABLE void
    finishQueueMove(); // the dragged entry was dropped: plan the gapless successor again
    Q_INVOKABLE void scrub(double fraction);
    Q_INVOKABLE void seek(double fraction);
    Q_INVOKABLE void advanceRepeatMode();
    Q_INVOKABLE void toggleShuffle();
    Q_INVOKABLE void stepVolume(double delta);
    Q_INVOKABLE bool isTrackPlaying(const QString& path) const;
    // Import
    Q_INVOKABLE void chooseAndImportMusic(bool files, bool directories);
    Q_INVOKABLE void importDroppedURLs(const QList<QUrl>& urls);
    // Browsing
    Q_INVOKABLE void selectBrowseMode(halvane::LibraryMode mode);
    Q_INVOKABLE void selectSidebarItem(halvane::SidebarItem item);
    Q_INVOKABLE void goHome();
    Q_INVOKABLE void jumpToArtist(const QString& name);
    Q_INVOKABLE void jumpToAlbum(const QUuid& entry);
    Q_INVOKABLE void toggleLoved(const QString& path);
    Q_INVOKABLE void setRating(int rating, const QString& path);
    Q_INVOKABLE void requestSearchFocus(); // adds 1 to searchFocusRequest
    // Playlists
    Q_INVOKABLE QUuid createPlaylist(const QString& name);
    Q_INVOKABLE void renamePlaylist(const QUuid& id, const QString& name);
    Q_INVOKABLE void deletePlaylist(const QUuid& id);
    Q_INVOKABLE void addTrackPaths(const QStringList& paths, const QUuid& toPlaylist);
    Q_INVOKABLE void removeTrackPath(const QString& path, const QUuid& fromPlaylist);
    // Maintenance
    Q_INVOKABLE void refreshAvailability();
    Q_INVOKABLE void removeTracks(const QStringList& withPaths);
    Q_INVOKABLE void removeDuplicateTracks();
    Q_INVOKABLE void downloadAllCloudTracks();
    // Equalizer
    Q_INVOKABLE void setEqGain(int band, double dB);
    Q_INVOKABLE void applyBuiltInEQPreset(const QString& id);
    Q_INVOKABLE void applyUserEQPreset(const QString& name);
    Q_INVOKABLE void saveCurrentEQPreset(const QString& name);
    Q_INVOKABLE void deleteUserEQPreset(const QString& name);
    // Output
    Q_INVOKABLE void selectOutputDevice(quint32 id);
    Q_INVOKABLE void selectSystemDefaultOutput();
};

} // namespace halvane
