// SPDX-License-Identifier: MIT
#include "platform/session/motion_preference.h"

namespace halvane {

using namespace Qt::StringLiterals;

MotionPreference::MotionPreference(const QString& connection, QObject* parent)
    : QObject(parent)
    , m_reducedMotion(connection, u"org.freedesktop.appearance"_s, u"reduced-motion"_s)
    , m_animations(connection, u"org.gnome.desktop.interface"_s, u"enable-animations"_s)
    , m_durationFactor(connection, u"org.kde.kdeglobals.KDE"_s, u"AnimationDurationFactor"_s) {
    for (const auto* setting : {&m_reducedMotion, &m_animations, &m_durationFactor})
        connect(setting, &PortalSetting::changed, this, &MotionPreference::changed);
}

bool MotionPreference::isReduced() const {
    const QVariant& animations = m_animations.value();
    const bool hasNoAnimations =
        animations.metaType() == QMetaType::fromType<bool>() && !animations.toBool();
    bool isNumber = false; // KDE gives it as text
    const double factor = m_durationFactor.value().toDouble(&isNumber);
    return m_reducedMotion.value().toUInt() == 1 || hasNoAnimations || (isNumber && factor <= 0);
}

} // namespace halvane
