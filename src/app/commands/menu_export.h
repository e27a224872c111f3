// SPDX-License-Identifier: MIT
#pragma once

#include "platform/tray/menu_model.h"

#include <vector>

namespace halvane {

class Commands;

/// The menus of the commands as the desktop is told of them. The commands must outlive what is
/// given.
std::vector<MenuEntry> exportedMenus(Commands& commands);

} // namespace halvane
