// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>

namespace halvane {

/// Multiplies by a gain that moves to a new value over about 10 ms. At 1 it leaves every sample as
/// it is, bit for bit. Audio thread.
class GainStage {
  public:
    /// Starts afresh at this gain (linear).
    void reset(int sampleRate, int channels, float gain) noexcept {
        m_channels = std::size_t(channels);
        m_rampFrames = std::max<std::size_t>(std::size_t(sampleRate) / 100, 1);
        jumpTo(gain);
    }

    /// Has a gain (linear) from the next frame on.
    void jumpTo(float gain) noexcept {
        m_rampLeft = 0;
        m_gain = m_target = gain;
    }

    /// Moves to a gain (linear); the one it is moving to already changes nothing.
    void setGain(float gain) noexcept {
        if (gain == m_target)
            return;
        m_target = gain;
        m_rampLeft = m_rampFrames;
        m_step = (m_target - m_gain) / float(m_rampFrames);
    }

    /// What it has, or is moving to.
    [[nodiscard]] float target() const noexcept { return m_target; }

    /// Scales interleaved frames in place.
    void process(float* interleaved, std::size_t frames) noexcept {
        while (frames > 0 && m_rampLeft > 0) {
            m_gain = --m_rampLeft > 0 ? m_gain + m_step : m_target;
            for (std::size_t c = 0; c < m_channels; ++c)
                *interleaved++ *= m_gain;
            --frames;
        }
        if (m_gain == 1)
            return;
        const std::size_t samples = frames * m_channels;
        for (std::size_t i = 0; i < samples; ++i)
            interleaved[i] *= m_gain;
    }

  private:
    std::size_t m_channels = 2;
    std::size_t m_rampFrames = 441;
    std::size_t m_rampLeft = 0;
    float m_gain = 1;
    float m_target = 1;
    float m_step = 0;
};

} // namespace halvane
