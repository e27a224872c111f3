// SPDX-License-Identifier: MIT
#include "audio/graph/engine_test.h"
#include "support/golden.h"

namespace halvane::test {
namespace {

const std::vector<double> rock = {4, 3, 1, 0, -1, 0, 1, 3, 4, 4};

/// Every so many samples of a buffer: enough to tell whether it is the same, little to keep.
std::vector<float> every(std::size_t step, const std::vector<float>& samples) {
    std::vector<float> kept;
    for (std::size_t i = 0; i < samples.size(); i += step)
        kept.push_back(samples[i]);
    return kept;
}

class GoldenGraph : public EngineTest {};

TEST_F(GoldenGraph, EverythingOn) {
    const auto path = wave(music(20'000));
    engine.setEQ(true, rock, -3);
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
