// SPDX-License-Identifier: MIT
#include "audio/graph/gain_stage.h"

#include "audio/graph/decibels.h"
#include "audio/stages/raw_stream.h"

// Ramps standard input from no gain to the one asked for, to standard output.
int main(int argc, char** argv) {
    using namespace halvane;
    stages::expectArguments(argc, 3, "gain_stage RATE CHANNELS GAIN_DB < in > out");
    const int channels = std::atoi(argv[2]);
    GainStage stage;
    stage.reset(std::atoi(argv[1]), channels, 1);
    stage.setGain(float(linearGain(std::atof(argv[3]))));
    stages::pump(channels, [&](float* block, std::size_t frames) { stage.process(block, frames); });
    return 0;
}
