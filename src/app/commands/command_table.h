// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/command_id.h"
#include "model/enums.h"

#include <QString>

#include <vector>

namespace halvane {

/// Everything that decides how the commands look at a moment. Plain value.
struct CommandState {
    bool isSearchFieldFocused = false;
    bool isTextFocused = false; ///< some text field has the keyboard
    bool isShuffleEnabled = false;
    PlaybackRepeatMode repeatMode = PlaybackRepeatMode::off;
    bool stopsAfterCurrent = false;
    int sleepMinutes = 0; ///< 0: the timer is off
    bool isMiniPlayerOpen = false;
    ArtistOrder artistOrder = ArtistOrder::plain;
    QString undoName = {}; ///< of what is undone outside of text fields; empty: nothing can be
    QString redoName = {};

    bool operator==(const CommandState&) const = default;
};

/// One entry of the menus. Titles are English whatever the language setting.
struct CommandSpec {
    CommandId id = CommandId::separator;
    QString keys; ///< in portable form, several divided by "; "; may be empty
    QString (*title)(const CommandState&) = nullptr;
    bool (*isEnabled)(const CommandState&) = nullptr; ///< null: always
    /// A text field takes these keys for itself while it has the keyboard; every other command's
    /// keys win over the text field.
    bool yieldsToText = false;
};

struct MenuSpec {
    QString title;
    std::vector<CommandSpec> items;
};

/// The menu bar from left to right.
const std::vector<MenuSpec>& menuTable();

} // namespace halvane
