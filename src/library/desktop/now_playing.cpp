// SPDX-License-Identifier: MIT
#include "library/desktop/now_playing.h"

#include "library/desktop/artwork_export.h"
#include "library/playback/play_queue.h"
#include "library/playback/transport.h"
#include "platform/session/notifications.h"
#include "platform/thread_check.h"

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

MediaLoop loopOf(PlaybackRepeatMode mode) {
    switch (mode) {
    case PlaybackRepeatMode::off:
        return MediaLoop::none;
    case PlaybackRepeatMode::all:
        return MediaLoop::playlist;
    case PlaybackRepeatMode::one:
        return MediaLoop::track;
    }
    return MediaLoop::none;
}

PlaybackRepeatMode repeatModeOf(MediaLoop loop) {
    switch (loop) {
    case MediaLoop::none:
        return PlaybackRepeatMode::off;
    case MediaLoop::playlist:
        return PlaybackRepeatMode::all;
    case MediaLoop::track:
        return PlaybackRepeatMode::one;
    }
    return PlaybackRepeatMode::off;
}

std::optional<QString> nonEmpty(const QString& path) {
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

} // namespace

NowPlaying::NowPlaying(MediaControls& controls, Notifications& notifications, Transport& transport,
                       const PlayQueue& queue, std::function<bool()> isApplicationActive,
                       const QString& artworkFolder, QObject* parent)
    : QObject(parent)
    , m_controls(controls)
    , m_notifications(notifications)
    , m_transport(transport)
    , m_queue(queue)
    , m_isApplicationActive(std::move(isApplicationActive))
    , m_artworkFolder(artworkFolder) {
}

void NowPlaying::setupRemoteCommands() {
    assertOwnThread(*this);
    auto& player = m_transport;
    const auto always = [](auto action) {
        return [action] {
            action();
            return CommandResult::success;
        };
    };
    m_controls.setHandlers({
        .play = always([&player] {
            if (!player.isPlaying())
                player.togglePlayback();
        }),
        .pause = always([&player] {
            if (player.isPlaying())
                player.togglePlayback();
        }),
        .togglePlayPause = always([&player] { player.togglePlayback(); }),
        .stop = always([&player] { player.stopPlayer(true); }),
        .nextTrack = always([&player] { player.playNext(true); }),
        .previousTrack = always([&player] { player.playPrevious(); }),
        .changePlaybackPosition = [this](double s) { return changePlaybackPosition(s); },
        .openFile = [this](const QString& path) { Q_EMIT fileAsked(path); },
        .setLoop = [&player](MediaLoop loop) { player.chooseRepeatMode(repeatModeOf(loop)); },
        .setShuffle =
            [&player](bool on) {
                if (player.isShuffleEnabled() != on)
                    player.toggleShuffle();
            },
        .setVolume = [&player](double v) { player.setVolume(std::clamp(v, 0.0, 1.0)); },
        .elapsedSeconds = [&player] { return player.elapsedSeconds(); },
    });
    updateModes();
}

CommandResult NowPlaying::changePlaybackPosition(double seconds) {
    const double duration = m_transport.durationSeconds();
    if (!(duration > 0))
        return CommandResult::commandFailed;
    m_transport.seek(std::clamp(seconds / duration, 0.0, 1.0));
    return CommandResult::success;
}

void NowPlaying::updateNowPlayingInfo() {
    assertOwnThread(*this);
    const auto item = m_queue.currentItem();
    if (!item || !m_transport.hasLoadedFile()) {
        m_controls.publish({}, MediaPlaybackState::stopped);
    } else {
        const bool isPlaying = m_transport.isPlaying();
        m_controls.publish(NowPlayingInfo{.entry = item->id,
                                          .title = item->title,
                                          .artist = item->artist,
                                          .albumTitle = item->album,
                                          .albumArtist = item->albumTags.albumArtist,
                                          .genre = item->genre,
                                          .discNumber = item->albumTags.disc,
                                          .trackNumber = item->albumTags.track,
                                          .elapsedSeconds = m_transport.elapsedSeconds(),
                                          .playbackRate = isPlaying ? 1.0 : 0.0,
                                          .durationSeconds = item->durationSeconds,
                                          .artworkPath = nowPlayingArtwork(*item),
                                          .filePath = nonEmpty(item->path())},
                           isPlaying ? MediaPlaybackState::playing : MediaPlaybackState::paused);
    }
    updateModes();
}

void NowPlaying::positionJumped() {
    updateNowPlayingInfo();
    if (m_transport.hasLoadedFile())
        m_controls.seeked(m_transport.elapsedSeconds());
}

void NowPlaying::updateModes() {
    m_controls.publishModes(loopOf(m_transport.repeatMode()), m_transport.isShuffleEnabled(),
                            m_transport.volume());
    const bool loaded = m_transport.hasLoadedFile();
    m_controls.publishCapabilities({.canGoNext = m_transport.canGoNext(),
                                    .canGoPrevious = m_transport.canGoPrevious(),
                                    .canPlay = loaded || m_transport.canPlay(),
                                    .canPause = loaded,
                                    .canSeek = loaded && m_transport.durationSeconds() > 0});
}

std::optional<QString> NowPlaying::nowPlayingArtwork(const QueueItem& item) {
    if (m_nowPlayingArtworkCache && m_nowPlayingArtworkCache->path == item.path())
        return m_nowPlayingArtworkCache->file;
    resolveArtwork(item);
    return {};
}

void NowPlaying::resolveArtwork(const QueueItem& item) {
    const auto path = item.path();
    if (m_resolving == path || (!item.coverImageData && !item.coverURL))
        return;
    m_resolving = path;
    m_worker.leaveBehind(); // the picture before this one may lie on a disk that hangs
    m_worker.run([item, folder = m_artworkFolder] { return exportedArtwork(item, folder); },
                 [this, path](const std::optional<QString>& file) { resolved(path, file); });
}

void NowPlaying::artworkChanged() {
    m_nowPlayingArtworkCache.reset();
    m_resolving.clear();
    updateNowPlayingInfo();
}

void NowPlaying::resolved(const QString& path, const std::optional<QString>& file) {
    m_resolving.clear();
    m_nowPlayingArtworkCache = CachedArtwork{path, file};
    if (const auto waiting = std::exchange(m_toNotify, {}); waiting && waiting->path() == path)
        post(*waiting, file);
    if (m_queue.currentPath() == path)
        updateNowPlayingInfo();
}

void NowPlaying::notifyTrackChange(const QueueItem& item) {
    assertOwnThread(*this);
    // A file that starts the program sounds before its window is in front.
    if (std::exchange(m_isComingUp, false) || m_isApplicationActive())
        return;
    m_toNotify.reset();
    const auto artwork = nowPlayingArtwork(item);
    if (m_resolving == item.path() && !m_resolving.isEmpty())
        m_toNotify = item;
    else
        post(item, artwork);
}

void NowPlaying::post(const QueueItem& item, const std::optional<QString>& image) {
    m_notifications.post({.identifier = u"nowPlaying"_s,
                          .title = item.title,
                          .body = item.artist + u" - "_s + item.album,
                          .imagePath = image});
}

} // namespace halvane
