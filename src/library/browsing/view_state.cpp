// SPDX-License-Identifier: MIT
#include "library/browsing/view_state.h"

#include "library/user/settings_keys.h"
#include "model/raw_value.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace halvane {

ViewState::ViewState(Preferences& preferences, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences) {
}

void ViewState::restoreNowPlayingPanel() {
    if (const auto stored = m_preferences.boolean(SettingsKey::showNowPlayingPanel))
        setShowNowPlayingPanel(*stored);
}

void ViewState::restoreRemainingTime() {
    if (const auto stored = m_preferences.boolean(SettingsKey::showRemainingTime))
        setShowRemainingTime(*stored);
}

void ViewState::restoreTileSize() {
    if (const auto stored = m_preferences.number(SettingsKey::tileSize))
        setTileSize(std::isfinite(*stored)
                        ? qRound(std::clamp(*stored, 0.0, double(greatestTileSize)))
                        : m_tileSize);
}

void ViewState::restoreArtistOrder() {
    const auto stored = m_preferences.string(SettingsKey::artistOrder);
    if (const auto order = stored ? fromRawValue<ArtistOrder>(*stored) : std::nullopt)
        setArtistOrder(*order);
}

void ViewState::set(bool& flag, bool value, void (ViewState::*changed)()) {
    assertOwnThread(*this);
    if (flag == value)
        return;
    flag = value;
    Q_EMIT(this->*changed)();
}

void ViewState::setShowFullPlayer(bool show) {
    set(m_showFullPlayer, show, &ViewState::showFullPlayerChanged);
}

void ViewState::setMiniPlayerOpen(bool open) {
    set(m_isMiniPlayerOpen, open, &ViewState::isMiniPlayerOpenChanged);
}

void ViewState::setShowNowPlayingPanel(bool show) {
    set(m_showNowPlayingPanel, show, &ViewState::showNowPlayingPanelChanged);
    m_preferences.setBoolean(SettingsKey::showNowPlayingPanel, show);
}

void ViewState::setShowMaintenance(bool show) {
    set(m_showMaintenance, show, &ViewState::showMaintenanceChanged);
}

void ViewState::setQuitting() {
    set(m_isQuitting, true, &ViewState::isQuittingChanged);
}

void ViewState::setSearchFieldFocused(bool focused) {
    set(m_isSearchFieldFocused, focused, &ViewState::isSearchFieldFocusedChanged);
}

void ViewState::newLiveList(const QString& search) {
    LiveList list;
    list.search = search;
    editLiveList(list);
}

void ViewState::requestSearchFocus() {
    ++m_searchFocusRequest;
    Q_EMIT searchFocusRequestChanged();
}

void ViewState::setShowRemainingTime(bool show) {
    set(m_showRemainingTime, show, &ViewState::showRemainingTimeChanged);
    m_preferences.setBoolean(SettingsKey::showRemainingTime, show);
}

void ViewState::setTileSize(int size) {
    assertOwnThread(*this);
    size = std::clamp(size, 0, greatestTileSize);
    if (std::exchange(m_tileSize, size) == size)
        return;
    m_preferences.setNumber(SettingsKey::tileSize, size);
    Q_EMIT tileSizeChanged();
}

void ViewState::setArtistOrder(ArtistOrder order) {
    assertOwnThread(*this);
    if (std::exchange(m_artistOrder, order) == order)
        return;
    m_preferences.setString(SettingsKey::artistOrder, rawValue(order));
    Q_EMIT artistOrderChanged();
}

} // namespace halvane
