// SPDX-License-Identifier: MIT
#pragma once

#include "platform/cloud/cloud_files.h"

#include <QByteArray>
#include <QString>

#include <mutex>
#include <vector>

namespace halvane {

/// Which file system a path lies on. Any thread; the table is read again only after a mount
/// or an unmount.
class MountTable {
  public:
    /// `listing` is a file in the format of /proc/self/mountinfo.
    explicit MountTable(const char* listing = "/proc/self/mountinfo");
    ~MountTable();
    MountTable(const MountTable&) = delete;
    MountTable& operator=(const MountTable&) = delete;

    /// The type, such as "ext4" or "fuse.rclone"; empty when it can't be told.
    QByteArray typeOf(const QString& path);
    /// Where it is mounted, such as "/" or "/media/disk/"; empty when it can't be told.
    QByteArray pointOf(const QString& path);
    /// Whether anything of this type is mounted anywhere.
    bool lists(const char* type);

  private:
    struct Mount {
        QByteArray point; ///< with a slash at its end
        QByteArray type;
    };
    void readIfChanged();
    Mount mountOf(const QString& path);

    const int m_listing; ///< -1 when it can't be opened
    std::mutex m_mutex;  ///< guards what follows
    std::vector<Mount> m_mounts;
    bool m_isRead = false;
};

/// What a file system of this type is; a disk if the type is not known.
Storage storageOf(const QByteArray& type);

} // namespace halvane
