// SPDX-License-Identifier: MIT
#include "app/app_delegate.h"

#include "library/library_view_model.h"
#include "library/playback/transport.h"
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
    const bool isPlaying = library && library->transport()->isPlaying();
    return {
        entry(isPlaying ? L10nKey::pause : L10nKey::play,
              [](LibraryViewModel& model) { model.transport()->togglePlayback(); }),
        entry(L10nKey::nextTrack,
              [](LibraryViewModel& model) { model.transport()->playNext(true); }),
        entry(L10nKey::previousTrack,
              [](LibraryViewModel& model) { model.transport()->playPrevious(); }),
    };
}

} // namespace halvane
