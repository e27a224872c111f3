// SPDX-License-Identifier: MIT
#pragma once

#include "model/hash.h"

#include <optional>

namespace halvane {

/// What the tags of a file say of its level. A gain is the change in dB that brings the track, or
/// the whole album, to -18 LUFS. A peak is in dB, and 0 is full scale. Plain value, any thread.
struct LevelTags {
    std::optional<float> trackGain;
    std::optional<float> trackPeak;
    std::optional<float> albumGain;
    std::optional<float> albumPeak;

    bool operator==(const LevelTags&) const = default;
};

inline size_t qHash(const LevelTags& v, size_t seed = 0) {
    return Hasher(seed)
        .add(v.trackGain)
        .add(v.trackPeak)
        .add(v.albumGain)
        .add(v.albumPeak)
        .result();
}

} // namespace halvane
