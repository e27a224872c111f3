// SPDX-License-Identifier: MIT
#include "platform/session/single_instance.h"

#include "platform/session/application_adaptor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>

#include <future>
#include <optional>
#include <thread>
#include <utility>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const auto busName = u"org.halvane.Halvane"_s;
const auto objectPath = u"/org/halvane/Halvane"_s;
const auto interfaceName = u"org.freedesktop.Application"_s;

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

// Connects in a thread of its own, because QtDBus waits without end for a bus that accepts and then
// says nothing. None when that takes too long.
std::optional<QDBusConnection> connectedWithin(std::chrono::milliseconds patience,
                                               const QString& name) {
    std::promise<QDBusConnection> promise;
    auto connection = promise.get_future();
    std::thread([name, promise = std::move(promise)]() mutable {
        promise.set_value(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name));
    }).detach();
    if (connection.wait_for(patience) == std::future_status::timeout)
        return {};
    return connection.get();
}

// The conversation of one start with the instance that runs.
class Conversation {
  public:
    Conversation(const QDBusConnection& bus, std::chrono::milliseconds patience)
        : m_bus(bus)
        , m_patience(static_cast<int>(patience.count())) {}

    [[nodiscard]] HandOver handOver(const StartRequest& request) const {
        if (const auto runs = otherRuns(); !runs || !*runs)
            return runs ? HandOver::nobodyThere : withoutBus();
        if (ask(messageFor(request)).type() == QDBusMessage::ReplyMessage)
            return HandOver::done;
        // An instance that is ending, or was killed a moment ago, does not answer.
        if (const auto runs = otherRuns())
            return *runs ? HandOver::notAnswered : HandOver::nobodyThere;
        return withoutBus();
    }

  private:
    [[nodiscard]] QDBusMessage ask(const QDBusMessage& message) const {
        return m_bus.call(message, QDBus::Block, m_patience);
    }

    // None when the bus doesn't say.
    [[nodiscard]] std::optional<bool> otherRuns() const {
        auto question =
            QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                           u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
        const QDBusReply<bool> answer = ask(question << busName);
        return answer.isValid() ? std::optional(answer.value()) : std::nullopt;
    }

    [[nodiscard]] HandOver withoutBus() const {
        return m_bus.isConnected() ? HandOver::busSilent : HandOver::busLost;
    }

    QDBusConnection m_bus;
    int m_patience; // milliseconds
};

} // namespace

HandOver handOver(const StartRequest& request, std::chrono::milliseconds patience) {
    const auto name = u"halvane-hand-over"_s;
    auto bus = connectedWithin(patience, name);
    if (!bus)
        return HandOver::busSilent;
    const auto result =
        bus->isConnected() ? Conversation(*bus, patience).handOver(request) : HandOver::nobodyThere;
    bus.reset();
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
