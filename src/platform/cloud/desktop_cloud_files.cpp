// SPDX-License-Identifier: MIT
#include "platform/cloud/desktop_cloud_files.h"

#include "platform/cloud/sync_client_files.h"
#include "platform/cloud/sync_client_socket.h"

#include <algorithm>

namespace halvane {

namespace {

// The folder ends with a slash.
QStringView folderOf(QStringView path) {
    return path.first(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

DesktopCloudFiles::DesktopCloudFiles(const QString& runtimeFolder)
    : m_runtimeFolder(runtimeFolder) {
}

FilePresence DesktopCloudFiles::presence(const QString& path) const {
    return hasDotNamePlaceholder(path) ? FilePresence::evicted
                                       : presenceBySyncClient(path, onDemandMounts());
}

bool DesktopCloudFiles::blocksWhenOpened(const QString& path) const {
    return presenceBySyncClient(path, onDemandMounts()) == FilePresence::evicted;
}

std::vector<FilePresence> DesktopCloudFiles::presences(const QStringList& paths) const {
    MountTable* const mounts = onDemandMounts();
    std::vector<FilePresence> all;
    all.reserve(static_cast<std::size_t>(paths.size()));
    for (auto path = paths.cbegin(); path != paths.cend();) {
        const QStringView folder = folderOf(*path);
        const auto end = std::find_if(path, paths.cend(),
                                      [&](const QString& p) { return folderOf(p) != folder; });
        const bool mayBeReplaced = mayHoldDotNamePlaceholders(folder.toString(), end - path);
        for (; path != end; ++path)
            all.push_back(mayBeReplaced && hasDotNamePlaceholder(*path)
                              ? FilePresence::evicted
                              : presenceBySyncClient(*path, mounts));
    }
    return all;
}

MountTable* DesktopCloudFiles::onDemandMounts() const {
    return m_mounts.lists("fuse.openvfs") ? &m_mounts : nullptr;
}

void DesktopCloudFiles::startDownloading(const QStringList& paths) {
    if (m_runtimeFolder.isEmpty() || paths.isEmpty())
        return;
    m_requests.start([folder = m_runtimeFolder, paths](const auto&) {
        // A client knows its placeholder by the name that it has on the disk.
        QStringList onDisk;
        for (const QString& path : paths)
            onDisk += suffixPlaceholder(path).value_or(path);
        requestDownloads(folder, onDisk, std::chrono::seconds(2));
    });
}

Storage DesktopCloudFiles::storage(const QString& path) const {
    return storageOf(m_mounts.typeOf(path));
}

} // namespace halvane
