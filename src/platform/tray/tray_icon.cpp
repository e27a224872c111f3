// SPDX-License-Identifier: MIT
#include "platform/tray/tray_icon.h"

#include "platform/tray/dbus_menu.h"
#include "platform/tray/tray_adaptor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const auto watcherName = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherPath = u"/StatusNotifierWatcher"_s;
const auto itemPath = u"/StatusNotifierItem"_s;
const auto menuPath = u"/StatusNotifierItem/Menu"_s;

QDBusMessage watcherCall(const QString& interface, const QString& method) {
    return QDBusMessage::createMethodCall(watcherName, watcherPath, interface, method);
}

} // namespace

// Registers with the watcher that there is, and knows whether anything shows the icon.
class TrayIcon::Item final : public QObject {
    Q_OBJECT

  public:
    Item(TrayIcon& icon, const QString& connection, const QString& title,
         std::function<std::vector<MenuEntry>()> menu)
        : m_connection(connection)
        , m_icon(icon)
        , m_menu(connection, menuPath, std::move(menu))
        , m_adaptor(new TrayAdaptor(this, title, menuPath))
        , m_watcher(watcherName, m_connection, QDBusServiceWatcher::WatchForOwnerChange) {
        m_adaptor->onClick = [this](QPoint where) { Q_EMIT m_icon.clicked(where); };
        m_adaptor->onScroll = [this](int steps) { Q_EMIT m_icon.scrolled(steps); };
        m_adaptor->onActivationToken = [this](const QString& token) {
            Q_EMIT m_icon.activationTokenProvided(token);
        };
        if (!m_connection.isConnected())
            return;
        m_connection.registerObject(itemPath, this, QDBusConnection::ExportAdaptors);
        connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString&, const QString&, const QString& owner) {
                    if (owner.isEmpty())
                        setShown(false);
                    else
                        offer();
                });
        for (const auto* signal :
             {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
            m_connection.connect(watcherName, watcherPath, watcherName, QLatin1String(signal), this,
                                 SLOT(lookForHost()));
        offer();
    }

    ~Item() override { m_connection.unregisterObject(itemPath); }

    [[nodiscard]] bool isShown() const { return m_isShown; }
    TrayAdaptor& adaptor() { return *m_adaptor; }

  private Q_SLOTS:
    void lookForHost() {
        auto question = watcherCall(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        question << watcherName << u"IsStatusNotifierHostRegistered"_s;
        auto* pending = new QDBusPendingCallWatcher(m_connection.asyncCall(question), this);
        connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
            pending->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply(*pending);
            setShown(!reply.isError() && reply.value().variant().toBool());
        });
    }

  private:
    void offer() {
        auto message = watcherCall(watcherName, u"RegisterStatusNotifierItem"_s);
        message.setAutoStartService(false);
        message << m_connection.baseService();
        auto* pending = new QDBusPendingCallWatcher(m_connection.asyncCall(message), this);
        connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
            pending->deleteLater();
            if (pending->isError())
                setShown(false);
            else
                lookForHost();
        });
    }

    void setShown(bool shown) {
        if (std::exchange(m_isShown, shown) != shown)
            Q_EMIT m_icon.shownChanged();
    }

    QDBusConnection m_connection;
    TrayIcon& m_icon;
    DBusMenu m_menu;
    TrayAdaptor* m_adaptor; // a child
    QDBusServiceWatcher m_watcher;
    bool m_isShown = false;
};

TrayIcon::TrayIcon(const QString& connection, const QString& title,
                   std::function<std::vector<MenuEntry>()> menu, QObject* parent)
    : QObject(parent)
    , m_item(std::make_unique<Item>(*this, connection, title, std::move(menu))) {
}

TrayIcon::~TrayIcon() = default;

bool TrayIcon::isShown() const {
    return m_item->isShown();
}

void TrayIcon::setIcon(const QString& themeName, const QList<TrayPixmap>& pixmaps) {
    m_item->adaptor().setIcon(themeName, pixmaps);
}

void TrayIcon::setToolTip(const QString& text) {
    m_item->adaptor().setToolTip(text);
}

} // namespace halvane

#include "tray_icon.moc"
