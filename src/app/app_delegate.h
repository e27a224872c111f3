// SPDX-License-Identifier: MIT
#pragma once

#include "platform/tray/menu_model.h"

#include <QPointer>

#include <vector>

namespace halvane {

class LibraryViewModel;

/// What the desktop offers of the player, whether or not a window is open. Main thread.
class AppDelegate {
  public:
    /// Unset until the main window or the mini player has appeared.
    QPointer<LibraryViewModel> library;

    /// The menu of the dock or tray, as it is now; its entries do nothing while there is no
    /// library.
    std::vector<MenuEntry> dockMenu();
};

} // namespace halvane
