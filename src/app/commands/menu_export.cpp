// SPDX-License-Identifier: MIT
#include "app/commands/menu_export.h"

#include "app/commands/commands.h"

namespace halvane {

std::vector<MenuEntry> exportedMenus(Commands& commands) {
    std::vector<MenuEntry> menus;
    for (const auto* menu : std::as_const(commands.menus())) {
        MenuEntry& exported = menus.emplace_back();
        exported.title = menu->title();
        for (auto* command : menu->items()) {
            exported.children.push_back(
                {.title = command->isSeparator() ? QString() : command->title(),
                 .isEnabled = command->isEnabled(),
                 .shortcut = command->shortcut().toString(QKeySequence::PortableText),
                 .action = [command] { command->trigger(); },
                 .children = {}});
        }
    }
    return menus;
}

} // namespace halvane
