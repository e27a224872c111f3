// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/portal_setting.h"

namespace halvane {

/// Whether the desktop is dark or light, by the portal's settings. Main thread; the answer comes
/// later, or never where there is no portal.
class ColorScheme : public QObject {
    Q_OBJECT

  public:
    enum class Preference { none, dark, light };

    /// Takes the name of a D-Bus connection.
    explicit ColorScheme(const QString& connection, QObject* parent = nullptr);
    [[nodiscard]] Preference preference() const;

  Q_SIGNALS:
    void changed();

  private:
    PortalSetting m_setting;
};

} // namespace halvane
