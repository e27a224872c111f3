// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

namespace halvane::test {

/// A disk that a test can fill up or make read-only: a small file system mounted on a folder, which
/// only this process sees. Where the machine lets nobody mount, files that may not grow and a
/// folder without permission stand in for it. Made before the process starts a second thread.
class SmallDisk {
  public:
    explicit SmallDisk(const QString& folder);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    void fillUp();
    void makeRoom();
    void setReadOnly(bool readOnly);

  private:
    void forbidWriting(bool forbidden) const;

    QByteArray m_folder;
    uid_t m_user;
    bool m_isMounted;
};

} // namespace halvane::test
