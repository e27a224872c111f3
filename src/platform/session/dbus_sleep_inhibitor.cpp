// SPDX-License-Identifier: MIT
#include "platform/session/dbus_sleep_inhibitor.h"

#include "platform/log.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>

#include <variant>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr uint suspendFlag = 4; // of the portal: logging out 1, switching user 2, idle 8
constexpr int patience = 10000; // milliseconds

const auto portalName = u"org.freedesktop.portal.Desktop"_s;

QDBusMessage portalInhibit() {
    auto message =
        QDBusMessage::createMethodCall(portalName, u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Inhibit"_s, u"Inhibit"_s);
    message << QString() << suspendFlag << QVariantMap{{u"reason"_s, u"Playing music"_s}};
    return message;
}

QDBusMessage portalClose(const QString& request) {
    return QDBusMessage::createMethodCall(portalName, request, u"org.freedesktop.portal.Request"_s,
                                          u"Close"_s);
}

QDBusMessage loginInhibit() {
    auto message =
        QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                                       u"org.freedesktop.login1.Manager"_s, u"Inhibit"_s);
    message << u"sleep"_s << u"Halvane"_s << u"Playing music"_s << u"block"_s;
    return message;
}

} // namespace

// Holds at most one lock: the portal's request or the login manager's open file. Asks one question
// at a time, and compares each answer with what is wanted by then.
class DBusSleepInhibitor::Client final : public QObject {
  public:
    Client(const QString& session, const QString& system)
        : m_session(session)
        , m_system(system)
        , m_portal(portalName, m_session, QDBusServiceWatcher::WatchForOwnerChange) {
        connect(&m_portal, &QDBusServiceWatcher::serviceOwnerChanged, this, &Client::portalChanged);
    }

    void setInhibited(bool inhibited) {
        m_wanted = inhibited;
        settle();
    }

  private:
    using Nothing = std::monostate;
    using Lock = std::variant<Nothing, QDBusObjectPath, QDBusUnixFileDescriptor>;

    // The portal's lock goes with the portal. One that comes may succeed where none was.
    void portalChanged() {
        if (std::holds_alternative<QDBusObjectPath>(m_lock))
            m_lock = Nothing();
        m_asksAgain = m_isAsking; // what is being asked may have come before the portal did
        settle();
    }

    void settle() {
        const bool held = !std::holds_alternative<Nothing>(m_lock);
        if (m_isAsking || m_wanted == held)
            return;
        if (m_wanted)
            askPortal();
        else
            release();
    }

    void release() {
        if (const auto* request = std::get_if<QDBusObjectPath>(&m_lock))
            m_session.asyncCall(portalClose(request->path()), patience);
        m_lock = Nothing(); // closes the login manager's file
    }

    void askPortal() {
        ask<QDBusObjectPath>(m_session, portalInhibit(), [this] { askLoginManager(); });
    }

    void askLoginManager() {
        ask<QDBusUnixFileDescriptor>(m_system, loginInhibit(), [this] {
            if (!std::exchange(m_hasComplained, true))
                qCInfo(libraryLog, "suspend can't be held off here");
        });
    }

    template<typename T, typename Otherwise>
    void ask(QDBusConnection& bus, const QDBusMessage& message, Otherwise otherwise) {
        if (!bus.isConnected()) {
            otherwise();
            return;
        }
        m_isAsking = true;
        auto* call = new QDBusPendingCallWatcher(bus.asyncCall(message, patience), this);
        connect(call, &QDBusPendingCallWatcher::finished, this, [=, this] {
            call->deleteLater();
            m_isAsking = false;
            const QDBusPendingReply<T> reply(*call);
            if (reply.isError()) {
                if (m_wanted)
                    otherwise();
                if (!m_isAsking && std::exchange(m_asksAgain, false))
                    settle();
                return;
            }
            m_lock = reply.value();
            settle();
        });
    }

    QDBusConnection m_session;
    QDBusConnection m_system;
    QDBusServiceWatcher m_portal;
    bool m_wanted = false;
    bool m_isAsking = false;
    bool m_asksAgain = false; ///< once what is being asked has failed
    bool m_hasComplained = false;
    Lock m_lock;
};

DBusSleepInhibitor::DBusSleepInhibitor(const QString& session, const QString& system)
    : m_client(std::make_unique<Client>(session, system)) {
}

DBusSleepInhibitor::DBusSleepInhibitor(const QString& session)
    : DBusSleepInhibitor(session, QDBusConnection::systemBus().name()) {
}

DBusSleepInhibitor::~DBusSleepInhibitor() = default;

void DBusSleepInhibitor::setInhibited(bool inhibited) {
    m_client->setInhibited(inhibited);
}

} // namespace halvane
