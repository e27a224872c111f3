// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace halvane::test {

/// A stretch of sound as integers of `bits` bits, interleaved.
struct Pcm {
    int sampleRate = 44'100;
    int channels = 2;
    int bits = 16;
    std::vector<std::int32_t> samples;

    [[nodiscard]] std::size_t frames() const {
        return samples.size() / static_cast<std::size_t>(channels);
    }
    [[nodiscard]] Pcm cut(std::size_t begin, std::size_t end) const;
    /// With full scale at 1, as exact as a float is.
    [[nodiscard]] std::vector<float> floats() const;
};

/// Tones that wander, over a little noise, peaking near -3 dBFS: the same for the same arguments.
Pcm music(std::size_t frames, int sampleRate = 44'100, int channels = 2, int bits = 16);
/// A sine on every channel, its amplitude as a fraction of full scale.
Pcm sine(double frequency, double amplitude, std::size_t frames, int sampleRate = 44'100,
         int channels = 2, int bits = 16);

/// Writes a RIFF WAVE file.
void writeWave(const Pcm& pcm, const QString& path);

/// The path of a file made from `pcm` by a shell command that reads the WAVE file $IN and writes
/// $OUT, whose name ends in `suffix`. Made once and kept in the build tree for later tests; do not
/// change it. Throws when the command fails.
QString encoded(const Pcm& pcm, const QString& suffix, const QString& command);

/// Where such files are kept: a test may put more beside them.
QString materialFolder();

} // namespace halvane::test
