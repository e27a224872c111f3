// SPDX-License-Identifier: MIT
#include "audio/analysis/spectrum_analyzer.h"
#include "audio/stages/raw_stream.h"

// Prints, for each thirtieth of a second of standard input, the level and the 48 band heights.
int main(int argc, char** argv) {
    using namespace halvane;
    stages::expectArguments(argc, 2, "spectrum_stage RATE CHANNELS < in.f32");
    const int rate = std::atoi(argv[1]), channels = std::atoi(argv[2]);
    SpectrumAnalyzer analyzer;
    std::vector<float> newest(SpectrumAnalyzer::blockFrames);
    const auto step = std::size_t(rate) / 30;
    std::vector<float> block(step * std::size_t(channels));
    for (int i = 1; std::fread(block.data(), sizeof(float), block.size(), stdin) == block.size();
         ++i) {
        for (std::size_t frame = 0; frame < step; ++frame) {
            newest.erase(newest.begin());
            newest.push_back(block[frame * std::size_t(channels)]);
        }
        if (const auto output = analyzer.processIfDue(newest, rate, i)) {
            std::printf("%.4f:", double(output->level));
            for (const float band : output->bands)
                std::printf(" %.3f", double(band));
            std::printf("\n");
        }
    }
    return 0;
}
