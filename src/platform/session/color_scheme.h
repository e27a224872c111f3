// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class QDBusVariant;

namespace halvane {

/// Whether the desktop is dark or light, by the portal's settings. Main thread; the answer comes
/// later, or never where there is no portal.
class ColorScheme : public QObject {
    Q_OBJECT

  public:
    enum class Preference { none, dark, light };

    /// Takes the name of a D-Bus connection.
    explicit ColorScheme(const QString& connection, QObject* parent = nullptr);
    [[nodiscard]] Preference preference() const { return m_preference; }

  Q_SIGNALS:
    void changed();

  private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void take(uint value);

    Preference m_preference = Preference::none;
};

} // namespace halvane
