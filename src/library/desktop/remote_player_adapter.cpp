// SPDX-License-Identifier: MIT
#include "library/desktop/remote_player_adapter.h"

#include "audio/graph/playback_engine.h"

namespace halvane {

const QueueItem* RemotePlayerAdapter::currentItem() const {
    m_item = m_queue.currentItem();
    return m_item ? &*m_item : nullptr;
}

bool RemotePlayerAdapter::hasLoadedFile() const {
    return m_engine.hasFile();
}

bool RemotePlayerAdapter::isPlaying() const {
    return m_transport.isPlaying();
}

double RemotePlayerAdapter::elapsedSeconds() const {
    return m_engine.elapsedSeconds();
}

double RemotePlayerAdapter::fileSeconds() const {
    return m_engine.durationSeconds();
}

bool RemotePlayerAdapter::canGoNext() const {
    return m_transport.canGoNext();
}

bool RemotePlayerAdapter::canGoPrevious() const {
    return m_transport.canGoPrevious();
}

bool RemotePlayerAdapter::canPlay() const {
    return m_transport.canPlay();
}

PlaybackRepeatMode RemotePlayerAdapter::repeatMode() const {
    return m_transport.repeatMode();
}

bool RemotePlayerAdapter::isShuffleEnabled() const {
    return m_transport.isShuffleEnabled();
}

double RemotePlayerAdapter::volume() const {
    return m_transport.volume();
}

void RemotePlayerAdapter::togglePlayback() {
    m_transport.togglePlayback();
}

void RemotePlayerAdapter::playNext(bool manual) {
    m_transport.playNext(manual);
}

void RemotePlayerAdapter::playPrevious() {
    m_transport.playPrevious();
}

void RemotePlayerAdapter::seek(double fraction) {
    m_transport.seek(fraction);
}

void RemotePlayerAdapter::stopPlayer(bool keepSelection) {
    m_transport.stopPlayer(keepSelection);
}

void RemotePlayerAdapter::setRepeatMode(PlaybackRepeatMode mode) {
    m_transport.chooseRepeatMode(mode);
}

void RemotePlayerAdapter::setShuffleEnabled(bool enabled) {
    if (m_transport.isShuffleEnabled() != enabled)
        m_transport.toggleShuffle();
}

void RemotePlayerAdapter::setVolume(double volume) {
    m_transport.setVolume(volume);
}

void RemotePlayerAdapter::importFile(const QString& path) {
    if (onImportFile)
        onImportFile(path);
}

} // namespace halvane
