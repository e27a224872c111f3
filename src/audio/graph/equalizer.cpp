// SPDX-License-Identifier: MIT
#include "audio/graph/equalizer.h"

#include "audio/graph/decibels.h"

#include <algorithm>
#include <cmath>

namespace halvane {
namespace {

using namespace equalizer_kernel;

/// -180 dBFS: what a filter that has become flat still holds is dropped below this.
constexpr double rungOut = 1e-9;
/// Far below anything a float can tell, far above where arithmetic becomes slow.
constexpr double nothing = 1e-30;
/// No sound gets here; a file of floats may hold an infinity, or what is not a number.
constexpr double broken = 1e12;

BiquadCoefficients scaled(const BiquadCoefficients& a, const BiquadCoefficients& b, double factor) {
    return {(a.b0 - b.b0) * factor, (a.b1 - b.b1) * factor, (a.b2 - b.b2) * factor,
            (a.a1 - b.a1) * factor, (a.a2 - b.a2) * factor};
}

void advance(BiquadCoefficients& c, const BiquadCoefficients& step, double frames) {
    c.b0 += step.b0 * frames;
    c.b1 += step.b1 * frames;
    c.b2 += step.b2 * frames;
    c.a1 += step.a1 * frames;
    c.a2 += step.a2 * frames;
}

double magnitude(const FilterState<StereoLane>& state) {
    return std::abs(state.s1[0]) + std::abs(state.s1[1]) + std::abs(state.s2[0]) +
           std::abs(state.s2[1]);
}

} // namespace

EqualizerCurve equalizerCurve(const EqualizerValues& settings, int sampleRate) {
    EqualizerCurve curve;
    for (std::size_t i = 0; i < curve.bands.size(); ++i) {
        if (equalizerFrequencies[i] * 2 >= sampleRate)
            break; // nothing up there to change
        const double gain = settings.enabled ? settings.gains[i] : 0;
        curve.bands[i].flat = gain == 0;
        curve.bands[i].filter =
            peakingFilter(equalizerFrequencies[i], equalizerBandwidth, gain, sampleRate);
    }
    curve.preamp = settings.enabled ? linearGain(settings.preamp) : 1;
    return curve;
}

void Equalizer::reset(int sampleRate, int channels, const EqualizerCurve& curve) noexcept {
    m_channels = std::size_t(channels);
    m_rampFrames = std::max<std::size_t>(std::size_t(sampleRate) / 100, 1);
    m_rampLeft = 0;
    m_target = curve;
    m_states = {};
    m_preamp = {curve.preamp, 0};
    for (std::size_t b = 0; b < m_bands.size(); ++b) {
        m_bands[b] = {curve.bands[b].filter};
        m_active[b] = !curve.bands[b].flat;
    }
}

void Equalizer::setCurve(const EqualizerCurve& curve) noexcept {
    m_target = curve;
    m_rampLeft = m_rampFrames;
    const double perFrame = 1.0 / double(m_rampFrames);
    m_preamp.step = (curve.preamp - m_preamp.now) * perFrame;
    for (std::size_t b = 0; b < m_bands.size(); ++b) {
        // A flat band that nothing runs through stays out; it is flat already.
        if (!m_active[b] && curve.bands[b].flat)
            continue;
        m_active[b] = true;
        m_bands[b].step = scaled(curve.bands[b].filter, m_bands[b].now, perFrame);
    }
}

void Equalizer::process(float* interleaved, std::size_t frames) noexcept {
    while (frames > 0) {
        const auto count = m_rampLeft > 0 ? std::min(frames, m_rampLeft) : frames;
        filter(interleaved, count);
        settle();
        interleaved += count * m_channels;
        frames -= count;
    }
}

void Equalizer::filter(float* interleaved, std::size_t frames) noexcept {
    std::array<Band, equalizerBandCount> bands;
    std::array<std::size_t, equalizerBandCount> index;
    std::size_t count = 0;
    for (std::size_t b = 0; b < m_bands.size(); ++b) {
        if (m_active[b]) {
            bands[count] = m_bands[b];
            index[count++] = b;
        }
    }
    if (count == 0 && m_rampLeft == 0 && m_preamp.now == 1)
        return;

    const std::span<const Band> active(bands.data(), count);
    for (std::size_t channel = 0; channel < m_channels; channel += 2) {
        States& all = m_states[channel / 2];
        if (channel + 1 < m_channels) {
            std::array<FilterState<StereoLane>, equalizerBandCount> states;
            for (std::size_t i = 0; i < count; ++i)
                states[i] = all[index[i]];
            const auto kernel = m_rampLeft > 0 ? run<StereoLane, true> : run<StereoLane, false>;
            kernel(interleaved + channel, frames, m_channels, active, m_preamp,
                   {states.data(), count});
            for (std::size_t i = 0; i < count; ++i)
                all[index[i]] = states[i];
        } else {
            std::array<FilterState<double>, equalizerBandCount> states;
            for (std::size_t i = 0; i < count; ++i)
                states[i] = {all[index[i]].s1[0], all[index[i]].s2[0]};
            const auto kernel = m_rampLeft > 0 ? run<double, true> : run<double, false>;
            kernel(interleaved + channel, frames, m_channels, active, m_preamp,
                   {states.data(), count});
            for (std::size_t i = 0; i < count; ++i)
                all[index[i]] = {StereoLane{states[i].s1, 0}, StereoLane{states[i].s2, 0}};
        }
    }

    if (m_rampLeft == 0)
        return;
    m_rampLeft -= frames;
    m_preamp.now = m_rampLeft > 0 ? m_preamp.now + m_preamp.step * double(frames) : m_target.preamp;
    for (std::size_t b = 0; b < m_bands.size(); ++b) {
        if (m_rampLeft == 0)
            m_bands[b] = {m_target.bands[b].filter};
        else if (m_active[b])
            advance(m_bands[b].now, m_bands[b].step, double(frames));
    }
}

void Equalizer::settle() noexcept {
    for (std::size_t b = 0; b < m_bands.size(); ++b) {
        if (!m_active[b])
            continue;
        double held = 0;
        for (const States& states : m_states)
            held += magnitude(states[b]);
        const bool out = m_rampLeft == 0 && m_target.bands[b].flat && held < rungOut;
        if (out)
            m_active[b] = false;
        if (out || held < nothing || !(held < broken)) {
            for (States& states : m_states)
                states[b] = {};
        }
    }
}

} // namespace halvane
