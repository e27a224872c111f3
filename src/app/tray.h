// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/color_scheme.h"
#include "platform/tray/tray_icon.h"

#include <QObject>

namespace halvane {

class HalvaneApp;

/// The player's symbol in the desktop's tray. A click opens the panel beside it, its menu is the
/// dock menu, and the wheel over it changes the volume. Main thread.
class Tray : public QObject {
    Q_OBJECT

  public:
    /// Takes the name of a D-Bus connection; the application must outlive this object.
    Tray(HalvaneApp& app, const QString& connection, QObject* parent = nullptr);

    /// The desktop shows the icon, so that the player can be reached without a window.
    [[nodiscard]] bool isShown() const { return m_icon.isShown(); }

  Q_SIGNALS:
    void shownChanged();

  private:
    void showIcon();
    void showTrack();
    void changeVolume(int steps);
    void togglePanel(QPoint icon);

    HalvaneApp& m_app;
    ColorScheme m_scheme;
    TrayIcon m_icon;
};

} // namespace halvane
