// SPDX-License-Identifier: MIT
#include "platform/desktop_cloud_files.h"

#include "platform/sync_client_files.h"
#include "platform/sync_client_socket.h"

namespace halvane {

DesktopCloudFiles::DesktopCloudFiles(const QString& runtimeFolder)
    : m_runtimeFolder(runtimeFolder) {
    m_requests.setMaxThreadCount(1);
}

DesktopCloudFiles::~DesktopCloudFiles() {
    m_requests.clear();
    m_requests.waitForDone();
}

FilePresence DesktopCloudFiles::presence(const QString& path) const {
    return hasDotNamePlaceholder(path) ? FilePresence::evicted
                                       : presenceBySyncClient(path, m_mounts);
}

void DesktopCloudFiles::startDownloading(const QStringList& paths) {
    if (m_runtimeFolder.isEmpty() || paths.isEmpty())
        return;
    m_requests.start([folder = m_runtimeFolder, paths] {
        // A client knows its placeholder by the name that it has on the disk.
        QStringList onDisk;
        for (const QString& path : paths)
            onDisk += suffixPlaceholder(path).value_or(path);
        requestDownloads(folder, onDisk, std::chrono::seconds(2));
    });
}

bool DesktopCloudFiles::isRemote(const QString& path) const {
    return isNetworkFileSystem(m_mounts.typeOf(path));
}

} // namespace halvane
