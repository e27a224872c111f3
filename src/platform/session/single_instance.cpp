// SPDX-License-Identifier: MIT
#include "platform/session/single_instance.h"

#include "platform/session/application_adaptor.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
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

QList<QDBusMessage> messagesFor(const StartRequest& request) {
    const auto data = platformData(request.activationToken);
    QList<QDBusMessage> messages;
    const auto add = [&](const QString& method, const QVariantList& arguments) {
        messages.append(QDBusMessage::createMethodCall(busName, objectPath, interfaceName, method));
        messages.last().setArguments(arguments + QVariantList{data});
    };
    if (!request.files.isEmpty())
        add(u"Open"_s, {QUrl::toStringList(request.files, QUrl::FullyEncoded)});
    for (const auto& action : request.actions) {
        QVariantList parameter;
        if (action.contains(u'='))
            parameter.append(action.section(u'=', 1));
        add(u"ActivateAction"_s, {action.section(u'=', 0, 0), QVariant(parameter)});
    }
    if (messages.isEmpty())
        add(u"Activate"_s, {});
    return messages;
}

QDBusMessage playerQuestion() {
    auto message = QDBusMessage::createMethodCall(
        busName, u"/org/mpris/MediaPlayer2"_s, u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s);
    return message << u"org.mpris.MediaPlayer2.Player"_s;
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

    // The outcome, and the answer to the last message.
    [[nodiscard]] std::pair<HandOver, QDBusMessage>
    hold(const QList<QDBusMessage>& messages) const {
        if (const auto runs = otherRuns(); !runs || !*runs)
            return {runs ? HandOver::nobodyThere : withoutBus(), {}};
        QDBusMessage answer;
        for (const auto& message : messages) {
            answer = ask(message);
            if (answer.type() != QDBusMessage::ReplyMessage)
                return {unanswered(answer), {}};
        }
        return {HandOver::done, answer};
    }

  private:
    [[nodiscard]] HandOver unanswered(const QDBusMessage& answer) const {
        if (QDBusError(answer).type() == QDBusError::InvalidArgs)
            return HandOver::refused;
        // An instance that is ending, or was killed a moment ago, does not answer.
        if (const auto runs = otherRuns())
            return *runs ? HandOver::notAnswered : HandOver::nobodyThere;
        return withoutBus();
    }

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

std::pair<HandOver, QDBusMessage> conversation(const QList<QDBusMessage>& messages,
                                               std::chrono::milliseconds patience) {
    const auto name = u"halvane-hand-over"_s;
    auto bus = connectedWithin(patience, name);
    if (!bus)
        return {HandOver::busSilent, {}};
    std::pair<HandOver, QDBusMessage> result{HandOver::nobodyThere, {}};
    if (bus->isConnected())
        result = Conversation(*bus, patience).hold(messages);
    bus.reset();
    QDBusConnection::disconnectFromBus(name);
    return result;
}

} // namespace

HandOver handOver(const StartRequest& request, std::chrono::milliseconds patience) {
    return conversation(messagesFor(request), patience).first;
}

PlayerAnswer askPlayer(std::chrono::milliseconds patience) {
    const auto [outcome, answer] = conversation({playerQuestion()}, patience);
    auto properties = qdbus_cast<QVariantMap>(answer.arguments().value(0));
    QVariant& track = properties[u"Metadata"_s];
    track = qdbus_cast<QVariantMap>(track);
    return {outcome, properties};
}

SingleInstance::SingleInstance(const QString& connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection) {
    auto* adaptor = new ApplicationAdaptor(this);
    adaptor->onActivate = [this](const QString& token) { Q_EMIT activated(token); };
    adaptor->onOpen = [this](const auto& files, const auto& token) { Q_EMIT opened(files, token); };
    adaptor->objectionTo = [this](const QString& action) {
        return m_checkAction ? m_checkAction(action) : QString();
    };
    adaptor->connection = connection;
    adaptor->onAction = [this](const auto& action, const auto& token) {
        Q_EMIT actionActivated(action, token);
    };
}

SingleInstance::~SingleInstance() {
    if (m_claimed)
        QDBusConnection(m_connection).unregisterService(busName);
}

void SingleInstance::setActionCheck(std::function<QString(const QString&)> check) {
    m_checkAction = std::move(check);
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
