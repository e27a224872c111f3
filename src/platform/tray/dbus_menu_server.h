// SPDX-License-Identifier: MIT
// com.canonical.dbusmenu as the bus sees it. Internal to DBusMenu.
#pragma once

#include "platform/tray/dbus_menu.h"
#include "platform/tray/dbus_menu_types.h"

#include <QDBusAbstractAdaptor>
#include <QStringList>

namespace halvane {

/// Entries are numbered in the order of a walk through the tree, the root being 0; the numbers are
/// good until the menu is asked for again.
class DBusMenuAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

  public:
    DBusMenuAdaptor(QObject* object, std::function<std::vector<MenuEntry>()> menu);

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QString status() const;
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

    void rebuild();
    [[nodiscard]] uint revision() const { return m_revision; }

  public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   halvane::DBusMenuLayout& layout);
    halvane::DBusMenuPropertiesList GetGroupProperties(const QList<int>& ids,
                                                       const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const halvane::DBusMenuEventList& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

  Q_SIGNALS:
    void LayoutUpdated(uint revision, int parent);
    void ItemsPropertiesUpdated(const halvane::DBusMenuPropertiesList& updatedProps,
                                const QList<int>& removedProps);
    void ItemActivationRequested(int id, uint timestamp);

  private:
    [[nodiscard]] const MenuEntry* entry(int id) const;
    [[nodiscard]] DBusMenuLayout layoutOf(int id, int depth) const;

    std::function<std::vector<MenuEntry>()> m_menu;
    MenuEntry m_root;
    std::vector<const MenuEntry*> m_byId;
    std::vector<std::vector<int>> m_childIds; ///< by id
    uint m_revision = 0;
};

} // namespace halvane
