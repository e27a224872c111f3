// SPDX-License-Identifier: MIT
#include "platform/single_instance.h"

#include "platform/application_adaptor.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const auto busName = u"org.halvane.Halvane"_s;
const auto objectPath = u"/org/halvane/Halvane"_s;
const auto interfaceName = u"org.freedesktop.Application"_s;
constexpr int patience = 15000; // milliseconds: the other may be at its own start yet

QVariantMap platformData(const QString& token) {
    if (token.isEmpty())
        return {};
    return {{u"activation-token"_s, token}, {u"desktop-startup-id"_s, token}};
}

QDBusMessage messageFor(const StartRequest& request) {
    const auto call = [](const QString& method) {
        return QDBusMessage::createMethodCall(busName, objectPath, interfaceName, method);
    };
    const auto data = platformData(request.activationToken);
    if (!request.action.isEmpty())
        return call(u"ActivateAction"_s) << request.action << QVariantList() << data;
    if (!request.files.isEmpty())
        return call(u"Open"_s) << QUrl::toStringList(request.files, QUrl::FullyEncoded) << data;
    return call(u"Activate"_s) << data;
}

HandOver handOverOn(const QDBusConnection& bus, const StartRequest& request) {
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(busName))
        return HandOver::nobodyThere;
    const auto answer = bus.call(messageFor(request), QDBus::Block, patience);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return HandOver::done;
    // One that was ending, or was killed a moment ago, goes without an answer.
    return bus.interface()->isServiceRegistered(busName) ? HandOver::failed : HandOver::nobodyThere;
}

} // namespace

HandOver handOver(const StartRequest& request) {
    const auto name = u"halvane-hand-over"_s;
    const auto result =
        handOverOn(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name), request);
    QDBusConnection::disconnectFromBus(name);
    return result;
}

SingleInstance::SingleInstance(const QString& connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection) {
    auto* adaptor = new ApplicationAdaptor(this);
    adaptor->onActivate = [this](const QString& token) { Q_EMIT activated(token); };
    adaptor->onOpen = [this](const auto& files, const auto& token) { Q_EMIT opened(files, token); };
    adaptor->onAction = [this](const auto& action, const auto& token) {
        Q_EMIT actionActivated(action, token);
    };
}

SingleInstance::~SingleInstance() {
    if (m_claimed)
        QDBusConnection(m_connection).unregisterService(busName);
}

bool SingleInstance::claim() {
    QDBusConnection bus(m_connection);
    if (!bus.isConnected())
        return true; // alone
    bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    m_claimed = bus.registerService(busName);
    return m_claimed;
}

} // namespace halvane
