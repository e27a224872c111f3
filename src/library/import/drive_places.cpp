// SPDX-License-Identifier: MIT
#include "library/import/drive_places.h"

#include <QFileInfo>
#include <QStorageInfo>
#include <QStringList>

namespace halvane {

using namespace Qt::StringLiterals;

bool isDrivePlace(const QString& folder) {
    static const QStringList places{u"/media"_s, u"/mnt"_s, u"/run/media"_s};
    return folder == "/"_L1 || folder.endsWith("/gvfs"_L1) || places.contains(folder) ||
           places.contains(QFileInfo(folder).path());
}

bool isWhereADriveWas(const QString& path) {
    QString folder = QFileInfo(path).path();
    while (folder != "/"_L1 && !QFileInfo::exists(folder))
        folder = QFileInfo(folder).path();
    const bool holdsDrives = folder == "/"_L1 || folder.endsWith("/gvfs"_L1);
    return isDrivePlace(folder) && (holdsDrives || QStorageInfo(folder).rootPath() != folder);
}

} // namespace halvane
