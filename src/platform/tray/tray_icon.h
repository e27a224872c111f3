// SPDX-License-Identifier: MIT
#pragma once

#include "platform/tray/menu_model.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace halvane {

/// A picture as the tray takes it: 32-bit ARGB in network byte order, row by row.
struct TrayPixmap {
    QSize size;
    QByteArray argb;
};

/// An icon in the desktop's tray, by StatusNotifierItem. The tray may come and go; the icon is
/// offered to each. Does nothing without a connection. Main thread.
class TrayIcon : public QObject {
    Q_OBJECT

  public:
    /// Takes the name of a D-Bus connection. `menu` is asked at each opening.
    TrayIcon(const QString& connection, const QString& title,
             std::function<std::vector<MenuEntry>()> menu, QObject* parent = nullptr);
    ~TrayIcon() override;

    /// The desktop shows the icon.
    [[nodiscard]] bool isShown() const;
    /// An icon of the desktop's theme, where it is installed, goes before the pictures.
    void setIcon(const QString& themeName, const QList<TrayPixmap>& pixmaps);
    void setToolTip(const QString& text);

  Q_SIGNALS:
    void shownChanged();
    /// A click, with its place on the screen (null where the desktop doesn't say).
    void clicked(QPoint where);
    /// Wheel steps, upwards positive.
    void scrolled(int steps);
    void activationTokenProvided(const QString& token);

  private:
    class Item;
    std::unique_ptr<Item> m_item;
};

} // namespace halvane
