// SPDX-License-Identifier: MIT
#include "audio/graph/heard_timeline.h"

#include <algorithm>

namespace halvane {

void HeardTimeline::begin(std::uint32_t epoch) {
    m_epoch = epoch;
    m_last = 0;
    m_anchors.clear();
}

std::int64_t HeardTimeline::mediaHeard(SampleRing<StreamAnchor>& anchors,
                                       std::int64_t streamHeard) {
    StreamAnchor anchor;
    while (anchors.read(&anchor, 1) == 1) {
        if (anchor.epoch != m_epoch)
            continue;
        // An end of the sound that has been taken back.
        while (!m_anchors.empty() && m_anchors.back().streamFrame > anchor.streamFrame)
            m_anchors.pop_back();
        m_anchors.push_back(anchor);
    }
    while (m_anchors.size() > 1 && m_anchors[1].streamFrame <= streamHeard)
        m_anchors.pop_front();
    if (!m_anchors.empty() && m_anchors.front().streamFrame <= streamHeard) {
        const StreamAnchor& now = m_anchors.front();
        const auto run = now.running ? streamHeard - now.streamFrame : 0;
        m_last = std::max(m_last, now.mediaFrame + run);
    }
    return m_last;
}

} // namespace halvane
