// SPDX-License-Identifier: MIT
#include "library/playback/disk_watch.h"

namespace halvane {

DiskWatch::DiskWatch(const TransportEngine& engine, Clock& clock, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_clock(clock) {
}

void DiskWatch::begin() {
    m_looks = 0;
    m_beat = m_clock.every(interval, [this] { look(); });
}

void DiskWatch::end() {
    m_beat.reset();
}

void DiskWatch::look() {
    m_looks = m_engine.isWaitingForDisk() ? m_looks + 1 : 0;
    m_looks > 0 ? Q_EMIT waits(m_looks) : Q_EMIT hears();
}

} // namespace halvane
