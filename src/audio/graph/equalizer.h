// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/biquad.h"
#include "audio/graph/equalizer_kernel.h"

#include <array>
#include <cstddef>

namespace halvane {

inline constexpr int equalizerBandCount = 10;
inline constexpr std::array<double, equalizerBandCount> equalizerFrequencies = {
    31.5, 63, 125, 250, 500, 1000, 2000, 4000, 8000, 16000}; // Hz
inline constexpr double equalizerBandwidth = 1.1;            // octaves
inline constexpr double equalizerGainLimit = 12;             // dB, up and down

/// What the user asked of the equalizer, in dB, within its limits.
struct EqualizerValues {
    bool enabled = false;
    std::array<double, equalizerBandCount> gains{};
    double preamp = 0;
};

/// The same as filters at one rate. Bands at or above half the rate are flat.
struct EqualizerCurve {
    struct Band {
        BiquadCoefficients filter;
        bool flat = true; ///< changes nothing
    };
    std::array<Band, equalizerBandCount> bands{};
    double preamp = 1; ///< linear
};

/// Any thread. Disabled settings give a curve that is flat all through.
EqualizerCurve equalizerCurve(const EqualizerValues& settings, int sampleRate);

/// Ten peaking filters one after another, then the preamp, in double precision. A new curve is
/// reached over about 10 ms; a flat curve, once the filters have rung out, leaves every sample as
/// it is, bit for bit. Audio thread, except where it says otherwise; allocates nothing.
class Equalizer {
  public:
    static constexpr std::size_t maximumChannels = 8;

    /// Starts afresh with this curve, with nothing left of what went before.
    void reset(int sampleRate, int channels, const EqualizerCurve& curve) noexcept;
    /// Moves to a curve that was made for the same rate.
    void setCurve(const EqualizerCurve& curve) noexcept;
    /// Filters interleaved frames in place.
    void process(float* interleaved, std::size_t frames) noexcept;

  private:
    using Lane = equalizer_kernel::StereoLane;
    using States = std::array<equalizer_kernel::FilterState<Lane>, equalizerBandCount>;

    void filter(float* interleaved, std::size_t frames) noexcept;
    void settle() noexcept;

    std::size_t m_channels = 2;
    std::size_t m_rampFrames = 441;
    std::size_t m_rampLeft = 0;
    EqualizerCurve m_target;
    std::array<equalizer_kernel::Band, equalizerBandCount> m_bands{};
    std::array<bool, equalizerBandCount> m_active{}; ///< bands that are filtered at all
    equalizer_kernel::Ramp m_preamp{1, 0};
    std::array<States, maximumChannels / 2> m_states{}; ///< for each pair of channels
};

} // namespace halvane
