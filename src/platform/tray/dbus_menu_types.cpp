// SPDX-License-Identifier: MIT
#include "platform/tray/dbus_menu_types.h"

#include <QDBusMetaType>

namespace halvane {

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuLayout& layout) {
    out.beginStructure();
    out << layout.id << layout.properties;
    out.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const auto& child : layout.children)
        out << QDBusVariant(QVariant::fromValue(child));
    out.endArray();
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuLayout& layout) {
    layout.children.clear();
    in.beginStructure();
    in >> layout.id >> layout.properties;
    in.beginArray();
    while (!in.atEnd()) {
        QDBusVariant child;
        in >> child;
        layout.children.append(qdbus_cast<DBusMenuLayout>(child.variant()));
    }
    in.endArray();
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuProperties& item) {
    out.beginStructure();
    out << item.id << item.properties;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuProperties& item) {
    in.beginStructure();
    in >> item.id >> item.properties;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuEvent& event) {
    out.beginStructure();
    out << event.id << event.name << event.data << event.timestamp;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuEvent& event) {
    in.beginStructure();
    in >> event.id >> event.name >> event.data >> event.timestamp;
    in.endStructure();
    return in;
}

void registerDBusMenuTypes() {
    static const bool registered = [] {
        qDBusRegisterMetaType<DBusMenuLayout>();
        qDBusRegisterMetaType<DBusMenuProperties>();
        qDBusRegisterMetaType<DBusMenuPropertiesList>();
        qDBusRegisterMetaType<DBusMenuEvent>();
        qDBusRegisterMetaType<DBusMenuEventList>();
        qDBusRegisterMetaType<DBusMenuIds>();
        qDBusRegisterMetaType<QList<QStringList>>();
        return true;
    }();
    Q_UNUSED(registered)
}

} // namespace halvane
