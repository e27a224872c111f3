// SPDX-License-Identifier: MIT
#include "app/folders.h"

#include <QDir>
#include <QStandardPaths>

namespace halvane {

using namespace Qt::StringLiterals;

QString dataFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Halvane"_s;
}

QString cacheFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/Halvane"_s;
}

QString stateFolder() {
    const auto state = qEnvironmentVariable("XDG_STATE_HOME");
    return (QDir::isAbsolutePath(state) ? state : QDir::homePath() + u"/.local/state"_s) +
           u"/Halvane"_s;
}

} // namespace halvane
