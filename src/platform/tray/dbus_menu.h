// SPDX-License-Identifier: MIT
#pragma once

#include "platform/tray/menu_model.h"

#include <QString>

#include <functional>
#include <memory>

namespace halvane {

/// Shows a menu to the desktop by com.canonical.dbusmenu: the menu of a tray icon, or a window's
/// menus for a bar at the top of the screen. The menu is asked for each time that the desktop is
/// about to show it. Main thread.
class DBusMenu {
  public:
    /// Takes the name of a D-Bus connection and the object's path on it. `menu` gives the entries
    /// below the root.
    DBusMenu(const QString& connection, const QString& path,
             std::function<std::vector<MenuEntry>()> menu);
    ~DBusMenu();

    [[nodiscard]] QString path() const;
    /// Something about the menu has changed.
    void changed();

  private:
    class Server;
    std::unique_ptr<Server> m_server;
};

} // namespace halvane
