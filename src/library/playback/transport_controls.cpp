// SPDX-License-Identifier: MIT
// Volume, modes and the place within the current entry
#include "library/playback/transport.h"
#include "library/user/language_setting.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <algorithm>

namespace halvane {

void Transport::setVolume(double volume) {
    assertOwnThread(*this);
    const double clamped = volume > 0 ? std::min(volume, 1.0) : 0.0;
    const bool changed = m_volume != clamped;
    m_volume = clamped;
    m_engine.setVolume(clamped);
    if (changed)
        Q_EMIT volumeChanged();
}

void Transport::setShuffleEnabled(bool enabled) {
    if (m_mode.shuffle == enabled)
        return;
    m_mode.shuffle = enabled;
    Q_EMIT isShuffleEnabledChanged();
}

void Transport::setRepeatMode(PlaybackRepeatMode mode) {
    if (m_mode.repeat == mode)
        return;
    m_mode.repeat = mode;
    Q_EMIT repeatModeChanged();
}

void Transport::scrub(double fraction) {
    const auto row = m_queue.currentRow();
    m_progress.scrub(fraction, row ? m_queue.record(*row).durationSeconds : std::nullopt);
}

void Transport::seek(double fraction) {
    assertOwnThread(*this);
    fraction = fraction > 0 ? std::min(fraction, 1.0) : 0.0;
    const double length = durationSeconds();
    if (!m_opening && !(length > 0)) {
        m_progress.show(fraction, m_progress.elapsedSeconds());
        return;
    }
    const double target = fraction * length;
    if (m_opening)
        m_opening->fraction = fraction;
    else if (const auto scheduled = m_engine.scheduleSegment(target, m_engine.isPlaying());
             !scheduled)
        return handlePlaybackFailure(scheduled.failure().text);
    m_progress.show(fraction, target);
    Q_EMIT nowPlayingChanged();
    Q_EMIT positionJumped(target);
    attemptGaplessPreschedule();
}

void Transport::advanceRepeatMode() {
    switch (m_mode.repeat) {
    case PlaybackRepeatMode::off:
        return chooseRepeatMode(PlaybackRepeatMode::all);
    case PlaybackRepeatMode::all:
        return chooseRepeatMode(PlaybackRepeatMode::one);
    case PlaybackRepeatMode::one:
        return chooseRepeatMode(PlaybackRepeatMode::off);
    }
}

void Transport::chooseRepeatMode(PlaybackRepeatMode mode) {
    assertOwnThread(*this);
    if (m_mode.repeat == mode)
        return;
    setRepeatMode(mode);
    replanSuccessor();
}

void Transport::toggleShuffle() {
    assertOwnThread(*this);
    setShuffleEnabled(!m_mode.shuffle);
    m_shufflePlayedIDs.clear();
    replanSuccessor();
}

void Transport::stepVolume(double delta) {
    setVolume(m_volume + delta);
}

void Transport::toggleMute() {
    if (isMuted())
        return setVolume(m_volumeBeforeMute);
    m_volumeBeforeMute = m_volume;
    setVolume(0);
}

void Transport::setStopsAfterCurrent(bool stops) {
    assertOwnThread(*this);
    if (std::exchange(m_stopsAfterCurrent, stops) == stops)
        return;
    replanSuccessor();
    m_status.show(L10n::stopsAfterCurrent(stops, m_language.resolvedLanguage()), false);
    Q_EMIT stopsAfterCurrentChanged();
}

} // namespace halvane
