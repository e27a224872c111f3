// SPDX-License-Identifier: MIT
#include "app/remote/remote.h"

#include "app/halvane_app.h"
#include "app/windows/window_registry.h"
#include "library/browsing/view_state.h"
#include "library/import/importer.h"
#include "library/import/restoration.h"
#include "library/library_view_model.h"
#include "library/playback/play_queue.h"
#include "library/playback/sleep_timer.h"
#include "library/playback/transport.h"
#include "library/user/track_user_data.h"

#include <QQuickWindow>

#include <utility>

namespace halvane {

using namespace Qt::StringLiterals;

Remote::Remote(HalvaneApp& app, std::function<bool()> canHide, QObject* parent)
    : QObject(parent)
    , m_app(app)
    , m_canHide(std::move(canHide)) {
    const auto* library = app.library();
    const auto filesCame = [this] {
        m_filesComing = false;
        goOn();
    };
    // Queued: the track that is asked for is to be current by then.
    connect(library->importing(), &Importer::playAsked, this, filesCame, Qt::QueuedConnection);
    connect(library->importing(), &Importer::playlistAsked, this, filesCame, Qt::QueuedConnection);
    connect(library->importing(), &Importer::idle, this, filesCame, Qt::QueuedConnection);
    connect(library->queue(), &QAbstractItemModel::rowsInserted, this, &Remote::goOn,
            Qt::QueuedConnection);
    connect(library->queue(), &QAbstractItemModel::modelReset, this, &Remote::goOn,
            Qt::QueuedConnection);
    connect(library->restoration(), &Restoration::finished, this, &Remote::goOn,
            Qt::QueuedConnection);
}

void Remote::run(const RemoteAction& action) {
    if (isAboutTracks(action) && isLibraryComing())
        m_waiting.push_back(action);
    else
        perform(action);
}

void Remote::filesComing() {
    m_filesComing = true;
    std::erase_if(m_waiting, isDoneByOpening);
}

bool Remote::isLibraryComing() const {
    const auto* library = m_app.library();
    return m_filesComing ||
           (library->queue()->rowCount() == 0 && library->restoration()->isRunning());
}

// What waited for a library that turns out to be empty lapses.
void Remote::goOn() {
    if (m_waiting.empty() || isLibraryComing())
        return;
    const auto waiting = std::exchange(m_waiting, {});
    if (m_app.library()->queue()->rowCount() == 0)
        return;
    for (const auto& action : waiting)
        perform(action);
}

void Remote::perform(const RemoteAction& action) {
    using Kind = RemoteAction::Kind;
    auto* library = m_app.library();
    auto* transport = library->transport();
    const auto isWanted = [&action](bool is) { return action.on.value_or(!is) != is; };
    switch (action.kind) {
    case Kind::playPause:
        return transport->togglePlayback();
    case Kind::play:
        return transport->isPlaying() ? void() : transport->togglePlayback();
    case Kind::pause:
        return transport->isPlaying() ? transport->togglePlayback() : void();
    case Kind::stop:
        return transport->stopPlayer(true);
    case Kind::next:
        return transport->playNext(true);
    case Kind::previous:
        return transport->playPrevious();
    case Kind::seek:
        return seek(action);
    case Kind::volume:
        return action.isRelative ? transport->stepVolume(action.amount)
                                 : transport->setVolume(action.amount);
    case Kind::mute:
        return isWanted(transport->isMuted()) ? transport->toggleMute() : void();
    case Kind::shuffle:
        return isWanted(transport->isShuffleEnabled()) ? transport->toggleShuffle() : void();
    case Kind::repeat:
        return action.repeat ? transport->chooseRepeatMode(*action.repeat)
                             : transport->advanceRepeatMode();
    case Kind::love:
        return love(action.on);
    case Kind::rate:
        return library->userData()->setRating(static_cast<int>(action.amount),
                                              library->queue()->currentPath());
    case Kind::stopAfterCurrent:
        return transport->setStopsAfterCurrent(action.on.value_or(!transport->stopsAfterCurrent()));
    case Kind::sleepTimer:
        return library->sleepTimer()->setMinutes(static_cast<int>(action.amount));
    case Kind::showHide:
        return showOrHide();
    case Kind::fullPlayer:
        return isWanted(library->views()->showFullPlayer()) ? m_app.toggleFullScreen() : void();
    }
}

// Beyond the end is the next track.
void Remote::seek(const RemoteAction& action) {
    auto* transport = m_app.library()->transport();
    const double duration = transport->durationSeconds();
    if (!(duration > 0))
        return;
    const double target = action.amount + (action.isRelative ? transport->elapsedSeconds() : 0.0);
    if (target > duration)
        transport->playNext(true);
    else
        transport->seek(target / duration);
}

void Remote::love(std::optional<bool> on) {
    auto* library = m_app.library();
    const auto path = library->queue()->currentPath();
    const bool isLoved = library->userData()->isLoved(path);
    if (on.value_or(!isLoved) != isLoved)
        library->userData()->toggleLoved(path);
}

// A window that could not come back by the tray's icon goes to where windows are minimised.
void Remote::showOrHide() {
    const bool isMini = m_app.library()->views()->isMiniPlayerOpen();
    auto* window = m_app.windows().visibleWindow(isMini ? u"mini"_s : u"main"_s);
    if (!window || !window->isActive() || window->windowState() == Qt::WindowMinimized)
        return m_app.raise();
    if (!isMini && m_canHide())
        m_app.closeWindow(u"main"_s);
    else
        window->showMinimized();
}

} // namespace halvane
