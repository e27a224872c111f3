// SPDX-License-Identifier: MIT
// The structures of com.canonical.dbusmenu. Internal to DBusMenu.
#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QVariantMap>

namespace halvane {

/// (ia{sv}av)
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

/// (ia{sv})
struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};

/// (isvu)
struct DBusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

using DBusMenuPropertiesList = QList<DBusMenuProperties>;
using DBusMenuEventList = QList<DBusMenuEvent>;
using DBusMenuIds = QList<int>;

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuProperties& item);
QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuEvent& event);

void registerDBusMenuTypes();

} // namespace halvane

Q_DECLARE_METATYPE(halvane::DBusMenuLayout)
Q_DECLARE_METATYPE(halvane::DBusMenuProperties)
Q_DECLARE_METATYPE(halvane::DBusMenuEvent)
