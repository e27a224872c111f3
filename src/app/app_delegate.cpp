// SPDX-License-Identifier: MIT
#include "app/app_delegate.h"

#include "library/library_view_model.h"
#include "presentation/l10n.h"

namespace halvane {

std::vector<MenuEntry> AppDelegate::dockMenu() {
    const auto english = [](L10nKey key) { return L10n::text(key, ResolvedLanguage::english); };
    const auto entry = [this, english](L10nKey title, auto action) {
        MenuEntry made;
        made.title = english(title);
        made.action = [this, action] {
            if (library)
                action(*library);
        };
        return made;
    };
    const bool isPlaying = library && library->isPlaying();
    return {
        entry(isPlaying ? L10nKey::pause : L10nKey::play,
              [](LibraryViewModel& model) { model.togglePlayback(); }),
        entry(L10nKey::nextTrack, [](LibraryViewModel& model) { model.playNext(true); }),
        entry(L10nKey::previousTrack, [](LibraryViewModel& model) { model.playPrevious(); }),
    };
}

} // namespace halvane
