// SPDX-License-Identifier: MIT
#include "library/marked_availability.h"

#include "platform/cloud_files.h"

#include <QFileInfo>

namespace halvane {

TrackAvailability MarkedAvailability::state(const QString& path) const {
    return m_cloudPendingPaths.contains(path)  ? TrackAvailability::inCloud
           : m_unavailablePaths.contains(path) ? TrackAvailability::missing
                                               : TrackAvailability::available;
}

bool MarkedAvailability::isCloudEvicted(const QString& path) const {
    return m_cloud.isEvicted(path);
}

bool MarkedAvailability::isReadable(const QString& path) const {
    return QFileInfo(path).isReadable();
}

void MarkedAvailability::markAvailable(const QString& path) {
    if (m_unavailablePaths.remove(path) | m_cloudPendingPaths.remove(path))
        onChange(path);
}

void MarkedAvailability::markInCloud(const QString& path) {
    m_cloudPendingPaths.insert(path);
    onChange(path);
}

void MarkedAvailability::markUnavailable(const QString& path) {
    (isCloudEvicted(path) ? m_cloudPendingPaths : m_unavailablePaths).insert(path);
    onChange(path);
}

void MarkedAvailability::startCloudDownloads(const QSet<QString>& paths) {
    m_cloud.startDownloading(QStringList(paths.cbegin(), paths.cend()));
}

} // namespace halvane
