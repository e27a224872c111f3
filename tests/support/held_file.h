// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace halvane::test {

/// A regular file that nobody can open while this lives: whoever tries waits, as for a download or
/// for a drive that does not answer, and whoever will not wait is turned away. (After
/// /proc/sys/fs/lease-break-time the kernel lets them go on.) Its attributes can be read as ever.
/// Made while nobody has the file open.
class HeldFile {
  public:
    explicit HeldFile(const QString& path) {
        // The kernel tells of each try by a signal that would end the program.
        (void)std::signal(SIGIO, SIG_IGN);
        m_descriptor = ::open(path.toUtf8().constData(), O_RDONLY | O_CLOEXEC);
        m_isHeld = m_descriptor >= 0 && ::fcntl(m_descriptor, F_SETLEASE, F_WRLCK) == 0;
    }
    ~HeldFile() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    /// False on a file system that gives no leases.
    [[nodiscard]] bool isHeld() const { return m_isHeld; }
    /// Whether anybody has tried to open it, this process or another.
    [[nodiscard]] bool wasTried() const { return ::fcntl(m_descriptor, F_GETLEASE) != F_WRLCK; }

  private:
    int m_descriptor = -1;
    bool m_isHeld = false;
};

} // namespace halvane::test
