// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/portal_setting.h"

namespace halvane {

/// Whether the desktop asks for little motion, by the portal's settings: by the common one, or by
/// that of GNOME or KDE, which say it in their own ways. Main thread; the answer comes later, or
/// never where there is no portal.
class MotionPreference : public QObject {
    Q_OBJECT

  public:
    /// Takes the name of a D-Bus connection.
    explicit MotionPreference(const QString& connection, QObject* parent = nullptr);
    [[nodiscard]] bool isReduced() const;

  Q_SIGNALS:
    void changed();

  private:
    PortalSetting m_reducedMotion;
    PortalSetting m_animations;     ///< GNOME's
    PortalSetting m_durationFactor; ///< KDE's
};

} // namespace halvane
