// SPDX-License-Identifier: MIT
#include "platform/cloud/mount_table.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace halvane {

namespace {

// Mount points are listed with blanks, tabs, line ends and backslashes as \ooo.
QByteArray unescaped(const QByteArray& text) {
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        bool isOctal = false;
        const int code = text[i] == '\\' ? text.mid(i + 1, 3).toInt(&isOctal, 8) : 0;
        result += isOctal ? static_cast<char>(code) : text[i];
        i += isOctal ? 3 : 0;
    }
    return result;
}

QByteArray readFromStart(int file) {
    QByteArray all;
    std::array<char, 8192> block;
    for (off_t at = 0;;) {
        const ssize_t count = ::pread(file, block.data(), block.size(), at);
        if (count <= 0)
            return all;
        all.append(block.data(), count);
        at += count;
    }
}

} // namespace

MountTable::MountTable(const char* listing)
    : m_listing(::open(listing, O_RDONLY | O_CLOEXEC)) {
}

MountTable::~MountTable() {
    if (m_listing >= 0)
        ::close(m_listing);
}

void MountTable::readIfChanged() {
    pollfd change{m_listing, POLLPRI, 0}; // how the kernel reports a new mount
    if (m_isRead && ::poll(&change, 1, 0) <= 0)
        return;
    m_isRead = true;
    m_mounts.clear();
    const QList<QByteArray> lines = readFromStart(m_listing).split('\n');
    for (const QByteArray& line : lines) {
        // id parent device root point options [optional...] - type source superoptions
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-");
        if (dash < 6 || dash + 1 >= fields.size())
            continue;
        QByteArray point = unescaped(fields[4]);
        if (!point.endsWith('/'))
            point += '/';
        m_mounts.push_back({point, fields[dash + 1]});
    }
}

QByteArray MountTable::typeOf(const QString& path) {
    return mountOf(path).type;
}

QByteArray MountTable::pointOf(const QString& path) {
    return mountOf(path).point;
}

MountTable::Mount MountTable::mountOf(const QString& path) {
    const QByteArray name = QFile::encodeName(path) + '/';
    const std::lock_guard lock(m_mutex);
    readIfChanged();
    // The longest point wins; of several mounts on one point the last covers the others.
    const Mount* best = nullptr;
    for (const Mount& mount : m_mounts)
        if (name.startsWith(mount.point) && (!best || mount.point.size() >= best->point.size()))
            best = &mount;
    return best ? *best : Mount();
}

bool MountTable::lists(const char* type) {
    const std::lock_guard lock(m_mutex);
    readIfChanged();
    return std::any_of(m_mounts.cbegin(), m_mounts.cend(),
                       [type](const Mount& mount) { return mount.type == type; });
}

Storage storageOf(const QByteArray& type) {
    // The desktop's own mounts (gvfsd, kio) are mostly of shares.
    static constexpr std::array shares{"9p",
                                       "afs",
                                       "ceph",
                                       "cifs",
                                       "fuse.ceph",
                                       "fuse.curlftpfs",
                                       "fuse.glusterfs",
                                       "fuse.gvfsd-fuse",
                                       "fuse.kio-fuse",
                                       "fuse.smbnetfs",
                                       "fuse.sshfs",
                                       "ncpfs",
                                       "nfs",
                                       "nfs4",
                                       "smb3",
                                       "smbfs"};
    static constexpr std::array clouds{
        "davfs",       "fuse.davfs2",   "fuse.gcsfuse",   "fuse.google-drive-ocamlfuse",
        "fuse.goofys", "fuse.mount-s3", "fuse.onedriver", "fuse.rclone",
        "fuse.s3fs"};
    const auto isType = [&](const char* known) { return type == known; };
    if (std::any_of(clouds.begin(), clouds.end(), isType))
        return Storage::cloudMount;
    return std::any_of(shares.begin(), shares.end(), isType) ? Storage::networkShare
                                                             : Storage::disk;
}

} // namespace halvane
