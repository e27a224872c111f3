// SPDX-License-Identifier: MIT
#include "platform/session/session_bus.h"

#include <QDBusConnection>

namespace halvane {

using namespace Qt::StringLiterals;

SessionBus::SessionBus(QObject* parent)
    : SessionBus(QDBusConnection::sessionBus().name(), parent) {
}

SessionBus::SessionBus(const QString& connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection)
    , m_connected(QDBusConnection(connection).isConnected()) {
    if (m_connected)
        QDBusConnection(connection)
            .connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                     u"Disconnected"_s, this, SLOT(disconnected()));
}

void SessionBus::disconnected() {
    m_connected = false;
    Q_EMIT lost();
}

} // namespace halvane
