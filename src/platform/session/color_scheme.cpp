// SPDX-License-Identifier: MIT
#include "platform/session/color_scheme.h"

namespace halvane {

using namespace Qt::StringLiterals;

ColorScheme::ColorScheme(const QString& connection, QObject* parent)
    : QObject(parent)
    , m_setting(connection, u"org.freedesktop.appearance"_s, u"color-scheme"_s) {
    connect(&m_setting, &PortalSetting::changed, this, &ColorScheme::changed);
}

ColorScheme::Preference ColorScheme::preference() const {
    switch (m_setting.value().toUInt()) {
    case 1:
        return Preference::dark;
    case 2:
        return Preference::light;
    default:
        return Preference::none;
    }
}

} // namespace halvane
