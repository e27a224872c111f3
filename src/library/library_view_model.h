// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/spectrum_model.h"
#include "library/environment.h"
#include "model/album.h"
#include "model/enums.h"
#include "model/queue_item.h"
#include "presentation/app_theme.h"

#include <QAbstractListModel>
#include <QColor>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QUuid>

#include <memory>

namespace halvane {

class CoverStore;
class LibraryConcerns;

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
    Q_PROPERTY(bool hasLoadedFile READ hasLoadedFile NOTIFY
                   loadedFileChanged) // playing or paused: there is a position to move
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

    // Status line
    Q_PROPERTY(QString lastImportMessage READ lastImportMessage NOTIFY lastImportMessageChanged)
    Q_PROPERTY(bool statusIsError READ statusIsError NOTIFY statusIsErrorChanged)

    // Import and maintenance. The lists hold title, artist and path.
    Q_PROPERTY(double importProgress READ importProgress NOTIFY
                   importProgressChanged) // below 0: none runs
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

    // Output. The list holds deviceId, name and selected.
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

  public:
    /// Restores what is remembered; nothing plays and the queue is empty. The environment's parts
    /// outlive it.
    explicit LibraryViewModel(const Environment& environment, QObject* parent = nullptr);
    ~LibraryViewModel() override;

    /// Gives the views' covers by the keys that lists and albums carry. Any thread.
    const CoverStore& covers() const;
    /// What stands behind it, for those who put a library together without files.
    LibraryConcerns& concerns() { return *m_concerns; }

    SidebarItem selectedSidebar() const;
    LibraryMode mode() const;
    QString searchText() const;
    void setSearchText(const QString& text);
    bool isSearchFieldFocused() const;
    void setSearchFieldFocused(bool focused);
    int searchFocusRequest() const;
    QString focusedArtist() const;
    void setFocusedArtist(const QString& name);
    QString selectedAlbumID() const;
    void setSelectedAlbumID(const QString& id);
    bool showLovedOnly() const;
    QUuid selectedPlaylistID() const;
    void setSelectedPlaylistID(const QUuid& id);
    QString selectedPlaylistName() const;

    bool showFullPlayer() const;
    void setShowFullPlayer(bool show);
    bool isMiniPlayerOpen() const;
    void setMiniPlayerOpen(bool open);
    bool showNowPlayingPanel() const;
    void setShowNowPlayingPanel(bool show);
    bool showMaintenance() const;
    void setShowMaintenance(bool show);
    bool isQuitting() const;

    bool isPlaying() const;
    double volume() const;
    void setVolume(double volume);
    bool hasLoadedFile() const;
    double progress() const;
    QString elapsedTime() const;
    QString durationDisplay() const;
    bool isShuffleEnabled() const;
    PlaybackRepeatMode repeatMode() const;
    bool showRemainingTime() const;
    void setShowRemainingTime(bool show);
    bool hasCurrentTrack() const;
    QueueItem currentTrack() const;
    bool isCurrentTrackLoved() const;
    QString queuePositionText() const;
    QString queueSourceText() const;

    QAbstractListModel* playlist();
    QAbstractListModel* visibleTracks();
    QAbstractListModel* visibleAlbums();
    QAbstractListModel* visibleArtists();
    QAbstractListModel* playlists();
    QAbstractListModel* sidebarItems();
    int visibleTrackCount() const;
    int trackCount() const;
    QString librarySummary() const;
    bool hasFocusedAlbum() const;
    Album focusedAlbum() const;
    bool hasSelectedAlbum() const;
    Album selectedAlbum() const;
    bool hasCurrentArtworkAlbum() const;
    Album currentArtworkAlbum() const;

    QString lastImportMessage() const;
    bool statusIsError() const;

    double importProgress() const;
    int maintenanceActionCount() const;
    bool cloudDownloadInFlight() const;
    int duplicateGroupCount() const;
    QAbstractListModel* cloudPendingTracks();
    QAbstractListModel* missingTracks();
    QAbstractListModel* duplicateTracks();

    bool eqEnabled() const;
    void setEqEnabled(bool enabled);
    QList<double> eqGains() const;
    double eqPreamp() const;
    void setEqPreamp(double dB);
    QString currentEQPresetID() const;
    QString presetMenuTitle() const;
    QStringList userEQPresetNames() const;
    bool soundCheckEnabled() const;
    void setSoundCheckEnabled(bool enabled);
    SpectrumModel* spectrum();

    QString outputDeviceName() const;
    QAbstractListModel* availableOutputDevices();
    QString selectedOutputDeviceName() const;
    QString signalPathDescription() const;

    AppLanguage languageSetting() const;
    void setLanguageSetting(AppLanguage setting);
    ResolvedLanguage resolvedLanguage() const;
    SpectrumTintMode themeAccentMode() const;
    void setThemeAccentMode(SpectrumTintMode mode);
    QColor customThemeAccent() const;
    void setCustomThemeAccent(const QColor& color);
    CornerStyle themeCornerStyle() const;
    void setThemeCornerStyle(CornerStyle style);
    BackgroundStyle themeBackgroundStyle() const;
    void setThemeBackgroundStyle(BackgroundStyle style);
    SpectrumTintMode spectrumTintMode() const;
    void setSpectrumTintMode(SpectrumTintMode mode);
    QColor customSpectrumColor() const;
    void setCustomSpectrumColor(const QColor& color);
    QColor spectrumTint() const;
    QColor ambientColor() const;
    double ambientBackgroundBoost() const;
    /// What the windows are drawn with.
    const AppTheme::Style& themeStyle() const;

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
    // Import and maintenance
    Q_INVOKABLE void chooseAndImportMusic(bool files, bool directories);
    Q_INVOKABLE void importDroppedURLs(const QList<QUrl>& urls);
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

  Q_SIGNALS:
    void selectedSidebarChanged();
    void modeChanged();
    void searchTextChanged();
    void isSearchFieldFocusedChanged();
    void searchFocusRequestChanged();
    void focusedArtistChanged();
    void selectedAlbumIDChanged();
    void showLovedOnlyChanged();
    void selectedPlaylistIDChanged();
    void selectedPlaylistNameChanged();
    void showFullPlayerChanged();
    void isMiniPlayerOpenChanged();
    void showNowPlayingPanelChanged();
    void showMaintenanceChanged();
    void isQuittingChanged();
    void isPlayingChanged();
    void loadedFileChanged();
    void volumeChanged();
    void progressChanged();
    void elapsedTimeChanged();
    void durationDisplayChanged();
    void isShuffleEnabledChanged();
    void repeatModeChanged();
    void showRemainingTimeChanged();
    void currentTrackChanged();
    void isCurrentTrackLovedChanged();
    void queuePositionTextChanged();
    void queueSourceTextChanged();
    void visibleTrackCountChanged();
    void trackCountChanged();
    void librarySummaryChanged();
    void focusedAlbumChanged();
    void selectedAlbumChanged();
    void currentArtworkAlbumChanged();
    void lastImportMessageChanged();
    void statusIsErrorChanged();
    void importProgressChanged();
    void maintenanceActionCountChanged();
    void cloudDownloadInFlightChanged();
    void duplicateGroupCountChanged();
    void eqEnabledChanged();
    void eqGainsChanged();
    void eqPreampChanged();
    void currentEQPresetIDChanged();
    void presetMenuTitleChanged();
    void userEQPresetsChanged();
    void soundCheckEnabledChanged();
    void outputDeviceNameChanged();
    void selectedOutputDeviceNameChanged();
    void signalPathDescriptionChanged();
    void languageChanged();
    void themeChanged();
    void spectrumTintChanged();
    void ambientColorChanged();

  private:
    void forwardBrowsing();
    void forwardViews();
    void forwardTransport();
    void forwardMaintenance();
    void forwardSettings();
    void forwardOutput();

    std::unique_ptr<LibraryConcerns> m_concerns;
};

} // namespace halvane
