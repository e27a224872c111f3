// SPDX-License-Identifier: MIT
#include "audio/analysis/loudness_analyzer.h"

#include "audio/analysis/loudness_meter.h"
#include "audio/analysis/programme_meter.h"
#include "audio/files/audio_file.h"

namespace halvane::LoudnessAnalyzer {

namespace {

std::optional<Measurement> measured(const LoudnessMeter& meter, ProgrammeMeter& programme) {
    auto result = meter.result();
    if (result)
        result->programme = programme.result();
    return result;
}

} // namespace

std::optional<Measurement> measure(const QString& path, std::stop_token stop) {
    const auto opened = AudioFile::open(path);
    if (!opened)
        return std::nullopt;
    AudioFile& file = **opened;
    const auto channels = static_cast<std::size_t>(file.format().channels);
    LoudnessMeter meter;
    ProgrammeMeter programme(file.format());
    while (!stop.stop_requested()) {
        const std::span<float> room = programme.room();
        const std::size_t frames = file.read(room.data(), room.size() / channels);
        if (frames == 0)
            return measured(meter, programme);
        meter.add(room.first(frames * channels));
        programme.add(frames);
    }
    return std::nullopt;
}

} // namespace halvane::LoudnessAnalyzer
