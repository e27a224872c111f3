// SPDX-License-Identifier: MIT
#include "platform/session/system_languages.h"

#include <QLocale>

namespace halvane {

QStringList SystemLanguages::tags() const {
    return QLocale::system().uiLanguages();
}

} // namespace halvane
