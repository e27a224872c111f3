// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/color_scheme.h"
#include "platform/tray/tray_icon.h"

#include <QObject>

namespace halvane {

class HalvaneApp;

/// The player in the desktop's tray: the waveform symbol, whose click opens the small panel beside
/// it, whose menu is the dock menu, and over which the wheel changes the volume. Main thread.
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
    void togglePanel(QPoint icon);

    HalvaneApp& m_app;
    ColorScheme m_scheme;
    TrayIcon m_icon;
};

} // namespace halvane
