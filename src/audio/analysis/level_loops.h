// SPDX-License-Identifier: MIT
// The loops behind LevelKernels, for the files that compile them for one kind of processor each. It
// uses nothing inline of other headers, because the linker could take the wrong file's copy for the
// whole program.
#pragma once

#include "audio/analysis/level_kernels.h"

namespace halvane {
namespace {

using KernelDoubles [[gnu::vector_size(8 * LevelKernels::lanes)]] = double;
using KernelFloats [[gnu::vector_size(4 * LevelKernels::lanes)]] = float;
using KernelPairs [[gnu::vector_size(4 * LevelKernels::lanes)]] = long long;

// Vectors are handed over by reference. By value, they would need a convention for calls that not
// every processor has.
void load(KernelDoubles& vector, const LevelKernels::Lanes& lanes) {
    __builtin_memcpy(&vector, lanes.of, sizeof vector);
}

void store(LevelKernels::Lanes& lanes, const KernelDoubles& vector) {
    __builtin_memcpy(lanes.of, &vector, sizeof vector);
}

struct PairAt {
    static void load(KernelDoubles& in, const float* const* places, std::size_t offset) {
        KernelPairs pairs;
        for (std::size_t i = 0; i < LevelKernels::places; ++i) {
            long long pair;
            __builtin_memcpy(&pair, places[i] + offset, sizeof pair);
            pairs[i] = pair;
        }
        KernelFloats floats;
        __builtin_memcpy(&floats, &pairs, sizeof floats);
        in = __builtin_convertvector(floats, KernelDoubles);
    }
};

struct SingleAt {
    static void load(KernelDoubles& in, const float* const* places, std::size_t offset) {
        in = KernelDoubles{double(places[0][offset]), 0, double(places[1][offset]), 0};
    }
};

template<typename Load>
void weighed(const float* const* places, std::size_t frames, std::size_t stride,
             const KWeightingFilter& filter, LevelKernels::Memory& memory,
             LevelKernels::Lanes& sums) {
    const KWeightingFilter f = filter; // in registers
    KernelDoubles s1;
    KernelDoubles s2;
    KernelDoubles p1;
    KernelDoubles p2;
    load(s1, memory.shelf[0]);
    load(s2, memory.shelf[1]);
    load(p1, memory.pass[0]);
    load(p2, memory.pass[1]);
    KernelDoubles squares{};
    for (std::size_t i = 0; i < frames; ++i) {
        KernelDoubles in;
        Load::load(in, places, i * stride);
        const KernelDoubles shelved = f.shelfB[0] * in + s1;
        s1 = (f.shelfB[1] * in + s2) - f.shelfA[0] * shelved;
        s2 = f.shelfB[2] * in - f.shelfA[1] * shelved;
        const KernelDoubles passed = shelved + p1;
        p1 = (p2 - 2 * shelved) - f.passA[0] * passed;
        p2 = shelved - f.passA[1] * passed;
        squares += passed * passed;
    }
    store(memory.shelf[0], s1);
    store(memory.shelf[1], s2);
    store(memory.pass[0], p1);
    store(memory.pass[1], p2);
    store(sums, squares);
}

// The bits of floats without their signs are in the order of the magnitudes, and compilers find the
// largest of integers with vectors.
std::uint32_t largestMagnitude(const float* samples) {
    std::uint32_t bits[LevelKernels::group];
    __builtin_memcpy(bits, samples, sizeof bits);
    std::uint32_t most = 0;
    for (const std::uint32_t value : bits) {
        const std::uint32_t magnitude = value & 0x7fff'ffffU;
        most = magnitude > most ? magnitude : most;
    }
    return most;
}

std::uint32_t largestInterpolated(const float* group, std::size_t channels,
                                  const float (&filter)[LevelKernels::taps]) {
    float between[LevelKernels::group] = {};
    const float* back = group;
    for (const float tap : filter) {
        for (std::size_t i = 0; i < LevelKernels::group; ++i)
            between[i] += tap * back[i];
        back -= channels;
    }
    return largestMagnitude(between);
}

constexpr LevelKernels theseKernels{weighed<PairAt>, weighed<SingleAt>, largestInterpolated,
                                    largestMagnitude};

} // namespace
} // namespace halvane
