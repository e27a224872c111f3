// SPDX-License-Identifier: MIT
#include "audio/graph/engine_test.h"
#include "audio/graph/equalizer.h"
#include "library/sound/equalizer_presets.h"

#include <algorithm>
#include <array>
#include <complex>
#include <cstdio>
#include <limits>
#include <numbers>
#include <random>

namespace halvane::test {
namespace {

using std::numbers::pi;
using Gains = std::array<double, equalizerBandCount>;

constexpr int rates[] = {44'100, 48'000, 96'000, 192'000};

/// What the menu offers, its extremes, and others at random.
std::vector<Gains> curves() {
    std::vector<Gains> all;
    for (const auto& preset : builtInEQPresets())
        all.push_back(preset.gains);
    all.push_back({12, 12, 12, 12, 12, 12, 12, 12, 12, 12});
    all.push_back({-12, 12, -12, 12, -12, 12, -12, 12, -12, 12});
    std::mt19937 random(7);
    std::uniform_real_distribution<double> gain(-12, 12);
    for (int i = 0; i < 6; ++i)
        std::ranges::generate(all.emplace_back(), [&] { return gain(random); });
    return all;
}

/// What the cascade does to a sine, in dB, worked out with complex numbers from the analogue
/// prototype H(s) = (s² + s A/Q + 1) / (s² + s/(A Q) + 1) through the bilinear transform: another
/// way than the filters' own coefficients.
double responseDb(const Gains& gains, double frequency, int rate) {
    double dB = 0;
    for (std::size_t b = 0; b < gains.size(); ++b) {
        const double centre = equalizerFrequencies[b];
        if (centre >= rate / 2.0)
            continue;
        const double a = std::pow(10, gains[b] / 40);
        const double w0 = 2 * pi * centre / rate;
        const double q =
            1 / (2 * std::sinh(std::log(2.0) / 2 * equalizerBandwidth * w0 / std::sin(w0)));
        const std::complex<double> s(0, std::tan(pi * frequency / rate) / std::tan(w0 / 2));
        dB += 20 * std::log10(std::abs((s * s + s * (a / q) + 1.0) / (s * s + s / (a * q) + 1.0)));
    }
    return dB;
}

double measuredDb(const std::vector<float>& impulseResponse, double height, double frequency,
                  int rate) {
    const auto turn = std::polar(1.0, -2 * pi * frequency / rate);
    std::complex<double> sum = 0, phase = 1;
    for (const float sample : impulseResponse) {
        sum += double(sample) * phase;
        phase *= turn;
    }
    return 20 * std::log10(std::abs(sum) / height);
}

class EqualizerResponse : public EngineTest, public testing::WithParamInterface<int> {};

TEST_P(EqualizerResponse, OfTheRenderedGraphIsThatOfTheCascade) {
    const int rate = GetParam();
    Pcm impulse{rate, 1, 24, std::vector<std::int32_t>(std::size_t(rate) * 2 / 5)};
    impulse.samples[0] = 1 << 20; // room for what is boosted
    const auto path = wave(impulse);
    std::printf("largest error in dB at %d Hz:", rate);
    for (const Gains& gains : curves()) {
        double worst = 0;
        engine.setEQ(true, {gains.begin(), gains.end()}, 0);
        output.clearRecording();
        play(path);
        output.pull(impulse.samples.size());
        for (double f = 20; f < 0.45 * rate; f *= 1.13) {
            const double error =
                measuredDb(output.recording(), 0.125, f, rate) - responseDb(gains, f, rate);
            worst = std::max(worst, std::abs(error));
        }
        EXPECT_LT(worst, 0.05);
        std::printf(" %.1e", worst);
    }
    std::printf("\n");
}

INSTANTIATE_TEST_SUITE_P(Rates, EqualizerResponse, testing::ValuesIn(rates));

class EqualizerInGraph : public EngineTest {};

TEST_F(EqualizerInGraph, OffOrFlatLeavesEverySampleAsItIs) {
    const auto pcm = music(30'000);
    const auto path = wave(pcm);
    const std::vector<double> boosted(10, 6.0);
    const auto rendersExactly = [&](bool enabled, const std::vector<double>& gains, double preamp) {
        engine.setEQ(enabled, gains, preamp);
        output.clearRecording();
        play(path);
        output.pull(30'000);
        return output.recording() == pcm.floats();
    };
    EXPECT_TRUE(rendersExactly(false, boosted, 3));
    EXPECT_FALSE(rendersExactly(true, boosted, 0));
    EXPECT_TRUE(rendersExactly(true, std::vector<double>(10, 0.0), 0));
    EXPECT_FALSE(rendersExactly(true, {}, 3));

    // Switched off while it plays, it is out of the way once it has rung out.
    play(path);
    output.pull(5000);
    engine.setEQ(true, boosted, 2);
    output.pull(2000);
    engine.setEQ(false, boosted, 2);
    output.pull(15'000);
    output.clearRecording();
    output.pull(8000);
    EXPECT_TRUE(output.recording() == pcm.cut(22'000, 30'000).floats());
}

TEST_F(EqualizerInGraph, ChangesWhilePlayingDoNotClick) {
    const double amplitude = 0.06, frequency = 100;
    play(wave(sine(frequency, amplitude, 400'000, 44'100, 2, 24)));
    std::mt19937 random(3);
    std::uniform_real_distribution<double> gain(-12, 12);
    for (int i = 0; i < 60; ++i) {
        output.pull(1 + random() % 4000);
        switch (random() % 4) {
        case 0:
            engine.setVolume(double(random() % 11) / 10);
            break;
        case 1:
            engine.setTrackGain(gain(random));
            break;
        default: {
            std::vector<double> gains(10);
            for (double& g : gains)
                g = gain(random);
            engine.setEQ(random() % 3 != 0, gains, gain(random) / 2);
        }
        }
    }
    // From one sample to the next the sound moves no further than the loudest that was played does
    // by itself, and what a ramp over 10 ms adds to it. A click would be many times that.
    const auto& heard = output.recording();
    double loudest = 0, step = 0;
    for (std::size_t i = 2; i < heard.size(); ++i) {
        loudest = std::max(loudest, double(std::abs(heard[i])));
        step = std::max(step, double(std::abs(heard[i] - heard[i - 2])));
    }
    EXPECT_GT(loudest, 2 * amplitude);
    EXPECT_LT(step, loudest * (2 * pi * frequency / 44'100 + 2.0 / 441));
}

TEST(Equalizer, AddsNoNoiseThatCouldBeHeard) {
    // The same cascade in extended precision, rounded nowhere.
    constexpr int rate = 192'000;
    EqualizerValues values{true, {12, -12, 12, 6, -6, 12, -12, 3, -3, 12}, -9};
    const auto curve = equalizerCurve(values, rate);
    Equalizer equalizer;
    equalizer.reset(rate, 2, curve);
    std::array<std::array<long double, 4>, 10> history{};
    long double errors = 0;
    std::array<float, 2> frame;
    constexpr int frames = rate;
    for (int i = 0; i < frames; ++i) {
        const float x =
            0.2f * float(std::sin(2 * pi * 997 * i / rate) + std::sin(2 * pi * 40 * i / rate));
        frame = {x, x};
        equalizer.process(frame.data(), 1);
        long double y = x;
        for (std::size_t b = 0; b < 10; ++b) {
            const auto& c = curve.bands[b].filter;
            auto& h = history[b];
            const long double in = y;
            y = c.b0 * in + c.b1 * h[0] + c.b2 * h[1] - c.a1 * h[2] - c.a2 * h[3];
            h = {in, h[0], y, h[2]};
        }
        const long double error = y * curve.preamp - frame[0];
        errors += error * error;
        ASSERT_LT(std::abs(frame[0]), 1.0f);
    }
    const double noise = 10 * std::log10(double(errors) / frames);
    EXPECT_LT(noise, -140);
    std::printf("noise at 192 kHz: %.1f dBFS\n", noise);
}

TEST(Equalizer, TreatsEveryChannelAlikeAndAlone) {
    const auto curve = equalizerCurve({true, {3, -6, 9, 0, 2, -4, 0, 12, -12, 5}, -2}, 44'100);
    const auto mono = music(3000, 44'100, 1).floats();
    auto expected = mono;
    Equalizer single;
    single.reset(44'100, 1, curve);
    single.process(expected.data(), expected.size());
    for (const std::size_t channels : {2u, 3u, 5u, 8u}) {
        for (std::size_t sounding = 0; sounding < channels; ++sounding) {
            std::vector<float> frames(mono.size() * channels, 0);
            for (std::size_t i = 0; i < mono.size(); ++i)
                frames[i * channels + sounding] = mono[i];
            Equalizer equalizer;
            equalizer.reset(44'100, int(channels), curve);
            equalizer.process(frames.data(), mono.size());
            for (std::size_t i = 0; i < frames.size(); ++i)
                ASSERT_EQ(frames[i], i % channels == sounding ? expected[i / channels] : 0);
        }
    }
}

TEST(Equalizer, ForgetsWhatIsNotANumber) {
    Equalizer equalizer;
    equalizer.reset(44'100, 2, equalizerCurve({true, {6, 6, 6, 6, 6, 6, 6, 6, 6, 6}, 0}, 44'100));
    for (const float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        std::array<float, 200> block{bad};
        equalizer.process(block.data(), 100);
        block.fill(0.1f);
        equalizer.process(block.data(), 100);
        for (const float sample : block)
            ASSERT_TRUE(std::isfinite(sample));
    }
}

} // namespace
} // namespace halvane::test
