// SPDX-License-Identifier: MIT
#include "platform/tray/global_menu.h"

#include "platform/tray/dbus_menu.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QSet>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const auto registrarName = u"com.canonical.AppMenu.Registrar"_s;
const auto menuBarPath = u"/org/halvane/Halvane/MenuBar"_s;

} // namespace

class GlobalMenu::Registrar final : public QObject {
  public:
    Registrar(GlobalMenu& owner, const QString& connection,
              std::function<std::vector<MenuEntry>()> menu)
        : m_owner(owner)
        , m_connection(connection)
        , m_menu(connection, menuBarPath, std::move(menu))
        , m_watcher(registrarName, m_connection, QDBusServiceWatcher::WatchForOwnerChange) {
        connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString&, const QString&, const QString& newOwner) {
                    setAvailable(!newOwner.isEmpty());
                });
        if (m_connection.isConnected())
            askWhetherThere();
    }

    [[nodiscard]] bool isAvailable() const { return m_isAvailable; }
    void menuChanged() { m_menu.changed(); }

    void registerWindow(quint32 window) {
        m_windows.insert(window);
        if (m_isAvailable)
            announce(window);
    }

  private:
    void askWhetherThere() {
        auto question =
            QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                           u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
        question << registrarName;
        auto* pending = new QDBusPendingCallWatcher(m_connection.asyncCall(question), this);
        connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
            pending->deleteLater();
            const QDBusPendingReply<bool> reply(*pending);
            if (!reply.isError() && reply.value())
                setAvailable(true);
        });
    }

    void announce(quint32 window) {
        auto message =
            QDBusMessage::createMethodCall(registrarName, u"/com/canonical/AppMenu/Registrar"_s,
                                           registrarName, u"RegisterWindow"_s);
        message << window << QVariant::fromValue(QDBusObjectPath(menuBarPath));
        m_connection.asyncCall(message);
    }

    void setAvailable(bool available) {
        if (std::exchange(m_isAvailable, available) == available)
            return;
        if (available) {
            for (const auto window : std::as_const(m_windows))
                announce(window);
        }
        Q_EMIT m_owner.availableChanged();
    }

    GlobalMenu& m_owner;
    QDBusConnection m_connection;
    DBusMenu m_menu;
    QDBusServiceWatcher m_watcher;
    QSet<quint32> m_windows;
    bool m_isAvailable = false;
};

GlobalMenu::GlobalMenu(const QString& connection, std::function<std::vector<MenuEntry>()> menu,
                       QObject* parent)
    : QObject(parent)
    , m_registrar(std::make_unique<Registrar>(*this, connection, std::move(menu))) {
}

GlobalMenu::~GlobalMenu() = default;

bool GlobalMenu::isAvailable() const {
    return m_registrar->isAvailable();
}

void GlobalMenu::registerWindow(quint32 window) {
    m_registrar->registerWindow(window);
}

void GlobalMenu::menuChanged() {
    m_registrar->menuChanged();
}

} // namespace halvane
