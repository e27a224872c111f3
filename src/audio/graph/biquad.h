// SPDX-License-Identifier: MIT
#pragma once

namespace halvane {

/// A second-order filter, normalised so that a0 is 1: y = b0 x + b1 x' + b2 x'' - a1 y' - a2 y''.
/// The default passes everything unchanged.
struct BiquadCoefficients {
    double b0 = 1;
    double b1 = 0;
    double b2 = 0;
    double a1 = 0;
    double a2 = 0;
};

/// A peaking filter: `gainDb` at `frequency`, half of it (in dB) at the two edges that lie
/// `bandwidth` octaves apart, none far away. Frequency and sample rate in Hz, the frequency below
/// half the rate. Any thread. After R. Bristow-Johnson, "Cookbook formulae for audio equalizer
/// biquad filter coefficients", peakingEQ, with the bandwidth in octaves.
BiquadCoefficients peakingFilter(double frequency, double bandwidth, double gainDb,
                                 double sampleRate);

} // namespace halvane
