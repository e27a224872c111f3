// SPDX-License-Identifier: MIT
#include "support/private_bus.h"

#include <QCoreApplication>
#include <QDBusPendingCall>
#include <QFile>

#include <stdexcept>

namespace halvane::test {

using namespace Qt::StringLiterals;

namespace {

int connectionCount = 0;

} // namespace

PrivateBus::PrivateBus() {
    const auto configuration = m_folder.filePath(u"bus.conf"_s);
    QFile file(configuration);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("no folder for a private bus");
    file.write("<busconfig><type>session</type><listen>" + address().toUtf8() +
               "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
               "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
               "<allow own=\"*\"/></policy></busconfig>");
    file.close();
    m_daemon = std::make_unique<ChildProcess>(
        u"dbus-daemon"_s, QStringList{u"--config-file=%1"_s.arg(configuration), u"--nofork"_s},
        QProcessEnvironment::systemEnvironment(), m_folder.filePath(u"bus.log"_s));
    // The socket is there a moment before the daemon listens at it.
    if (!waitFor([this] { return connect().isConnected(); }))
        throw std::runtime_error("the private bus does not start");
}

PrivateBus::~PrivateBus() {
    for (const auto& name : m_connections)
        QDBusConnection::disconnectFromBus(name);
}

QString PrivateBus::address() const {
    return u"unix:path="_s + m_folder.filePath(u"socket"_s);
}

QDBusConnection PrivateBus::connect() {
    m_connections.append(u"test-%1"_s.arg(++connectionCount));
    return QDBusConnection::connectToBus(address(), m_connections.last());
}

QDBusMessage callAndWait(QDBusConnection from, const QDBusMessage& message) {
    const auto pending = from.asyncCall(message);
    waitFor([&] { return pending.isFinished(); });
    // The answer is known to the bus's thread first: signals that came before it may still be
    // queued.
    QCoreApplication::processEvents();
    return pending.reply();
}

} // namespace halvane::test
