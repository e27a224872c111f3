// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/level_kernels.h"
#include "platform/sound/sound_output.h"

#include <vector>

namespace halvane {

/// The largest magnitude that a sound reaches, between its samples too (ITU-R BS.1770, annex 2). It
/// interpolates up to 192 kHz, and only where the samples nearby are large enough to matter. One
/// thread at a time.
class TruePeak {
  public:
    explicit TruePeak(const StreamFormat& format);

    /// How many frames have to lie in front of those that are given to `add`.
    [[nodiscard]] std::size_t memoryFrames() const { return m_memoryFrames; }

    /// Takes frames that follow those given before, the end of which lies in front of them.
    void add(const float* frames, std::size_t count);

    /// Full scale is 1.
    [[nodiscard]] double peak() const;

  private:
    using Filter = float[LevelKernels::taps];

    void addGroup(const float* group, float nearby);

    const std::size_t m_channels;
    const std::size_t m_groupsBack; ///< that an interpolated value can depend on
    const std::size_t m_memoryFrames;
    struct Phase {
        Filter filter;
    };
    std::vector<Phase> m_phases;
    float m_mostGain = 0; ///< from the largest sample nearby to what lies between
    float m_peak = 0;
    std::vector<float> m_largest; ///< of each group; kept for its memory
};

} // namespace halvane
