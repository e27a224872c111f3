// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

class QDBusVariant;

namespace halvane {

/// One of the desktop's settings, as the portal tells of it. Main thread; the value comes later, or
/// never where there is no portal.
class PortalSetting : public QObject {
    Q_OBJECT

  public:
    /// Takes the name of a D-Bus connection.
    PortalSetting(const QString& connection, const QString& group, const QString& key);
    /// Invalid until it is known.
    [[nodiscard]] const QVariant& value() const { return m_value; }

  Q_SIGNALS:
    void changed();

  private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void take(QVariant value);

    QVariant m_value;
};

} // namespace halvane
