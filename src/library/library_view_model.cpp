// SPDX-License-Identifier: MIT
#include "library/library_view_model.h"

#include "library/library_concerns.h"

namespace halvane {

LibraryViewModel::LibraryViewModel(const Environment& environment, QObject* parent)
    : QObject(parent)
    , m_concerns(std::make_unique<LibraryConcerns>(environment)) {
    forwardBrowsing();
    forwardViews();
    forwardTransport();
    forwardMaintenance();
    forwardSettings();
    forwardOutput();
    m_concerns->start();
}

LibraryViewModel::~LibraryViewModel() = default;

const CoverStore& LibraryViewModel::covers() const {
    return m_concerns->covers;
}

// Windows and panels

void LibraryViewModel::forwardViews() {
    const ViewState* views = &m_concerns->views;
    using Self = LibraryViewModel;
    connect(views, &ViewState::showFullPlayerChanged, this, &Self::showFullPlayerChanged);
    connect(views, &ViewState::isMiniPlayerOpenChanged, this, &Self::isMiniPlayerOpenChanged);
    connect(views, &ViewState::showNowPlayingPanelChanged, this, &Self::showNowPlayingPanelChanged);
    connect(views, &ViewState::showMaintenanceChanged, this, &Self::showMaintenanceChanged);
    connect(views, &ViewState::isQuittingChanged, this, &Self::isQuittingChanged);
    connect(views, &ViewState::isSearchFieldFocusedChanged, this,
            &Self::isSearchFieldFocusedChanged);
    connect(views, &ViewState::searchFocusRequestChanged, this, &Self::searchFocusRequestChanged);
    connect(views, &ViewState::showRemainingTimeChanged, this, &Self::showRemainingTimeChanged);
    connect(views, &ViewState::showRemainingTimeChanged, this, &Self::durationDisplayChanged);
    const StatusLine* status = &m_concerns->status;
    connect(status, &StatusLine::textChanged, this, &Self::lastImportMessageChanged);
    connect(status, &StatusLine::isErrorChanged, this, &Self::statusIsErrorChanged);
}

bool LibraryViewModel::showFullPlayer() const {
    return m_concerns->views.showFullPlayer();
}
void LibraryViewModel::setShowFullPlayer(bool show) {
    m_concerns->views.setShowFullPlayer(show);
}
bool LibraryViewModel::isMiniPlayerOpen() const {
    return m_concerns->views.isMiniPlayerOpen();
}
void LibraryViewModel::setMiniPlayerOpen(bool open) {
    m_concerns->views.setMiniPlayerOpen(open);
}
bool LibraryViewModel::showNowPlayingPanel() const {
    return m_concerns->views.showNowPlayingPanel();
}
void LibraryViewModel::setShowNowPlayingPanel(bool show) {
    m_concerns->views.setShowNowPlayingPanel(show);
}
bool LibraryViewModel::showMaintenance() const {
    return m_concerns->views.showMaintenance();
}
void LibraryViewModel::setShowMaintenance(bool show) {
    m_concerns->views.setShowMaintenance(show);
}
bool LibraryViewModel::isQuitting() const {
    return m_concerns->views.isQuitting();
}
bool LibraryViewModel::isSearchFieldFocused() const {
    return m_concerns->views.isSearchFieldFocused();
}
void LibraryViewModel::setSearchFieldFocused(bool focused) {
    m_concerns->views.setSearchFieldFocused(focused);
}
int LibraryViewModel::searchFocusRequest() const {
    return m_concerns->views.searchFocusRequest();
}
void LibraryViewModel::requestSearchFocus() {
    m_concerns->views.requestSearchFocus();
}
bool LibraryViewModel::showRemainingTime() const {
    return m_concerns->views.showRemainingTime();
}
void LibraryViewModel::setShowRemainingTime(bool show) {
    m_concerns->views.setShowRemainingTime(show);
}

QString LibraryViewModel::lastImportMessage() const {
    return m_concerns->status.text();
}
bool LibraryViewModel::statusIsError() const {
    return m_concerns->status.isError();
}

} // namespace halvane
