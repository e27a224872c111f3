// SPDX-License-Identifier: MIT
// The file that follows the current one without a gap.
#include "library/playback/transport.h"
#include "library/sound/sound_check.h"
#include "platform/thread_check.h"

#include <cmath>

namespace halvane {

void Transport::replanSuccessor() {
    m_engine.invalidatePreschedule();
    attemptGaplessPreschedule();
}

void Transport::applySoundCheckForCurrentTrack() {
    if (!m_engine.hasFile())
        return;
    m_engine.setTrackGain(m_soundCheck.gainFor(m_queue.currentPath()));
    const auto next = successorPath();
    if (next && mayFollow(*next) && m_engine.setNextGain(*next, m_soundCheck.gainFor(*next)))
        return; // what has been decoded of it stays
    replanSuccessor();
}

std::optional<QString> Transport::successorPath() const {
    if (m_stopsAfterCurrent)
        return {};
    const auto next = gaplessSuccessor(plannedQueue(), m_mode);
    return next ? std::optional(m_queue.record(*next).path()) : std::nullopt;
}

void Transport::attemptGaplessPreschedule() {
    assertOwnThread(*this);
    if (!m_engine.hasFile())
        return;
    if (const auto path = successorPath(); path && mayFollow(*path))
        m_engine.prescheduleNextIfCompatible(*path, m_soundCheck.gainFor(*path));
}

// A larger step in the middle of the sound would be heard as a jump.
bool Transport::mayFollow(const QString& path) const {
    constexpr double largestStep = 2.0; // dB
    const double step = m_soundCheck.gainFor(path) - m_soundCheck.gainFor(m_queue.currentPath());
    return std::abs(step) <= largestStep;
}

void Transport::advanceUIForGaplessTrack(const QString& path) {
    // A file that was put in once more is another entry than the first of that file.
    auto row = gaplessSuccessor(plannedQueue(), m_mode);
    if (!row || m_queue.record(*row).path() != path)
        row = m_queue.rowOfPath(path);
    if (!row)
        return playNext(false);
    makeCurrent(*row, AskedBy::advance);
    Q_EMIT loadedFileChanged();
    Q_EMIT playStarted(path);
    m_progress.show(0, m_engine.elapsedSeconds());
    Q_EMIT nowPlayingChanged();
    Q_EMIT trackChanged(m_queue.item(*row));
    attemptGaplessPreschedule();
}

} // namespace halvane
