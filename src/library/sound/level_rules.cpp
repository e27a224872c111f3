// SPDX-License-Identifier: MIT
#include "library/sound/level_rules.h"

#include <algorithm>
#include <cmath>

namespace halvane {

namespace {

constexpr double mostGain = 24; // dB, up or down; more is a wrong tag or an almost silent file

std::optional<double> gainTo(double lufs) {
    return lufs > ProgrammeLoudness::silence ? std::optional(targetLufs - lufs) : std::nullopt;
}

std::optional<double> tagged(std::optional<float> LevelTags::*field, const KnownLevel& own,
                             std::span<const KnownLevel> tracks) {
    if (own.tags.*field)
        return own.tags.*field;
    const auto found = std::find_if(tracks.begin(), tracks.end(), [field](const KnownLevel& track) {
        return (track.tags.*field).has_value();
    });
    return found != tracks.end() ? std::optional<double>(found->tags.*field) : std::nullopt;
}

std::optional<double> measuredGain(std::span<const KnownLevel> tracks) {
    std::vector<const ProgrammeLoudness*> measured;
    for (const KnownLevel& track : tracks) {
        if (!track.measured)
            return std::nullopt;
        measured.push_back(&*track.measured);
    }
    return gainTo(loudnessOfAll(measured));
}

std::optional<double> largestPeak(std::span<const KnownLevel> tracks) {
    std::optional<double> largest;
    for (const KnownLevel& track : tracks) {
        const auto peak = trackLevel(track).peak;
        if (!peak)
            return std::nullopt;
        largest = std::max(largest.value_or(*peak), *peak);
    }
    return largest;
}

} // namespace

Level trackLevel(const KnownLevel& track) {
    Level level{track.tags.trackGain, track.tags.trackPeak};
    if (!level.gain && track.measured)
        level.gain = gainTo(track.measured->lufs);
    if (!level.peak && track.measured)
        level.peak = track.measured->truePeakDb;
    return level;
}

Level albumLevel(const KnownLevel& own, std::span<const KnownLevel> tracks) {
    Level level{tagged(&LevelTags::albumGain, own, tracks),
                tagged(&LevelTags::albumPeak, own, tracks)};
    if (!level.gain)
        level.gain = measuredGain(tracks);
    if (!level.peak)
        level.peak = largestPeak(tracks);
    return level;
}

double levelGain(const Level& level, const LevelWishes& wishes) {
    double gain = level.gain.value_or(0) + wishes.preamp;
    if (wishes.preventsClipping)
        gain = std::min(gain, -level.peak.value_or(0));
    return std::clamp(gain, -mostGain, mostGain);
}

std::vector<double> levelNumbers(const ProgrammeLoudness& measured) {
    std::vector<double> numbers{measured.lufs, measured.truePeakDb, double(measured.loudest)};
    numbers.insert(numbers.end(), measured.blocks.cbegin(), measured.blocks.cend());
    return numbers;
}

std::optional<ProgrammeLoudness> levelFromNumbers(const std::vector<double>& numbers) {
    constexpr std::size_t beforeBlocks = 3;
    constexpr double most = 1e9; // of anything that is meant here
    const bool isSound = std::all_of(numbers.cbegin(), numbers.cend(), [](double number) {
        return std::abs(number) < most; // and so is a number
    });
    if (numbers.size() < beforeBlocks || !isSound)
        return std::nullopt;
    ProgrammeLoudness measured{numbers[0], numbers[1], {}, static_cast<int>(numbers[2])};
    for (std::size_t i = beforeBlocks; i < numbers.size(); ++i)
        measured.blocks.push_back(static_cast<int>(std::max(numbers[i], 0.0)));
    return measured;
}

} // namespace halvane
