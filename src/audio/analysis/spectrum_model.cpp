// SPDX-License-Identifier: MIT
#include "audio/analysis/spectrum_model.h"

namespace halvane {

void SpectrumModel::beginWatching() {
    if (++m_watchers == 1)
        Q_EMIT watchedChanged();
}

void SpectrumModel::endWatching() {
    Q_ASSERT(m_watchers > 0);
    if (--m_watchers == 0)
        Q_EMIT watchedChanged();
}

void SpectrumModel::publish(const SpectrumOutput& output) {
    const bool didClip = m_output.clips;
    m_output = output;
    Q_EMIT changed();
    if (m_output.clips != didClip)
        Q_EMIT clipsChanged();
}

} // namespace halvane
