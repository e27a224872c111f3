// SPDX-License-Identifier: MIT
#pragma once

#include "model/live_list.h"

#include <QObject>

namespace halvane {

class Preferences;

/// Which windows and panels the views show, and how. Menu commands and buttons share these flags.
/// Main thread.
class ViewState : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool showFullPlayer READ showFullPlayer WRITE setShowFullPlayer NOTIFY
                   showFullPlayerChanged)
    Q_PROPERTY(bool isMiniPlayerOpen READ isMiniPlayerOpen WRITE setMiniPlayerOpen NOTIFY
                   isMiniPlayerOpenChanged)
    Q_PROPERTY(bool showNowPlayingPanel READ showNowPlayingPanel WRITE setShowNowPlayingPanel NOTIFY
                   showNowPlayingPanelChanged)
    Q_PROPERTY(bool showMaintenance READ showMaintenance WRITE setShowMaintenance NOTIFY
                   showMaintenanceChanged)
    Q_PROPERTY(bool isQuitting READ isQuitting NOTIFY isQuittingChanged)
    Q_PROPERTY(bool isSearchFieldFocused READ isSearchFieldFocused WRITE setSearchFieldFocused
                   NOTIFY isSearchFieldFocusedChanged)
    Q_PROPERTY(int searchFocusRequest READ searchFocusRequest NOTIFY searchFocusRequestChanged)
    Q_PROPERTY(bool showRemainingTime READ showRemainingTime WRITE setShowRemainingTime NOTIFY
                   showRemainingTimeChanged)
    /// Of the albums, from 0 to greatestTileSize.
    Q_PROPERTY(int tileSize READ tileSize WRITE setTileSize NOTIFY tileSizeChanged)

    Q_PROPERTY(halvane::ArtistOrder artistOrder READ artistOrder WRITE setArtistOrder NOTIFY
                   artistOrderChanged)

  public:
    static constexpr int greatestTileSize = 3;

    /// The preferences must outlive it.
    explicit ViewState(Preferences& preferences, QObject* parent = nullptr);

    void restoreNowPlayingPanel();
    void restoreRemainingTime();
    void restoreTileSize();
    void restoreArtistOrder();

    [[nodiscard]] bool showFullPlayer() const { return m_showFullPlayer; }
    [[nodiscard]] bool isMiniPlayerOpen() const { return m_isMiniPlayerOpen; }
    [[nodiscard]] bool showNowPlayingPanel() const { return m_showNowPlayingPanel; }
    [[nodiscard]] bool showMaintenance() const { return m_showMaintenance; }
    [[nodiscard]] bool isQuitting() const { return m_isQuitting; }
    [[nodiscard]] bool isSearchFieldFocused() const { return m_isSearchFieldFocused; }
    [[nodiscard]] int searchFocusRequest() const { return m_searchFocusRequest; }
    [[nodiscard]] bool showRemainingTime() const { return m_showRemainingTime; }
    [[nodiscard]] int tileSize() const { return m_tileSize; }
    [[nodiscard]] ArtistOrder artistOrder() const { return m_artistOrder; }

    void setShowFullPlayer(bool show);
    void setMiniPlayerOpen(bool open);
    void setShowNowPlayingPanel(bool show); ///< stored
    void setShowMaintenance(bool show);
    void setQuitting(); ///< for good
    void setSearchFieldFocused(bool focused);
    /// Asks for the rule of a live list, beginning with this one.
    Q_INVOKABLE void editLiveList(const halvane::LiveList& list) { Q_EMIT liveListAsked(list); }
    /// The same for a new one of what a search finds.
    Q_INVOKABLE void newLiveList(const QString& search);
    Q_INVOKABLE void requestSearchFocus();           ///< adds 1 to searchFocusRequest
    void setShowRemainingTime(bool show);            ///< stored
    void setTileSize(int size);                      ///< clamped and stored
    void setArtistOrder(halvane::ArtistOrder order); ///< stored

  Q_SIGNALS:
    void showFullPlayerChanged();
    void isMiniPlayerOpenChanged();
    void showNowPlayingPanelChanged();
    void showMaintenanceChanged();
    void isQuittingChanged();
    void isSearchFieldFocusedChanged();
    void searchFocusRequestChanged();
    void showRemainingTimeChanged();
    void tileSizeChanged();
    void artistOrderChanged();
    /// The user wants to change this list, or to make it if it has no id.
    void liveListAsked(const halvane::LiveList& list);

  private:
    void set(bool& flag, bool value, void (ViewState::*changed)());

    Preferences& m_preferences;
    bool m_showFullPlayer = false;
    bool m_isMiniPlayerOpen = false;
    bool m_showNowPlayingPanel = true;
    bool m_showMaintenance = false;
    bool m_isQuitting = false;
    bool m_isSearchFieldFocused = false;
    int m_searchFocusRequest = 0;
    bool m_showRemainingTime = false;
    int m_tileSize = 1;
    ArtistOrder m_artistOrder = ArtistOrder::plain;
};

} // namespace halvane
