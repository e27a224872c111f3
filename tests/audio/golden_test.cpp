// SPDX-License-Identifier: MIT
#include "audio/engine_test.h"
#include "audio/equalizer.h"
#include "audio/gain_stage.h"
#include "support/golden.h"

namespace halvane::test {
namespace {

const std::array<double, equalizerBandCount> rock = {4, 3, 1, 0, -1, 0, 1, 3, 4, 4};

/// Every so many samples of a buffer: enough to tell whether it is the same, little to keep.
std::vector<float> every(std::size_t step, const std::vector<float>& samples) {
    std::vector<float> kept;
    for (std::size_t i = 0; i < samples.size(); i += step)
        kept.push_back(samples[i]);
    return kept;
}

TEST(Golden, EqualizerImpulse) {
    std::vector<float> impulse(64, 0);
    impulse[0] = 0.5f;
    Equalizer equalizer;
    equalizer.reset(44'100, 1, equalizerCurve({true, rock, -3}, 44'100));
    equalizer.process(impulse.data(), impulse.size());
    expectGolden("equalizer_impulse", impulse);
}

TEST(Golden, EqualizerRamp) {
    // A curve that is left half way for another.
    std::vector<float> level(2000, 0.25f);
    Equalizer equalizer;
    equalizer.reset(44'100, 1, equalizerCurve({}, 44'100));
    equalizer.setCurve(equalizerCurve({true, rock, -3}, 44'100));
    equalizer.process(level.data(), 200);
    equalizer.setCurve(equalizerCurve({}, 44'100));
    equalizer.process(level.data() + 200, 1800);
    expectGolden("equalizer_ramp", every(31, level));
}

TEST(Golden, GainRamp) {
    std::vector<float> level(1000, 0.5f);
    GainStage stage;
    stage.reset(44'100, 1, 1);
    stage.setGain(0.25f);
    stage.process(level.data(), 300);
    stage.setGain(0.75f);
    stage.process(level.data() + 300, 700);
    expectGolden("gain_ramp", every(20, level));
}

class GoldenGraph : public EngineTest {};

TEST_F(GoldenGraph, EverythingOn) {
    const auto path = wave(music(20'000));
    engine.setEQ(true, {rock.begin(), rock.end()}, -3);
    engine.setTrackGain(-4.5);
    engine.setVolume(0.8);
    play(path, 0.1);
    output.pull(2000);
    engine.setVolume(0.3);
    output.pull(2000);
    expectGolden("graph_everything_on", every(73, output.recording()));
}

} // namespace
} // namespace halvane::test
