// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/level_kernels.h"
#include "platform/sound/sound_output.h"

#include <vector>

namespace halvane {

/// The filter for a rate in Hz.
KWeightingFilter kWeightingFilter(int sampleRate);

/// How much each channel counts (ITU-R BS.1770): those at the side and behind for more, the one for
/// low effects for nothing.
std::vector<double> channelWeights(const StreamFormat& format);

/// Weighs a sound as the ear does, and gives its energy for each tenth of a second. One thread at a
/// time.
class KWeighting {
  public:
    explicit KWeighting(const StreamFormat& format);

    /// Frames in a tenth of a second.
    [[nodiscard]] std::size_t hopFrames() const { return m_hopFrames; }
    /// How many frames have to lie in front of those that are given to `add`. The filter forgets
    /// what is older than that.
    [[nodiscard]] std::size_t memoryFrames() const { return m_memoryFrames; }

    /// Appends the mean squares of so many hops, all channels together. They follow what was given
    /// before, the end of which lies in front of them.
    void add(const float* frames, std::size_t hops, std::vector<double>& energies);

  private:
    void addChannels(const float* frames, std::size_t first, std::size_t hops, double* energies);

    const KWeightingFilter m_filter;
    const std::vector<double> m_weights;
    const std::size_t m_hopFrames;
    const std::size_t m_memoryFrames;
    std::vector<LevelKernels::Memory> m_memories; ///< for each two channels, at the first place
};

} // namespace halvane
