// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace halvane {

/// The user's session bus. Everything that talks over it is given the connection's name, so that
/// tests can give it another one. Main thread.
class SessionBus : public QObject {
    Q_OBJECT

  public:
    explicit SessionBus(QObject* parent = nullptr);
    /// Takes the name of a connection to another bus.
    explicit SessionBus(const QString& connection, QObject* parent = nullptr);

    /// False where there is no bus. Whatever needs the bus then does nothing.
    [[nodiscard]] bool isConnected() const { return m_connected; }
    [[nodiscard]] QString connectionName() const { return m_connection; }

  Q_SIGNALS:
    /// The bus has gone away, as it does when the session ends.
    void lost();

  private Q_SLOTS:
    void disconnected();

  private:
    QString m_connection;
    bool m_connected;
};

} // namespace halvane
