// SPDX-License-Identifier: MIT
#pragma once

#include "audio/files/audio_file.h"
#include "support/audio_material.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace halvane::test {

inline const QString ffmpeg = QStringLiteral("ffmpeg -nostdin -v error -y -i \"$IN\" ");

inline std::unique_ptr<AudioFile> opened(const QString& path) {
    auto result = AudioFile::open(path);
    if (!result)
        throw std::runtime_error(path.toStdString() + ": " + result.failure().text.toStdString());
    return *std::move(result);
}

/// Reads up to `frames` frames, in uneven portions.
inline std::vector<float> readFrames(AudioFile& file, std::size_t frames) {
    const auto channels = static_cast<std::size_t>(file.format().channels);
    std::vector<float> samples(frames * channels);
    std::size_t done = 0;
    for (std::size_t portion = 1; done < frames; portion = portion * 3 % 5000 + 7) {
        const std::size_t count =
            file.read(samples.data() + done * channels, std::min(portion, frames - done));
        if (count == 0)
            break;
        done += count;
    }
    samples.resize(done * channels);
    return samples;
}

inline std::vector<float> readAll(AudioFile& file) {
    return readFrames(file, static_cast<std::size_t>(file.lengthFrames()) + 4096);
}

inline std::vector<float> readAll(const QString& path) {
    return readAll(*opened(path));
}

/// Root mean square of the difference from the original over the frames [from, to), with what was
/// played taken `late` frames later.
inline double errorWith(int late, const std::vector<float>& played,
                        const std::vector<float>& original, std::size_t from, std::size_t to) {
    double sum = 0;
    for (std::size_t i = from * 2; i < to * 2; ++i) {
        const double difference = played[i + std::size_t(late * 2)] - original[i];
        sum += difference * difference;
    }
    return std::sqrt(sum / double((to - from) * 2));
}

/// One frame out of place would differ by far more than the codec's own error does.
inline void expectInPlace(const std::vector<float>& played, const std::vector<float>& original,
                          std::size_t from, std::size_t to) {
    const double inPlace = errorWith(0, played, original, from, to);
    EXPECT_LT(inPlace, 0.6 * errorWith(1, played, original, from, to)) << from;
    EXPECT_LT(inPlace, 0.6 * errorWith(-1, played, original, from, to)) << from;
}

} // namespace halvane::test
