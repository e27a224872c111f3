// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/spectrum_model.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

namespace halvane {

/// Turns blocks of sound into 48 band heights on a logarithmic frequency axis, with peak markers
/// that fall slowly. A reference level follows the music, so that quiet and loud pieces both fill
/// the display: it rises fast and sinks slowly, and the display spans the 44 dB below it. One
/// thread at a time.
class SpectrumAnalyzer {
  public:
    static constexpr std::size_t blockFrames = 2048;
    static constexpr double interval = 1.0 / 30; ///< least time between two results, seconds

    SpectrumAnalyzer();
    ~SpectrumAnalyzer();

    /// Analyses the newest samples of one channel, at most blockFrames of them; fewer are preceded
    /// by silence. Nothing, and no state changed, when there are none or the last result is less
    /// than `interval` old. `now` in seconds, on any clock that doesn't run backwards.
    std::optional<SpectrumOutput> processIfDue(std::span<const float> samples, double sampleRate,
                                               double now);

  private:
    class Transform;
    struct BinRange {
        int first = 0;
        int last = 0; ///< inclusive
    };
    void layOut(double sampleRate);
    void updateBands();

    std::unique_ptr<Transform> m_transform; ///< made for the first block
    std::array<BinRange, spectrumBandCount> m_bins{};
    double m_sampleRate = 0; ///< that m_bins are for
    SpectrumOutput m_output; ///< the last result, whose heights decay into the next
    float m_referenceDb = -30;
    std::optional<double> m_lastTime;
};

} // namespace halvane
