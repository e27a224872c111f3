// SPDX-License-Identifier: MIT
#include "support/small_disk.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <csignal>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace halvane::test {

namespace {

constexpr const char* size = "size=256k";

void write(const char* file, const QByteArray& text) {
    QFile target(QString::fromLatin1(file));
    if (target.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        target.write(text);
}

/// Sees to it that what this process mounts is its own affair; in vain where that is forbidden.
bool ownMounts() {
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray group = QByteArray::number(::getegid());
    if (::geteuid() == 0)
        return ::unshare(CLONE_NEWNS) == 0;
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
        return false;
    write("/proc/self/setgroups", "deny");
    write("/proc/self/uid_map", "0 " + user + " 1");
    write("/proc/self/gid_map", "0 " + group + " 1");
    return true;
}

bool mountOn(const QByteArray& folder) {
    static const bool areOwn =
        ownMounts() && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return areOwn && ::mount("none", folder.constData(), "tmpfs", 0, size) == 0;
}

void limitFiles(rlim_t bytes) {
    // Going over the limit is to be an error, not the end.
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

void become(uid_t user, uid_t kept) {
    if (::setresuid(user, user, kept) != 0)
        qFatal("this process may not act as user %u", user);
}

} // namespace

SmallDisk::SmallDisk(const QString& folder)
    : m_folder(QFile::encodeName(folder))
    , m_user(::getuid())
    , m_isMounted(mountOn(m_folder)) {
}

SmallDisk::~SmallDisk() {
    if (m_isMounted)
        ::umount2(m_folder.constData(), MNT_DETACH);
}

void SmallDisk::fillUp() {
    if (!m_isMounted)
        return limitFiles(0);
    QFile filler(QFile::decodeName(m_folder) + QStringLiteral("/filler"));
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return;
    while (filler.write(QByteArray(1024, 'x')) == 1024) {
    }
}

void SmallDisk::makeRoom() {
    if (!m_isMounted)
        return limitFiles(RLIM_INFINITY);
    QFile::remove(QFile::decodeName(m_folder) + QStringLiteral("/filler"));
}

void SmallDisk::setReadOnly(bool readOnly) {
    if (!m_isMounted)
        return forbidWriting(readOnly);
    const unsigned long only = readOnly ? static_cast<unsigned long>(MS_RDONLY) : 0UL;
    ::mount("none", m_folder.constData(), "tmpfs", MS_REMOUNT | only, size);
}

void SmallDisk::forbidWriting(bool forbidden) const {
    constexpr uid_t nobody = 65'534;
    if (!forbidden)
        become(m_user, m_user);
    const QString folder = QFile::decodeName(m_folder);
    const auto permit = [&](const QString& path, bool isFolder) {
        auto rights = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
        if (isFolder)
            rights |= QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
        if (!forbidden)
            rights |= QFile::WriteOwner;
        QFile::setPermissions(path, rights);
    };
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        permit(entries.filePath(), entries.fileInfo().isDir());
    }
    permit(folder, true);
    // Nothing is forbidden to root: from here on it is somebody else who looks at files.
    if (forbidden && m_user == 0)
        become(nobody, 0);
}

} // namespace halvane::test
