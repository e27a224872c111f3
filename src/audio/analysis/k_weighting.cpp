// SPDX-License-Identifier: MIT
#include "audio/analysis/k_weighting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace halvane {

namespace {

constexpr std::size_t pair = 2; // channels that are filtered together

double tangent(double frequency, int sampleRate) {
    return std::tan(std::numbers::pi * frequency / sampleRate);
}

// Numbers that fade out below what doubles hold well make processors slow.
void dropTraces(LevelKernels::Memory& memory) {
    constexpr double trace = 1e-30;
    for (auto* stage : {&memory.shelf, &memory.pass})
        for (auto& lanes : *stage)
            for (double& value : lanes.of)
                if (std::abs(value) < trace)
                    value = 0;
}

void copyLanes(LevelKernels::Memory& to, std::size_t place, const LevelKernels::Memory& from,
               std::size_t fromPlace) {
    const auto copy = [&](auto& toStage, const auto& fromStage) {
        for (std::size_t i = 0; i < 2; ++i)
            for (std::size_t c = 0; c < pair; ++c)
                toStage[i].of[place * pair + c] = fromStage[i].of[fromPlace * pair + c];
    };
    copy(to.shelf, from.shelf);
    copy(to.pass, from.pass);
}

} // namespace

// The standard gives coefficients for 48 kHz only. These are the analogue filters behind them.
KWeightingFilter kWeightingFilter(int sampleRate) {
    KWeightingFilter filter{};
    {
        const double k = tangent(1681.974450955533, sampleRate);
        constexpr double q = 0.7071752369554196;
        const double high = std::pow(10, 3.999843853973347 / 20);
        const double middle = std::pow(high, 0.4996667741545416);
        const double a0 = 1 + k / q + k * k;
        filter.shelfB[0] = (high + middle * k / q + k * k) / a0;
        filter.shelfB[1] = 2 * (k * k - high) / a0;
        filter.shelfB[2] = (high - middle * k / q + k * k) / a0;
        filter.shelfA[0] = 2 * (k * k - 1) / a0;
        filter.shelfA[1] = (1 - k / q + k * k) / a0;
    }
    const double k = tangent(38.13547087602444, sampleRate);
    constexpr double q = 0.5003270373238773;
    const double a0 = 1 + k / q + k * k;
    filter.passA[0] = 2 * (k * k - 1) / a0;
    filter.passA[1] = (1 - k / q + k * k) / a0;
    return filter;
}

std::vector<double> channelWeights(const StreamFormat& format) {
    // Bits of the layout: front left, right and centre are 0 to 2.
    constexpr std::uint64_t lowEffects = 1U << 3;
    constexpr std::uint64_t behind = 1U << 4 | 1U << 5 | 1U << 8;
    constexpr std::uint64_t beside = 1U << 9 | 1U << 10;
    constexpr std::uint64_t front = 7;
    const std::uint64_t usual[] = {
        0, 4, 3, front, 0x33, front | 0x30, front | 0x38, front | 0x708, front | 0x638};
    const auto channels = static_cast<std::size_t>(format.channels);
    std::uint64_t layout = format.channelLayout;
    if (layout == 0 && channels < std::size(usual))
        layout = usual[channels];
    std::vector<double> weights;
    for (; weights.size() < channels; layout &= layout - 1) {
        const std::uint64_t speaker = layout & -layout;
        weights.push_back(speaker == lowEffects ? 0 : speaker & (behind | beside) ? 1.41 : 1);
    }
    return weights;
}

KWeighting::KWeighting(const StreamFormat& format)
    : m_filter(kWeightingFilter(format.sampleRate))
    , m_weights(channelWeights(format))
    , m_hopFrames(std::size_t(format.sampleRate + 5) / 10)
    , m_memoryFrames(std::size_t(format.sampleRate) / 20)
    , m_memories((m_weights.size() + 1) / pair) {
}

void KWeighting::add(const float* frames, std::size_t hops, std::vector<double>& energies) {
    const std::size_t before = energies.size();
    energies.resize(before + hops);
    for (std::size_t first = 0; first < m_weights.size(); first += pair)
        addChannels(frames, first, hops, energies.data() + before);
}

// The hops are halved, and the halves filtered side by side. In the second half the filter begins
// some frames earlier, until it is as if it had heard all that came before.
void KWeighting::addChannels(const float* frames, std::size_t first, std::size_t hops,
                             double* energies) {
    const std::size_t stride = m_weights.size();
    const LevelKernels& kernels = levelKernels();
    const bool isPair = first + 1 < stride;
    const auto weigh = isPair ? kernels.weigh : kernels.weighSingle;
    const std::size_t half = (hops + 1) / 2;
    const float* places[LevelKernels::places] = {frames + first,
                                                 frames + half * m_hopFrames * stride + first};
    LevelKernels::Memory memory{};
    LevelKernels::Lanes squares{};
    {
        const float* const early = places[1] - m_memoryFrames * stride;
        const float* const both[] = {early, early};
        weigh(both, m_memoryFrames, stride, m_filter, memory, squares);
    }
    LevelKernels::Memory& kept = m_memories[first / pair];
    copyLanes(memory, 0, kept, 0);
    const double perFrame = 1 / double(m_hopFrames);
    for (std::size_t hop = 0; hop < half; ++hop) {
        dropTraces(memory);
        const bool isPastEnd = half + hop >= hops; // of an odd number
        if (isPastEnd) {
            copyLanes(kept, 0, memory, 1);
            places[1] = places[0];
        }
        weigh(places, m_hopFrames, stride, m_filter, memory, squares);
        const auto energy = [&](std::size_t place) {
            double sum = 0;
            for (std::size_t c = 0; c < (isPair ? pair : 1); ++c)
                sum += m_weights[first + c] * squares.of[place * pair + c];
            return sum * perFrame;
        };
        energies[hop] += energy(0);
        if (isPastEnd)
            return;
        energies[half + hop] += energy(1);
        for (auto& place : places)
            place += m_hopFrames * stride;
    }
    copyLanes(kept, 0, memory, 1);
}

} // namespace halvane
