// SPDX-License-Identifier: MIT
// How loud whole pieces of music are (ITU-R BS.1770, EBU R 128). Pure; any thread.
#pragma once

#include <span>
#include <vector>

namespace halvane {

/// The gated loudness of a track, and enough to work out that of an album from its tracks. Plain
/// value, any thread.
struct ProgrammeLoudness {
    /// In LUFS, of what is silent throughout or too short to tell.
    static constexpr double silence = -70;

    double lufs = silence;
    double truePeakDb = -180; ///< 0 is full scale
    /// How many blocks of 0.4 seconds, of which one begins each tenth of a second, are this loud:
    /// from `loudest` LUFS up to the next whole number, one LU softer, and so on. The last counts
    /// softer ones, too. Empty in silence.
    std::vector<int> blocks;
    int loudest = 0;

    [[nodiscard]] bool isSilent() const { return blocks.empty(); }
    bool operator==(const ProgrammeLoudness&) const = default;
};

/// The gated loudness of a sound whose K-weighted mean squares these are, for each tenth of a
/// second. The peak is left as it is.
ProgrammeLoudness programmeLoudness(std::span<const double> energies);

/// The gated loudness in LUFS of all tracks as if they were one sound, by their blocks. It is exact
/// to some hundredths. Silent if all of them are.
double loudnessOfAll(std::span<const ProgrammeLoudness* const> tracks);

} // namespace halvane
