// SPDX-License-Identifier: MIT
#include "audio/graph/equalizer.h"
#include "audio/stages/raw_stream.h"

// Equalizes standard input to standard output.
int main(int argc, char** argv) {
    using namespace halvane;
    stages::expectArguments(argc, 3,
                            "equalizer_stage RATE CHANNELS PREAMP_DB [GAIN_DB ...] < in > out");
    EqualizerValues values{true, {}, std::atof(argv[3])};
    for (int i = 4; i < argc && i < 4 + equalizerBandCount; ++i)
        values.gains[std::size_t(i - 4)] = std::atof(argv[i]);
    const int rate = std::atoi(argv[1]), channels = std::atoi(argv[2]);
    Equalizer equalizer;
    equalizer.reset(rate, channels, equalizerCurve(values, rate));
    stages::pump(channels,
                 [&](float* block, std::size_t frames) { equalizer.process(block, frames); });
    return 0;
}
