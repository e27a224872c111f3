// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/biquad.h"

#include <array>
#include <cstddef>
#include <span>

/// The equalizer's inner loop, for one channel (Lane = double) or for two at once (Lane =
/// StereoLane), which costs the same. Each frame runs through all bands before the next one begins:
/// a band's recursion over frames then overlaps with the other bands' work.
namespace halvane::equalizer_kernel {

typedef double StereoLane __attribute__((vector_size(16)));

inline constexpr std::size_t maximumBands = 10;

/// A value that moves by `step` a frame while ramping.
struct Ramp {
    double now;
    double step;
};

/// A filter that moves by `step` a frame while ramping. Between two stable filters every mixture of
/// their coefficients is stable too.
struct Band {
    BiquadCoefficients now;
    BiquadCoefficients step{0, 0, 0, 0, 0};
};

/// Transposed direct form II: quiet when coefficients move, and exactly zero in a flat filter.
template<typename Lane>
struct FilterState {
    Lane s1{};
    Lane s2{};
};

template<typename Lane>
inline Lane load(const float* sample) {
    if constexpr (sizeof(Lane) == sizeof(double))
        return *sample;
    else
        return Lane{sample[0], sample[1]};
}

template<typename Lane>
inline void store(float* sample, Lane value) {
    if constexpr (sizeof(Lane) == sizeof(double)) {
        *sample = float(value);
    } else {
        sample[0] = float(value[0]);
        sample[1] = float(value[1]);
    }
}

/// The coefficients spread over a lane's channels.
template<typename Lane>
struct Spread {
    explicit Spread(const BiquadCoefficients& c)
        : b0(Lane{} + c.b0)
        , b1(Lane{} + c.b1)
        , b2(Lane{} + c.b2)
        , a1(Lane{} + c.a1)
        , a2(Lane{} + c.a2) {}
    Spread() = default;

    void advance(const Spread& step) {
        b0 += step.b0;
        b1 += step.b1;
        b2 += step.b2;
        a1 += step.a1;
        a2 += step.a2;
    }

    Lane b0, b1, b2, a1, a2;
};

/// Filters `frames` samples of one lane in place, `stride` floats apart, then applies the preamp.
/// States are those of `bands`, in the same order.
template<typename Lane, bool ramping>
void run(float* samples, std::size_t frames, std::size_t stride, std::span<const Band> bands,
         Ramp preamp, std::span<FilterState<Lane>> states) noexcept {
    std::array<Spread<Lane>, maximumBands> now, step;
    std::array<FilterState<Lane>, maximumBands> state;
    const std::size_t count = bands.size();
    for (std::size_t b = 0; b < count; ++b) {
        now[b] = Spread<Lane>(bands[b].now);
        if constexpr (ramping)
            step[b] = Spread<Lane>(bands[b].step);
        state[b] = states[b];
    }
    double gain = preamp.now;
    for (std::size_t i = 0; i < frames; ++i, samples += stride) {
        Lane x = load<Lane>(samples);
        for (std::size_t b = 0; b < count; ++b) {
            if constexpr (ramping)
                now[b].advance(step[b]);
            const Lane y = now[b].b0 * x + state[b].s1;
            state[b].s1 = now[b].b1 * x - now[b].a1 * y + state[b].s2;
            state[b].s2 = now[b].b2 * x - now[b].a2 * y;
            x = y;
        }
        if constexpr (ramping)
            gain += preamp.step;
        store<Lane>(samples, x * gain);
    }
    for (std::size_t b = 0; b < count; ++b)
        states[b] = state[b];
}

} // namespace halvane::equalizer_kernel
