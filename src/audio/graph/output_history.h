// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/sound_output.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace halvane {

/// Keeps the last stretch of what an output was given. Where some of it is taken back and rendered
/// again, what was there before fades out under what is there now, so that no step is heard. Audio
/// thread, but for begin.
class OutputHistory {
  public:
    /// A new stream. Allocates; while nothing is rendered.
    void begin(const StreamFormat& format) {
        constexpr double keptSeconds = RenderSource::queueMilliseconds * 1e-3;
        m_channels = std::size_t(format.channels);
        m_keptFrames = std::size_t(keptSeconds * format.sampleRate) + 1;
        m_changeFrames = std::size_t(RenderSource::changeSeconds * format.sampleRate);
        m_past.assign(m_keptFrames * m_channels, 0);
        m_before.assign(m_changeFrames * m_channels, 0);
        m_at = 0;
        m_changed = m_changing = 0;
    }

    /// How many frames can be taken back, if as many were passed.
    [[nodiscard]] std::size_t keptFrames() const { return m_keptFrames; }

    /// Takes back frames: not more than were passed, nor than are kept.
    void goBack(std::size_t frames) noexcept {
        m_at -= frames;
        m_changing = std::min(frames, m_changeFrames);
        m_changed = 0;
        for (std::size_t done = 0; done < m_changing;) {
            const std::size_t at = (m_at + done) % m_keptFrames;
            const std::size_t count = std::min(m_changing - done, m_keptFrames - at);
            std::copy_n(m_past.data() + at * m_channels, count * m_channels,
                        m_before.data() + done * m_channels);
            done += count;
        }
    }

    /// Changes what was there before into these interleaved frames, and remembers them.
    void pass(float* interleaved, std::size_t frames) noexcept {
        for (std::size_t i = 0; i < frames && m_changed < m_changing; ++i)
            changeOver(interleaved + i * m_channels);
        while (frames > 0) {
            const std::size_t at = m_at % m_keptFrames;
            const std::size_t count = std::min(frames, m_keptFrames - at);
            std::copy_n(interleaved, count * m_channels, m_past.data() + at * m_channels);
            interleaved += count * m_channels;
            m_at += count;
            frames -= count;
        }
    }

  private:
    void changeOver(float* to) noexcept {
        const float* before = m_before.data() + m_changed * m_channels;
        const float progress = float(++m_changed) / float(m_changing + 1);
        for (std::size_t c = 0; c < m_channels; ++c)
            to[c] = before[c] + (to[c] - before[c]) * progress;
    }

    std::size_t m_channels = 0;
    std::size_t m_keptFrames = 0;
    std::size_t m_changeFrames = 0;
    std::vector<float> m_past;   ///< a ring
    std::vector<float> m_before; ///< what is being faded out
    std::uint64_t m_at = 0;      ///< frames passed
    std::size_t m_changing = 0;  ///< frames of m_before
    std::size_t m_changed = 0;   ///< of them, how many are done
};

} // namespace halvane
