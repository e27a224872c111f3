// SPDX-License-Identifier: MIT
// The file that follows the current one without a gap.
#include "library/playback/transport.h"
#include "library/sound/sound_check.h"
#include "platform/thread_check.h"

#include <algorithm>
#include <cmath>

namespace halvane {

void Transport::replanSuccessor() {
    m_engine.invalidatePreschedule();
    attemptGaplessPreschedule();
}

void Transport::applySoundCheckForCurrentTrack() {
    if (!m_engine.hasFile())
        return;
    m_engine.setTrackGain(currentGain());
    const auto next = successorRow();
    if (next && mayFollow(*next) &&
        m_engine.setNextGain(m_queue.record(*next).path(), gainOf(*next)))
        return; // what has been decoded of it stays
    replanSuccessor();
}

std::optional<std::size_t> Transport::successorRow() const {
    return m_stopsAfterCurrent ? std::nullopt : gaplessSuccessor(plannedQueue(), m_mode);
}

std::optional<QString> Transport::successorPath() const {
    const auto next = successorRow();
    return next ? std::optional(m_queue.record(*next).path()) : std::nullopt;
}

void Transport::attemptGaplessPreschedule() {
    assertOwnThread(*this);
    if (!m_engine.hasFile())
        return;
    if (const auto next = successorRow(); next && mayFollow(*next))
        m_engine.prescheduleNextIfCompatible(m_queue.record(*next).path(), gainOf(*next));
}

// A larger step in the middle of the sound would be heard as a jump.
bool Transport::mayFollow(std::size_t row) const {
    constexpr double largestStep = 2.0; // dB
    return m_soundCheck.isByLoudness() || std::abs(gainOf(row) - currentGain()) <= largestStep;
}

double Transport::currentGain() const {
    const auto row = m_queue.currentRow();
    return row ? gainOf(*row) : 0;
}

double Transport::gainOf(std::size_t row) const {
    const QString path = m_queue.record(row).path();
    return m_soundCheck.gainFor(path,
                                m_soundCheck.isByLoudness() ? companyOf(row) : Company::others);
}

Company Transport::companyOf(std::size_t row) const {
    const auto beside = neighbours(plannedQueue(), m_mode, row);
    const bool isAmongAlbum = std::any_of(beside.cbegin(), beside.cend(), [&](std::size_t other) {
        return areOfOneAlbum(m_queue.record(row), m_queue.record(other));
    });
    return isAmongAlbum ? Company::album : Company::others;
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
