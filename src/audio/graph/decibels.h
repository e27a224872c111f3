// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

namespace halvane {

/// The factor of a gain in dB; exactly 1 for 0 dB.
inline double linearGain(double dB) {
    return dB == 0 ? 1 : std::pow(10.0, dB / 20);
}

} // namespace halvane
