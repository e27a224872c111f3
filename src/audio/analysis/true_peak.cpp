// SPDX-License-Identifier: MIT
#include "audio/analysis/true_peak.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace halvane {

namespace {

using Kernels = LevelKernels;

// Windowed by Hann's, so that nothing but the band of the sound gets through.
float tapAt(double samples) {
    constexpr double reach = Kernels::taps / 2.0;
    const double angle = std::numbers::pi * samples;
    const double window = 0.5 + 0.5 * std::cos(angle / reach);
    return float(std::sin(angle) / angle * window);
}

// The quarters of the way to the next sample that are looked at.
std::vector<int> quartersFor(int sampleRate) {
    constexpr int fourfold = 96'000;
    constexpr int twofold = 192'000;
    if (sampleRate < fourfold)
        return {1, 2, 3};
    return sampleRate < twofold ? std::vector{2} : std::vector<int>{};
}

} // namespace

TruePeak::TruePeak(const StreamFormat& format)
    : m_channels(std::size_t(format.channels))
    , m_groupsBack(((Kernels::taps - 1) * m_channels + Kernels::group - 1) / Kernels::group)
    , m_memoryFrames((m_groupsBack + 1) * Kernels::group) {
    for (const int quarter : quartersFor(format.sampleRate)) {
        Phase& phase = m_phases.emplace_back();
        float gain = 0;
        for (std::size_t i = 0; i < Kernels::taps; ++i) {
            phase.filter[i] = tapAt(double(i) + quarter / 4.0 - Kernels::taps / 2.0);
            gain += std::abs(phase.filter[i]);
        }
        m_mostGain = std::max(m_mostGain, gain);
    }
}

void TruePeak::add(const float* frames, std::size_t count) {
    const std::size_t samples = count * m_channels;
    const std::size_t groups = (samples + Kernels::group - 1) / Kernels::group;
    // The last group ends with the frames, and so may begin within the one before.
    const float* const end = frames + samples;
    const auto groupAt = [&](std::size_t i) {
        return std::min(frames + i * Kernels::group, end - Kernels::group);
    };
    m_largest.clear();
    for (std::size_t i = m_groupsBack; i > 0; --i)
        m_largest.push_back(
            std::bit_cast<float>(levelKernels().largest(frames - i * Kernels::group)));
    for (std::size_t i = 0; i < groups; ++i) {
        m_largest.push_back(std::bit_cast<float>(levelKernels().largest(groupAt(i))));
        m_peak = std::max(m_peak, m_largest.back());
    }
    for (std::size_t i = 0; i < groups; ++i) {
        const auto nearby = m_largest.cbegin() + std::ptrdiff_t(i);
        addGroup(groupAt(i), *std::max_element(nearby, nearby + std::ptrdiff_t(m_groupsBack) + 1));
    }
}

void TruePeak::addGroup(const float* group, float nearby) {
    if (nearby * m_mostGain <= m_peak)
        return;
    for (const Phase& phase : m_phases)
        m_peak = std::max(m_peak, std::bit_cast<float>(levelKernels().largestBetween(
                                      group, m_channels, phase.filter)));
}

double TruePeak::peak() const {
    return double(m_peak);
}

} // namespace halvane
