// SPDX-License-Identifier: MIT
#include "platform/system_languages.h"

#include <QLocale>

namespace halvane {

QStringList SystemLanguages::tags() const {
    return QLocale::system().uiLanguages();
}

} // namespace halvane
