// SPDX-License-Identifier: MIT
#include "platform/session/dbus_notifications.h"

#include "platform/log.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QUrl>

#include <optional>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const auto service = u"org.freedesktop.Notifications"_s;
const auto path = u"/org/freedesktop/Notifications"_s;
constexpr int patience = 5000; // milliseconds

QDBusMessage call(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, service, method);
}

} // namespace

// Knows the server's capabilities, and which number the server gave to each identifier.
class DBusNotifications::Client final : public QObject {
    Q_OBJECT

  public:
    explicit Client(const QString& connectionName)
        : m_connection(connectionName)
        , m_watcher(service, m_connection, QDBusServiceWatcher::WatchForOwnerChange) {
        connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString&, const QString& before, const QString&) {
                    if (!before.isEmpty())
                        forgetServer();
                });
        m_connection.connect(service, path, service, u"NotificationClosed"_s, this,
                             SLOT(closed(uint, uint)));
    }

    void prepare() {
        if (!m_capabilities)
            askForCapabilities(false);
    }

    void post(const Notification& notification) {
        m_waiting.insert(notification.identifier, notification);
        if (m_capabilities)
            send(notification.identifier);
        else
            askForCapabilities(true);
    }

  private Q_SLOTS:
    void closed(uint id, uint) {
        m_ids.removeIf([id](const auto& entry) { return entry.value() == id; });
    }

  private:
    void forgetServer() {
        ++m_generation;
        m_capabilities.reset();
        m_isAsking = false;
        m_ids.clear();
        m_inFlight.clear();
        m_waiting.clear();
    }

    // Starts a server that is not running only with leave to do so.
    void askForCapabilities(bool mayStartServer) {
        if (!m_connection.isConnected() || std::exchange(m_isAsking, true))
            return;
        auto question = call(u"GetCapabilities"_s);
        question.setAutoStartService(mayStartServer);
        whenAnswered<QStringList>(question, [this](const QDBusPendingReply<QStringList>& reply) {
            m_isAsking = false;
            if (reply.isError()) {
                m_waiting.clear();
                return;
            }
            m_capabilities = reply.value();
            const auto identifiers = m_waiting.keys();
            for (const auto& identifier : identifiers)
                send(identifier);
        });
    }

    // Sends one call of an identifier at a time, because the next needs the number that this one
    // gives.
    void send(const QString& identifier) {
        if (!m_capabilities || m_inFlight.contains(identifier) || !m_waiting.contains(identifier))
            return;
        m_inFlight.insert(identifier);
        const auto message = notify(m_waiting.take(identifier), m_ids.value(identifier, 0));
        whenAnswered<uint>(message, [this, identifier](const QDBusPendingReply<uint>& reply) {
            m_inFlight.remove(identifier);
            if (reply.isError())
                qCInfo(libraryLog, "notification not shown: %s",
                       qUtf8Printable(reply.error().message()));
            else
                m_ids.insert(identifier, reply.value());
            send(identifier);
        });
    }

    [[nodiscard]] QDBusMessage notify(const Notification& notification, uint replaces) const {
        const bool markup = m_capabilities->contains(u"body-markup"_s);
        QVariantMap hints{
            {u"desktop-entry"_s, u"org.halvane.Halvane"_s},
            {u"urgency"_s, QVariant::fromValue(static_cast<uchar>(0))},
            {u"transient"_s, true},
        };
        if (notification.imagePath)
            hints.insert(u"image-path"_s,
                         QUrl::fromLocalFile(*notification.imagePath).toString(QUrl::FullyEncoded));
        auto message = call(u"Notify"_s);
        message << u"Halvane"_s << replaces << u"org.halvane.Halvane"_s << notification.title
                << (markup ? notification.body.toHtmlEscaped() : notification.body) << QStringList()
                << hints << -1;
        return message;
    }

    // Runs the action with the answer, unless the server has changed meanwhile.
    template<typename T, typename Action>
    void whenAnswered(const QDBusMessage& message, Action action) {
        auto* pending =
            new QDBusPendingCallWatcher(m_connection.asyncCall(message, patience), this);
        connect(pending, &QDBusPendingCallWatcher::finished, this,
                [this, action, generation = m_generation](QDBusPendingCallWatcher* answered) {
                    answered->deleteLater();
                    if (generation == m_generation)
                        action(QDBusPendingReply<T>(*answered));
                });
    }

    QDBusConnection m_connection;
    QDBusServiceWatcher m_watcher;
    std::optional<QStringList> m_capabilities; // none: not asked yet
    bool m_isAsking = false;
    int m_generation = 0;                   // counts the servers
    QHash<QString, uint> m_ids;             // by identifier, of what is shown
    QSet<QString> m_inFlight;               // identifiers
    QHash<QString, Notification> m_waiting; // by identifier, the newest
};

DBusNotifications::DBusNotifications(const QString& connection)
    : m_client(std::make_unique<Client>(connection)) {
}

DBusNotifications::~DBusNotifications() = default;

void DBusNotifications::requestAuthorization() {
    m_client->prepare();
}

void DBusNotifications::post(const Notification& notification) {
    m_client->post(notification);
}

} // namespace halvane

#include "dbus_notifications.moc"
