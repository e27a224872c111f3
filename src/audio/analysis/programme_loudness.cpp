// SPDX-License-Identifier: MIT
#include "audio/analysis/programme_loudness.h"

#include <algorithm>
#include <cmath>

namespace halvane {

namespace {

constexpr double softestBlock = ProgrammeLoudness::silence; // LUFS; softer ones do not count
constexpr double gateBelowMean = 10;                        // LU
constexpr int mostCounts = 30;

double lufsOf(double energy) {
    return -0.691 + 10 * std::log10(energy);
}

double energyOf(double lufs) {
    return std::pow(10, (lufs + 0.691) / 10);
}

// Blocks that are about as loud: between two levels in LUFS.
struct Kind {
    double low;
    double high;
    double count;

    [[nodiscard]] double energy() const { return energyOf((low + high) / 2); }
};

// Of the kind that the gate cuts, the part above it counts.
double gated(std::span<const Kind> kinds) {
    double sum = 0;
    double count = 0;
    for (const Kind& kind : kinds) {
        sum += kind.count * kind.energy();
        count += kind.count;
    }
    if (!(count > 0))
        return ProgrammeLoudness::silence;
    const double gate = lufsOf(sum / count) - gateBelowMean;
    sum = count = 0;
    for (const Kind& kind : kinds) {
        const double low = std::max(kind.low, gate);
        if (low >= kind.high)
            continue;
        const double part = kind.count * (kind.high - low) / (kind.high - kind.low);
        sum += part * energyOf((low + kind.high) / 2);
        count += part;
    }
    return lufsOf(sum / count);
}

std::vector<Kind> kindsOf(const ProgrammeLoudness& track) {
    std::vector<Kind> kinds;
    double low = track.loudest;
    for (const int count : track.blocks) {
        kinds.push_back({low, low + 1, double(count)});
        --low;
    }
    return kinds;
}

// The counts as if each kind's blocks were spread evenly give another loudness than the blocks
// themselves. The difference is known for the track alone.
void appendAdjusted(std::vector<Kind>& all, const ProgrammeLoudness& track) {
    std::vector<Kind> kinds = kindsOf(track);
    const double shift = track.lufs - gated(kinds);
    for (Kind& kind : kinds) {
        kind.low += shift;
        kind.high += shift;
    }
    all.insert(all.end(), kinds.cbegin(), kinds.cend());
}

void countBlocks(ProgrammeLoudness& result, std::span<const double> blocks) {
    const double most = *std::max_element(blocks.begin(), blocks.end());
    result.loudest = static_cast<int>(std::floor(lufsOf(most)));
    for (const double block : blocks) {
        const int below = result.loudest - static_cast<int>(std::floor(lufsOf(block)));
        const auto kind = static_cast<std::size_t>(std::clamp(below, 0, mostCounts - 1));
        if (kind >= result.blocks.size())
            result.blocks.resize(kind + 1);
        ++result.blocks[kind];
    }
}

} // namespace

ProgrammeLoudness programmeLoudness(std::span<const double> energies) {
    constexpr std::size_t length = 4; // of a block, in tenths of a second
    ProgrammeLoudness result;
    const double softest = energyOf(softestBlock);
    std::vector<double> blocks;
    double sum = 0;
    for (std::size_t i = length; i <= energies.size(); ++i) {
        const auto block = energies.subspan(i - length, length);
        const double energy = (block[0] + block[1] + block[2] + block[3]) / length;
        if (energy < softest)
            continue;
        blocks.push_back(energy);
        sum += energy;
    }
    if (blocks.empty())
        return result;
    const double gate = sum / double(blocks.size()) * std::pow(10, -gateBelowMean / 10);
    double loud = 0;
    std::size_t count = 0;
    for (const double block : blocks)
        if (block >= gate) {
            loud += block;
            ++count;
        }
    result.lufs = lufsOf(loud / double(count));
    countBlocks(result, blocks);
    return result;
}

double loudnessOfAll(std::span<const ProgrammeLoudness* const> tracks) {
    std::vector<Kind> kinds;
    for (const ProgrammeLoudness* track : tracks)
        appendAdjusted(kinds, *track);
    return gated(kinds);
}

} // namespace halvane
