// SPDX-License-Identifier: MIT
#include "app/commands/desktop_actions.h"

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

std::span<const DesktopAction> desktopActions() {
    static const DesktopAction actions[] = {
        {u"PlayPause"_s, CommandId::playPause},
        {u"Next"_s, CommandId::nextTrack},
        {u"Previous"_s, CommandId::previousTrack},
    };
    return actions;
}

std::optional<CommandId> commandOfAction(const QString& name) {
    const auto actions = desktopActions();
    const auto found = std::ranges::find(actions, name, &DesktopAction::name);
    return found == actions.end() ? std::nullopt : std::optional(found->command);
}

} // namespace halvane
