// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/k_weighting.h"
#include "audio/analysis/programme_loudness.h"
#include "audio/analysis/true_peak.h"

#include <span>

namespace halvane {

/// Measures the loudness and the true peak of a sound that is read straight into its memory. One
/// thread at a time.
class ProgrammeMeter {
  public:
    explicit ProgrammeMeter(const StreamFormat& format);

    /// Where the next interleaved samples belong: at least one frame, and little enough to be still
    /// in the nearest cache when they are measured. It ends with a whole frame.
    [[nodiscard]] std::span<float> room();
    /// So many frames were put there, and are measured.
    void add(std::size_t frames);

    /// Of all that was added.
    [[nodiscard]] ProgrammeLoudness result();

  private:
    void weigh(std::size_t hops);

    KWeighting m_weighting;
    TruePeak m_peak;
    const std::size_t m_channels;
    const std::size_t m_front;    ///< frames kept in front of those that are to be weighed
    std::vector<float> m_samples; ///< what is kept in front, then what has come since
    std::size_t m_waiting = 0;    ///< frames to be weighed
    std::vector<double> m_energies;
};

} // namespace halvane
