// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/stream_pipe.h"

#include <cstdint>
#include <deque>

namespace halvane {

/// Tells how much of the sound has been heard from how much of the stream has been heard: the two
/// differ by the silence that was rendered where there was no sound to render. Main thread.
class HeardTimeline {
  public:
    /// Nothing of this epoch has been heard yet.
    void begin(std::uint32_t epoch);
    /// Frames of the epoch's sound heard, when so many frames of the stream have been. Takes new
    /// anchors from the ring. Never falls.
    std::int64_t mediaHeard(SampleRing<StreamAnchor>& anchors, std::int64_t streamHeard);
    /// The last answer.
    [[nodiscard]] std::int64_t last() const { return m_last; }

  private:
    std::uint32_t m_epoch = 0;
    std::int64_t m_last = 0;
    std::deque<StreamAnchor> m_anchors; ///< the epoch's, from the one in force on
};

} // namespace halvane
