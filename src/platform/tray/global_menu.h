// SPDX-License-Identifier: MIT
#pragma once

#include "platform/tray/menu_model.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace halvane {

/// Offers a window's menus to a menu bar at the top of the screen
/// (com.canonical.AppMenu.Registrar), where the desktop has one. Windows are X11 windows. Main
/// thread.
class GlobalMenu : public QObject {
    Q_OBJECT

  public:
    /// Takes the name of a D-Bus connection.
    GlobalMenu(const QString& connection, std::function<std::vector<MenuEntry>()> menu,
               QObject* parent = nullptr);
    ~GlobalMenu() override;

    /// The desktop has such a bar.
    [[nodiscard]] bool isAvailable() const;
    void registerWindow(quint32 window);
    /// Titles or enabled states have changed.
    void menuChanged();

  Q_SIGNALS:
    void availableChanged();

  private:
    class Registrar;
    std::unique_ptr<Registrar> m_registrar;
};

} // namespace halvane
