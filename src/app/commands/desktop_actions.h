// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/command_id.h"

#include <QString>

#include <optional>
#include <span>

namespace halvane {

/// An action that the desktop shows in the menu of the program's icon.
struct DesktopAction {
    QString name; ///< as the desktop entry and the command line have it
    CommandId command;
};

std::span<const DesktopAction> desktopActions();

/// What an action asks for; none when there is no action of this name.
std::optional<CommandId> commandOfAction(const QString& name);

} // namespace halvane
