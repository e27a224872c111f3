// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace halvane {

/// The K-weighting filter of ITU-R BS.1770 for one rate: a high shelf, then a high pass whose zeros
/// are both at 0 Hz. The leading coefficients of the feedback are 1.
struct KWeightingFilter {
    double shelfB[3];
    double shelfA[2];
    double passA[2];
};

/// What the loops over samples of the loudness pass do, in the widest vectors that the processor
/// has. Pure; any thread.
struct LevelKernels {
    /// The filter runs over two places of a sound at once, and over two channels at each.
    static constexpr std::size_t places = 2;
    static constexpr std::size_t lanes = 2 * places;
    /// The filter's memory, or a sum, for each place and each channel of it.
    struct Lanes {
        alignas(32) double of[lanes];
    };
    struct Memory {
        Lanes shelf[2];
        Lanes pass[2];
    };

    /// Filters frames from each place on, and gives the sums of the squares of what comes out. The
    /// two channels follow one another at each frame, and frames are `stride` samples apart.
    using Weigh = void (*)(const float* const* places, std::size_t frames, std::size_t stride,
                           const KWeightingFilter& filter, Memory& memory, Lanes& sums);
    Weigh weigh;
    /// The same of a single channel at each place; the other lanes stay 0.
    Weigh weighSingle;

    /// How many samples are interpolated at once, from how many taps each.
    static constexpr std::size_t group = 32;
    static constexpr std::size_t taps = 12;
    /// The largest magnitude among the values that one phase of an interpolating filter gives for a
    /// group of interleaved samples, as the bits of a float without its sign. It reads as many
    /// frames in front of the group as there are taps, less one.
    std::uint32_t (*largestBetween)(const float* group, std::size_t channels,
                                    const float (&filter)[taps]);
    /// The largest magnitude in a group, as such bits.
    std::uint32_t (*largest)(const float* group);
};

/// Those for the processor that this runs on.
const LevelKernels& levelKernels();

/// Those that every processor has.
extern const LevelKernels plainLevelKernels;
/// Those for processors with AVX2 and FMA, in programs for x86-64.
extern const LevelKernels avx2LevelKernels;

} // namespace halvane
