// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

namespace halvane {

/// One question to the desktop's portal that the user answers in his own time. The answer comes as
/// a signal of an object whose path is known before the question is put, so that it can't be
/// missed. Deletes itself when it has been answered. Main thread.
class PortalRequest : public QObject {
    Q_OBJECT

  public:
    /// Takes the name of a D-Bus connection.
    explicit PortalRequest(const QString& connection, QObject* parent = nullptr);

    /// To be passed as "handle_token".
    [[nodiscard]] QString token() const { return m_token; }
    /// Listens for the answer on another object: older portals choose the path themselves.
    void listenOn(const QString& path);

  Q_SIGNALS:
    /// The user agreed.
    void accepted(const QVariantMap& results);

  private Q_SLOTS:
    void respond(uint response, const QVariantMap& results);

  private:
    QString m_connection;
    QString m_token;
    QString m_path;
};

} // namespace halvane
