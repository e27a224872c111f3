// SPDX-License-Identifier: MIT
#include "audio/loudness_meter.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace halvane {
namespace {

// Sums run in as many lanes as two vector registers of the widest kind hold, so that compilers may
// vectorise them without reordering anything; and in single precision only over short stretches.
constexpr std::size_t lanes = 16;
constexpr std::size_t stretch = 4096;

struct Sums {
    double squares = 0;
    float peak = 0;
};

Sums measureStretch(const float* samples, std::size_t count) {
    std::array<float, lanes> squares{};
    std::array<float, lanes> peaks{};
    const std::size_t even = count - count % lanes;
    for (std::size_t i = 0; i < even; i += lanes)
        for (std::size_t k = 0; k < lanes; ++k) {
            const float sample = samples[i + k];
            const float size = std::fabs(sample);
            squares[k] += sample * sample;
            peaks[k] = size > peaks[k] ? size : peaks[k];
        }
    for (std::size_t i = even; i < count; ++i) {
        squares[0] += samples[i] * samples[i];
        peaks[0] = std::max(peaks[0], std::fabs(samples[i]));
    }
    Sums sums;
    for (std::size_t k = 0; k < lanes; ++k) {
        sums.squares += double(squares[k]);
        sums.peak = std::max(sums.peak, peaks[k]);
    }
    return sums;
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
        m_peak = std::max(m_peak, sums.peak);
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
