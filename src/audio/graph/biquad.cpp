// SPDX-License-Identifier: MIT
#include "audio/graph/biquad.h"

#include <cmath>
#include <numbers>

namespace halvane {

BiquadCoefficients peakingFilter(double frequency, double bandwidth, double gainDb,
                                 double sampleRate) {
    const double amplitude = std::pow(10.0, gainDb / 40);
    const double w = 2 * std::numbers::pi * frequency / sampleRate;
    const double alpha =
        std::sin(w) * std::sinh(std::numbers::ln2 / 2 * bandwidth * w / std::sin(w));
    const double a0 = 1 + alpha / amplitude;
    const double middle = -2 * std::cos(w) / a0; // b1 and a1 are the same
    return {(1 + alpha * amplitude) / a0, middle, (1 - alpha * amplitude) / a0, middle,
            (1 - alpha / amplitude) / a0};
}

} // namespace halvane
