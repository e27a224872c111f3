// SPDX-License-Identifier: MIT
// The transport and the queue, as the views see them.
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "library/playback/transport_texts.h"

namespace halvane {

void LibraryViewModel::forwardTransport() {
    using Self = LibraryViewModel;
    const Transport* transport = &m_concerns->transport;
    connect(transport, &Transport::isPlayingChanged, this, &Self::isPlayingChanged);
    connect(transport, &Transport::loadedFileChanged, this, &Self::loadedFileChanged);
    connect(transport, &Transport::volumeChanged, this, &Self::volumeChanged);
    connect(transport, &Transport::isShuffleEnabledChanged, this, &Self::isShuffleEnabledChanged);
    connect(transport, &Transport::repeatModeChanged, this, &Self::repeatModeChanged);

    const ProgressClock* progress = &m_concerns->progress;
    connect(progress, &ProgressClock::progressChanged, this, &Self::progressChanged);
    connect(progress, &ProgressClock::elapsedTimeChanged, this, &Self::elapsedTimeChanged);
    connect(progress, &ProgressClock::elapsedTimeChanged, this, [this] {
        if (showRemainingTime())
            Q_EMIT durationDisplayChanged();
    });

    const PlayQueue* queue = &m_concerns->queue;
    for (const auto changed : {&PlayQueue::currentChanged, &PlayQueue::currentRecordChanged})
        connect(queue, changed, this, &Self::currentTrackChanged);
    connect(queue, &PlayQueue::currentChanged, this, &Self::isCurrentTrackLovedChanged);
    connect(queue, &PlayQueue::currentChanged, this, &Self::currentArtworkAlbumChanged);
    connect(queue, &PlayQueue::sourceLabelChanged, this, &Self::queueSourceTextChanged);
    for (const auto changed : {&PlayQueue::currentChanged, &PlayQueue::currentRecordChanged,
                               &PlayQueue::entriesChanged}) {
        connect(queue, changed, this, &Self::durationDisplayChanged);
        connect(queue, changed, this, &Self::queuePositionTextChanged);
    }
}

bool LibraryViewModel::isPlaying() const {
    return m_concerns->transport.isPlaying();
}
bool LibraryViewModel::hasLoadedFile() const {
    return m_concerns->transport.hasFile();
}
double LibraryViewModel::volume() const {
    return m_concerns->transport.volume();
}
void LibraryViewModel::setVolume(double volume) {
    m_concerns->transport.setVolume(volume);
}
double LibraryViewModel::progress() const {
    return m_concerns->progress.progress();
}
QString LibraryViewModel::elapsedTime() const {
    return m_concerns->progress.elapsedTime();
}

QString LibraryViewModel::durationDisplay() const {
    const PlayQueue& queue = m_concerns->queue;
    if (queue.isEmpty())
        return noDurationDisplay();
    const Track& track = queue.record(queue.currentRow().value_or(0));
    return halvane::durationDisplay(track.duration, track.durationSeconds, showRemainingTime(),
                                    m_concerns->progress.elapsedSeconds());
}

bool LibraryViewModel::isShuffleEnabled() const {
    return m_concerns->transport.isShuffleEnabled();
}
PlaybackRepeatMode LibraryViewModel::repeatMode() const {
    return m_concerns->transport.repeatMode();
}
bool LibraryViewModel::hasCurrentTrack() const {
    return m_concerns->queue.currentRow().has_value();
}

QueueItem LibraryViewModel::currentTrack() const {
    if (auto item = m_concerns->queue.currentItem())
        return *std::move(item);
    QueueItem none;
    none.id = QUuid();
    return none;
}

bool LibraryViewModel::isCurrentTrackLoved() const {
    return m_concerns->userData.isLoved(m_concerns->queue.currentPath());
}
QString LibraryViewModel::queuePositionText() const {
    return halvane::queuePositionText(m_concerns->queue.currentRow(), m_concerns->queue.size());
}
QString LibraryViewModel::queueSourceText() const {
    return halvane::queueSourceText(m_concerns->queue.sourceLabel(), resolvedLanguage());
}
QAbstractListModel* LibraryViewModel::playlist() {
    return &m_concerns->queue;
}

void LibraryViewModel::togglePlayback() {
    m_concerns->transport.togglePlayback();
}
void LibraryViewModel::playNext(bool manual) {
    m_concerns->transport.playNext(manual);
}
void LibraryViewModel::playPrevious() {
    m_concerns->transport.playPrevious();
}
void LibraryViewModel::playTrack(const QUuid& id) {
    m_concerns->collections.playTrack(id);
}
void LibraryViewModel::playAlbum(const QString& id) {
    m_concerns->collections.playAlbum(id);
}
void LibraryViewModel::playArtist(const QString& name) {
    m_concerns->collections.playArtist(name);
}
void LibraryViewModel::playPlaylist(const QUuid& id) {
    m_concerns->collections.playPlaylist(id);
}
void LibraryViewModel::playItem(const QUuid& id, bool userInitiated) {
    m_concerns->transport.playItem(id, userInitiated);
}
void LibraryViewModel::moveQueueItem(const QUuid& id, const QUuid& toPositionOf) {
    m_concerns->queue.move(id, toPositionOf);
}
void LibraryViewModel::finishQueueMove() {
    m_concerns->transport.replanSuccessor();
}
void LibraryViewModel::scrub(double fraction) {
    m_concerns->transport.scrub(fraction);
}
void LibraryViewModel::seek(double fraction) {
    m_concerns->transport.seek(fraction);
}
void LibraryViewModel::advanceRepeatMode() {
    m_concerns->transport.advanceRepeatMode();
}
void LibraryViewModel::toggleShuffle() {
    m_concerns->transport.toggleShuffle();
}
void LibraryViewModel::stepVolume(double delta) {
    m_concerns->transport.stepVolume(delta);
}
bool LibraryViewModel::isTrackPlaying(const QString& path) const {
    return m_concerns->transport.isTrackPlaying(path);
}

} // namespace halvane
