// SPDX-License-Identifier: MIT
// org.kde.StatusNotifierItem as the bus sees it. Internal to TrayIcon.
#pragma once

#include "platform/tray/tray_icon.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusObjectPath>

namespace halvane {

/// (iiay)
struct TrayImage {
    int width = 0;
    int height = 0;
    QByteArray argb;
};
using TrayImageList = QList<TrayImage>;

/// (sa(iiay)ss)
struct TrayToolTip {
    QString icon;
    TrayImageList images;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& out, const TrayImage& image);
const QDBusArgument& operator>>(const QDBusArgument& in, TrayImage& image);
QDBusArgument& operator<<(QDBusArgument& out, const TrayToolTip& tip);
const QDBusArgument& operator>>(const QDBusArgument& in, TrayToolTip& tip);

class TrayAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(uint WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(halvane::TrayImageList IconPixmap READ iconPixmap)
    Q_PROPERTY(halvane::TrayToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

  public:
    TrayAdaptor(QObject* object, const QString& title, const QString& menuPath);

    [[nodiscard]] QString category() const;
    [[nodiscard]] QString id() const;
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString status() const;
    [[nodiscard]] uint windowId() const { return 0; }
    [[nodiscard]] QString iconName() const { return m_iconName; }
    [[nodiscard]] TrayImageList iconPixmap() const { return m_images; }
    [[nodiscard]] TrayToolTip toolTip() const { return {{}, {}, m_title, m_toolTip}; }
    [[nodiscard]] bool itemIsMenu() const { return false; }
    [[nodiscard]] QDBusObjectPath menu() const { return QDBusObjectPath(m_menuPath); }

    void setIcon(const QString& name, const QList<TrayPixmap>& pixmaps);
    void setToolTip(const QString& text);

    // Not signals: an adaptor's signals go out on the bus.
    std::function<void(QPoint)> onClick;
    std::function<void(int)> onScroll;
    std::function<void(const QString&)> onActivationToken;

  public Q_SLOTS:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);
    void ProvideXdgActivationToken(const QString& token);

  Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString& status);

  private:
    QString m_title;
    QString m_menuPath;
    QString m_iconName;
    TrayImageList m_images;
    QString m_toolTip;
    int m_scrolled = 0; ///< eighths of a degree, not yet a whole step
};

} // namespace halvane

Q_DECLARE_METATYPE(halvane::TrayImage)
Q_DECLARE_METATYPE(halvane::TrayToolTip)
