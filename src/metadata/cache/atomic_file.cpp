// SPDX-License-Identifier: MIT
#include "metadata/cache/atomic_file.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace halvane {

namespace {

QByteArray neighbourOf(const QByteArray& path) {
    return path + ".new";
}

// Makes the new name durable. Some file systems can't sync folders.
void syncFolderOf(const QByteArray& path) {
    const QByteArray folder = path.left(path.lastIndexOf('/') + 1);
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

AtomicFile::AtomicFile(const QString& path)
    : m_path(path.toUtf8())
    , m_neighbour(neighbourOf(m_path)) {
    // Overwrites whatever a killed process left under this name.
    m_descriptor = ::open(m_neighbour.constData(),
                          O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0644);
    m_failed = m_descriptor < 0;
}

AtomicFile::~AtomicFile() {
    if (m_descriptor < 0)
        return;
    ::close(m_descriptor);
    ::unlink(m_neighbour.constData());
}

void AtomicFile::write(const QByteArray& bytes) {
    qsizetype done = 0;
    while (!m_failed && done < bytes.size()) {
        const ssize_t written = ::write(m_descriptor, bytes.constData() + done,
                                        static_cast<size_t>(bytes.size() - done));
        if (written >= 0)
            done += written;
        else if (errno != EINTR)
            m_failed = true;
    }
}

bool AtomicFile::commit() {
    if (m_failed || ::fsync(m_descriptor) != 0)
        return false;
    const int closed = ::close(m_descriptor);
    m_descriptor = -1;
    if (closed != 0 || ::rename(m_neighbour.constData(), m_path.constData()) != 0) {
        ::unlink(m_neighbour.constData());
        return false;
    }
    syncFolderOf(m_path);
    return true;
}

bool linkAtomically(const QString& existing, const QString& path) {
    const QByteArray target = path.toUtf8();
    const QByteArray neighbour = neighbourOf(target);
    ::unlink(neighbour.constData());
    if (::link(existing.toUtf8().constData(), neighbour.constData()) != 0)
        return false;
    const bool renamed = ::rename(neighbour.constData(), target.constData()) == 0;
    // Renaming one link of a file to another of the same file leaves both names in place.
    ::unlink(neighbour.constData());
    return renamed;
}

} // namespace halvane
