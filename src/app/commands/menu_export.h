// SPDX-License-Identifier: MIT
#pragma once

#include "platform/tray/menu_model.h"

#include <vector>

namespace halvane {

class Commands;

/// The menus in the form that the desktop takes. The commands must outlive the result.
std::vector<MenuEntry> exportedMenus(Commands& commands);

} // namespace halvane
