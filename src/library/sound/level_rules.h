// SPDX-License-Identifier: MIT
// Which gain brings music to one loudness. Pure; any thread.
#pragma once

#include "audio/analysis/programme_loudness.h"
#include "model/level_tags.h"

#include <optional>
#include <span>
#include <vector>

namespace halvane {

/// Where all music is brought to, in LUFS: the reference of ReplayGain 2.0.
inline constexpr double targetLufs = -18;

/// What is known of one file.
struct KnownLevel {
    LevelTags tags;
    std::optional<ProgrammeLoudness> measured;
};

/// A gain to the target, and the largest peak, both in dB. Each as far as it is known.
struct Level {
    std::optional<double> gain;
    std::optional<double> peak;

    bool operator==(const Level&) const = default;
};

/// Of a track: what its tags say goes before what was measured. Silence has no gain.
Level trackLevel(const KnownLevel& track);

/// Of the album that these tracks are all of. What the tags of `own` say goes first, then those of
/// any other track, and then what was measured, if it is known of each track.
Level albumLevel(const KnownLevel& own, std::span<const KnownLevel> tracks);

/// How the user wants levels to be.
struct LevelWishes {
    double preamp = 0; ///< dB
    bool preventsClipping = true;
};

/// The gain in dB to play with, within limits. A peak that is not known counts as full scale.
double levelGain(const Level& level, const LevelWishes& wishes);

/// A measured loudness as the numbers that are stored of it: LUFS, true peak, loudest, blocks.
std::vector<double> levelNumbers(const ProgrammeLoudness& measured);
/// None of what no such numbers are.
std::optional<ProgrammeLoudness> levelFromNumbers(const std::vector<double>& numbers);

} // namespace halvane
