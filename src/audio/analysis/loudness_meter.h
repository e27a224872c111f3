// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/loudness_analyzer.h"

#include <cstdint>
#include <optional>
#include <span>

namespace halvane {

/// Root mean square and peak over all samples that it is given, whatever their channels. One thread
/// at a time.
class LoudnessMeter {
  public:
    void add(std::span<const float> samples) noexcept;
    /// None without samples, or when one of them was not a number.
    [[nodiscard]] std::optional<LoudnessAnalyzer::Measurement> result() const;

  private:
    double m_sumOfSquares = 0;
    std::uint64_t m_count = 0;
    float m_peak = 0;
};

} // namespace halvane
