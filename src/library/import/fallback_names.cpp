// SPDX-License-Identifier: MIT
#include "library/import/fallback_names.h"

#include "presentation/l10n.h"

namespace halvane {

TrackMetadataLoader::Fallbacks fallbackNames(ResolvedLanguage language) {
    return {L10n::text(L10nKey::draggedFiles, language), L10n::text(L10nKey::localFile, language)};
}

} // namespace halvane
