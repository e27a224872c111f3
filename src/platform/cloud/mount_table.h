// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <mutex>
#include <vector>

namespace halvane {

/// Which kind of file system a path lies on. Any thread; the table is read again only after a mount
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
    /// Whether anything of this type is mounted anywhere.
    bool lists(const char* type);

  private:
    struct Mount {
        QByteArray point; ///< with a slash at its end
        QByteArray type;
    };
    void readIfChanged();

    const int m_listing; ///< -1 when it can't be opened
    std::mutex m_mutex;  ///< guards what follows
    std::vector<Mount> m_mounts;
    bool m_isRead = false;
};

/// Whether every read of a file on this kind of file system goes over a network.
bool isNetworkFileSystem(const QByteArray& type);

} // namespace halvane
