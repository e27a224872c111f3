// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/track_metadata_loader.h"
#include "model/enums.h"

namespace halvane {

/// The album and artist of a file that neither its tags nor its folders name. Any thread.
TrackMetadataLoader::Fallbacks fallbackNames(ResolvedLanguage language);

} // namespace halvane
