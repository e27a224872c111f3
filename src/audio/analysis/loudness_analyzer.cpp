// SPDX-License-Identifier: MIT
#include "audio/analysis/loudness_analyzer.h"

#include "audio/analysis/loudness_meter.h"
#include "audio/files/audio_file.h"

#include <algorithm>
#include <vector>

namespace halvane::LoudnessAnalyzer {

std::optional<Measurement> measure(const QString& path, std::stop_token stop) {
    // Small enough to be still in the nearest cache when it is measured.
    constexpr std::size_t blockSamples = 8192;
    const auto opened = AudioFile::open(path);
    if (!opened)
        return std::nullopt;
    AudioFile& file = **opened;
    const auto channels = static_cast<std::size_t>(file.format().channels);
    std::vector<float> block(blockSamples);
    LoudnessMeter meter;
    while (!stop.stop_requested()) {
        const std::size_t frames = file.read(block.data(), blockSamples / channels);
        if (frames == 0)
            return meter.result();
        meter.add({block.data(), frames * channels});
    }
    return std::nullopt;
}

} // namespace halvane::LoudnessAnalyzer
