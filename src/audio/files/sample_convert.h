// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace halvane {

/// How a decoder lays out the samples of one block.
enum class SampleKind { u8, s16, s32, s64, f32, f64 };

/// A decoder's block: one plane for all channels, or one a channel.
struct SampleBlock {
    SampleKind kind = SampleKind::f32;
    bool planar = false;
    int channels = 0;
    const std::uint8_t* const* planes = nullptr;
};

/// Turns `frames` frames of a block, from frame `first` on, into interleaved floats with full scale
/// at 1. Integers are scaled by a power of two and nothing else. Pure; any thread.
void toInterleavedFloat(const SampleBlock& block, std::size_t first, std::size_t frames,
                        float* out) noexcept;

} // namespace halvane
