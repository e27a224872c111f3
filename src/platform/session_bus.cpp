// SPDX-License-Identifier: MIT
#include "platform/session_bus.h"

#include <QDBusConnection>

namespace halvane {

using namespace Qt::StringLiterals;

SessionBus::SessionBus(QObject* parent)
    : QObject(parent)
    , m_connected(QDBusConnection::sessionBus().isConnected()) {
    if (m_connected)
        QDBusConnection::sessionBus().connect({}, u"/org/freedesktop/DBus/Local"_s,
                                              u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
                                              this, SLOT(disconnected()));
}

QString SessionBus::connectionName() const {
    return QDBusConnection::sessionBus().name();
}

void SessionBus::disconnected() {
    m_connected = false;
    Q_EMIT lost();
}

} // namespace halvane
