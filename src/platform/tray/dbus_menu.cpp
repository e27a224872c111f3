// SPDX-License-Identifier: MIT
#include "platform/tray/dbus_menu.h"

#include "platform/tray/dbus_menu_server.h"

#include <QDBusConnection>

namespace halvane {

class DBusMenu::Server final : public QObject {
  public:
    Server(const QString& connection, const QString& path,
           std::function<std::vector<MenuEntry>()> menu)
        : m_connection(connection)
        , m_path(path) {
        registerDBusMenuTypes();
        m_adaptor = new DBusMenuAdaptor(this, std::move(menu));
        m_connection.registerObject(path, this, QDBusConnection::ExportAdaptors);
    }
    ~Server() override { m_connection.unregisterObject(m_path); }

    [[nodiscard]] const QString& path() const { return m_path; }

    void changed() {
        m_adaptor->rebuild();
        Q_EMIT m_adaptor->LayoutUpdated(m_adaptor->revision(), 0);
    }

  private:
    QDBusConnection m_connection;
    QString m_path;
    DBusMenuAdaptor* m_adaptor = nullptr; // a child
};

DBusMenu::DBusMenu(const QString& connection, const QString& path,
                   std::function<std::vector<MenuEntry>()> menu)
    : m_server(std::make_unique<Server>(connection, path, std::move(menu))) {
}

DBusMenu::~DBusMenu() = default;

QString DBusMenu::path() const {
    return m_server->path();
}

void DBusMenu::changed() {
    m_server->changed();
}

} // namespace halvane
