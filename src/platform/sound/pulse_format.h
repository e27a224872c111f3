// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/sound_output.h"

#include <pulse/channelmap.h>
#include <pulse/sample.h>

namespace halvane {

/// The stream's samples in libpulse's terms.
pa_sample_spec sampleSpec(const StreamFormat& format);
/// Which speaker each channel belongs to. A layout that names no speaker, or not as many as there
/// are channels, gets the customary one for that number.
pa_channel_map channelMap(const StreamFormat& format);

} // namespace halvane
