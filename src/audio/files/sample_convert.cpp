// SPDX-License-Identifier: MIT
#include "audio/files/sample_convert.h"

#include <algorithm>
#include <cmath>

namespace halvane {
namespace {

float toFloat(std::uint8_t v) {
    return static_cast<float>(int(v) - 128) * 0x1p-7F;
}
float toFloat(std::int16_t v) {
    return static_cast<float>(v) * 0x1p-15F;
}
float toFloat(std::int32_t v) {
    return static_cast<float>(v) * 0x1p-31F;
}
float toFloat(std::int64_t v) {
    return static_cast<float>(v) * 0x1p-63F;
}
// A file may hold any bits. What is no number would stay in the filters of a sound server and
// silence every program; what no recording holds becomes something that can be reckoned with.
template<typename T>
float bounded(T v) {
    constexpr T loudest = 256; // 48 dB above full scale
    return std::isnan(v) ? 0.0F : static_cast<float>(std::clamp(v, -loudest, loudest));
}
float toFloat(float v) {
    return bounded(v);
}
float toFloat(double v) {
    return bounded(v);
}

template<typename T>
void convert(const SampleBlock& block, std::size_t first, std::size_t frames, float* out) {
    const auto channels = static_cast<std::size_t>(block.channels);
    const auto plane = [&](std::size_t channel) {
        return reinterpret_cast<const T*>(block.planes[channel]) + first;
    };
    if (!block.planar || channels == 1) {
        const T* in = reinterpret_cast<const T*>(block.planes[0]) + first * channels;
        for (std::size_t i = 0; i < frames * channels; ++i)
            out[i] = toFloat(in[i]);
    } else if (channels == 2) { // the common case, in a form that compilers vectorise
        const T* left = plane(0);
        const T* right = plane(1);
        for (std::size_t i = 0; i < frames; ++i) {
            out[2 * i] = toFloat(left[i]);
            out[2 * i + 1] = toFloat(right[i]);
        }
    } else {
        for (std::size_t c = 0; c < channels; ++c) {
            const T* in = plane(c);
            for (std::size_t i = 0; i < frames; ++i)
                out[i * channels + c] = toFloat(in[i]);
        }
    }
}

} // namespace

void toInterleavedFloat(const SampleBlock& block, std::size_t first, std::size_t frames,
                        float* out) noexcept {
    switch (block.kind) {
    case SampleKind::u8:
        return convert<std::uint8_t>(block, first, frames, out);
    case SampleKind::s16:
        return convert<std::int16_t>(block, first, frames, out);
    case SampleKind::s32:
        return convert<std::int32_t>(block, first, frames, out);
    case SampleKind::s64:
        return convert<std::int64_t>(block, first, frames, out);
    case SampleKind::f32:
        return convert<float>(block, first, frames, out);
    case SampleKind::f64:
        return convert<double>(block, first, frames, out);
    }
}

} // namespace halvane
