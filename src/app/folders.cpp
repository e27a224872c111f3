// SPDX-License-Identifier: MIT
#include "app/folders.h"

#include <QDir>
#include <QStandardPaths>

#include <pwd.h>
#include <unistd.h>

namespace halvane {

using namespace Qt::StringLiterals;

QString dataFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Halvane"_s;
}

QString cacheFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/Halvane"_s;
}

QString stateFolder() {
    return qEnvironmentVariable("XDG_STATE_HOME", QDir::homePath() + u"/.local/state"_s) +
           u"/Halvane"_s;
}

void mendFolderVariables() {
    if (qEnvironmentVariableIsEmpty("HOME")) {
        if (const auto* user = getpwuid(getuid()))
            qputenv("HOME", user->pw_dir);
    }
    for (const char* folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                               "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        if (!QDir::isAbsolutePath(qEnvironmentVariable(folder)))
            qunsetenv(folder);
    }
}

} // namespace halvane
