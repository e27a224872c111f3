// SPDX-License-Identifier: MIT
#include "library/playback/progress_clock.h"

#include "metadata/track_metadata_loader.h"
#include "platform/thread_check.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace halvane {

ProgressClock::ProgressClock(const TransportEngine& engine, Clock& clock, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_clock(clock)
    , m_elapsedTime(TrackMetadataLoader::formatDuration(0)) {
}

void ProgressClock::start() {
    m_isRunning = true;
    updateBeat();
}

void ProgressClock::stop() {
    m_isRunning = false;
    updateBeat();
}

void ProgressClock::beginWatching() {
    if (++m_watchers > 1)
        return;
    tick();
    updateBeat();
}

void ProgressClock::endWatching() {
    Q_ASSERT(m_watchers > 0);
    if (--m_watchers == 0)
        updateBeat();
}

void ProgressClock::updateBeat() {
    m_beat.reset();
    if (m_isRunning && m_watchers > 0)
        m_beat = m_clock.every(250ms, [this] { tick(); });
}

void ProgressClock::tick() {
    assertOwnThread(*this);
    if (m_isScrubbing || !m_engine.hasFile())
        return;
    const double elapsed = m_engine.elapsedSeconds();
    const double total = m_engine.durationSeconds();
    m_elapsedSeconds = elapsed;
    setElapsedTime(TrackMetadataLoader::formatDuration(elapsed));
    if (total > 0)
        setProgress(elapsed / total);
}

void ProgressClock::show(double progress, double elapsedSeconds) {
    m_isScrubbing = false;
    setProgress(progress);
    m_elapsedSeconds = elapsedSeconds;
    setElapsedTime(TrackMetadataLoader::formatDuration(elapsedSeconds));
}

void ProgressClock::showEnd(const QString& duration) {
    m_isScrubbing = false;
    setProgress(1);
    setElapsedTime(duration);
}

void ProgressClock::scrub(double fraction, std::optional<double> durationSeconds) {
    m_isScrubbing = true;
    setProgress(fraction);
    if (durationSeconds)
        setElapsedTime(TrackMetadataLoader::formatDuration(m_progress * *durationSeconds));
}

void ProgressClock::setProgress(double progress) {
    progress = std::clamp(progress, 0.0, 1.0);
    if (m_progress == progress)
        return;
    m_progress = progress;
    Q_EMIT progressChanged();
}

void ProgressClock::setElapsedTime(const QString& text) {
    if (m_elapsedTime == text)
        return;
    m_elapsedTime = text;
    Q_EMIT elapsedTimeChanged();
}

} // namespace halvane
