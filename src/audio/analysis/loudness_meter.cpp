// SPDX-License-Identifier: MIT
#include "audio/analysis/loudness_meter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace halvane {
namespace {

// Compilers do not reorder sums of floats by themselves, so the lanes are written out: four
// vectors, enough to hide the latency of one addition behind the others.
using Vector [[gnu::vector_size(16)]] = float;
constexpr std::size_t vectorLanes = sizeof(Vector) / sizeof(float);
constexpr std::size_t vectors = 4;
constexpr std::size_t lanes = vectors * vectorLanes;
/// Sums run in single precision only over short stretches.
constexpr std::size_t stretch = 4096;

struct Sums {
    double squares = 0;
    float peakSquare = 0;
};

Sums measureStretch(const float* samples, std::size_t count) {
    std::array<Vector, vectors> sums{};
    std::array<Vector, vectors> peaks{};
    const std::size_t even = count - count % lanes;
    for (std::size_t i = 0; i < even; i += lanes)
        for (std::size_t k = 0; k < vectors; ++k) {
            Vector square;
            std::memcpy(&square, samples + i + k * vectorLanes, sizeof square);
            square *= square;
            sums[k] += square;
            peaks[k] = square > peaks[k] ? square : peaks[k];
        }
    Sums result;
    const auto add = [&](float square, float peak) {
        result.squares += double(square);
        result.peakSquare = std::max(result.peakSquare, peak);
    };
    for (std::size_t k = 0; k < vectors; ++k)
        for (std::size_t lane = 0; lane < vectorLanes; ++lane)
            add(sums[k][lane], peaks[k][lane]);
    for (std::size_t i = even; i < count; ++i)
        add(samples[i] * samples[i], samples[i] * samples[i]);
    return result;
}

double decibels(double amplitude) {
    return 20 * std::log10(std::max(amplitude, 1e-9));
}

} // namespace

void LoudnessMeter::add(std::span<const float> samples) noexcept {
    m_count += samples.size();
    while (!samples.empty()) {
        const std::size_t count = std::min(samples.size(), stretch);
        const Sums sums = measureStretch(samples.data(), count);
        m_sumOfSquares += sums.squares;
        m_peak = std::max(m_peak, std::sqrt(sums.peakSquare));
        samples = samples.subspan(count);
    }
}

std::optional<LoudnessAnalyzer::Measurement> LoudnessMeter::result() const {
    if (m_count == 0 || !std::isfinite(m_sumOfSquares))
        return std::nullopt;
    return LoudnessAnalyzer::Measurement{decibels(std::sqrt(m_sumOfSquares / double(m_count))),
                                         decibels(double(m_peak))};
}

} // namespace halvane
