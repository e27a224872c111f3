// SPDX-License-Identifier: MIT
#include "platform/sound/pulse_format.h"

#include <array>
#include <bit>

namespace halvane {

namespace {

/// By the bits of WAVEFORMATEXTENSIBLE's channel mask.
constexpr std::array speakers{
    PA_CHANNEL_POSITION_FRONT_LEFT,
    PA_CHANNEL_POSITION_FRONT_RIGHT,
    PA_CHANNEL_POSITION_FRONT_CENTER,
    PA_CHANNEL_POSITION_LFE,
    PA_CHANNEL_POSITION_REAR_LEFT,
    PA_CHANNEL_POSITION_REAR_RIGHT,
    PA_CHANNEL_POSITION_FRONT_LEFT_OF_CENTER,
    PA_CHANNEL_POSITION_FRONT_RIGHT_OF_CENTER,
    PA_CHANNEL_POSITION_REAR_CENTER,
    PA_CHANNEL_POSITION_SIDE_LEFT,
    PA_CHANNEL_POSITION_SIDE_RIGHT,
    PA_CHANNEL_POSITION_TOP_CENTER,
    PA_CHANNEL_POSITION_TOP_FRONT_LEFT,
    PA_CHANNEL_POSITION_TOP_FRONT_CENTER,
    PA_CHANNEL_POSITION_TOP_FRONT_RIGHT,
    PA_CHANNEL_POSITION_TOP_REAR_LEFT,
    PA_CHANNEL_POSITION_TOP_REAR_CENTER,
    PA_CHANNEL_POSITION_TOP_REAR_RIGHT,
};

} // namespace

pa_sample_spec sampleSpec(const StreamFormat& format) {
    return {PA_SAMPLE_FLOAT32NE, std::uint32_t(format.sampleRate), std::uint8_t(format.channels)};
}

pa_channel_map channelMap(const StreamFormat& format) {
    pa_channel_map map;
    const bool named = std::popcount(format.channelLayout) == format.channels &&
                       format.channelLayout >> speakers.size() == 0;
    // One channel is for every speaker, not for the centre one alone.
    if (!named || format.channels == 1) {
        pa_channel_map_init_extend(&map, unsigned(format.channels), PA_CHANNEL_MAP_WAVEEX);
        return map;
    }
    pa_channel_map_init(&map);
    for (std::size_t bit = 0; bit < speakers.size(); ++bit)
        if (format.channelLayout >> bit & 1)
            map.map[map.channels++] = speakers[bit];
    return map;
}

} // namespace halvane
