// SPDX-License-Identifier: MIT
#include "platform/cloud/sync_client_files.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <dirent.h>
#include <memory>
#include <string_view>
#include <strings.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace halvane {

namespace {

bool exists(const QString& path) {
    struct stat info;
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0;
}

bool isOneByteFile(const QString& path) {
    struct stat info;
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISREG(info.st_mode) &&
           info.st_size == 1;
}

bool hasAttribute(const QString& path, const char* name) {
    return ::getxattr(QFile::encodeName(path).constData(), name, nullptr, 0) >= 0;
}

std::optional<QByteArray> attribute(const QString& path, const char* name) {
    std::array<char, 512> value;
    const ssize_t size =
        ::getxattr(QFile::encodeName(path).constData(), name, value.data(), value.size());
    return size >= 0 ? std::optional(QByteArray(value.data(), size)) : std::nullopt;
}

} // namespace

std::optional<QString> suffixPlaceholder(const QString& path) {
    static const std::array suffixes{QStringLiteral(".nextcloud"), QStringLiteral(".owncloud")};
    for (const QString& suffix : suffixes)
        if (isOneByteFile(path + suffix))
            return exists(path) ? std::nullopt : std::optional(path + suffix);
    return std::nullopt;
}

bool hasDotNamePlaceholder(const QString& path) {
    const qsizetype name = path.lastIndexOf(QLatin1Char('/')) + 1;
    return exists(path.left(name) + QLatin1Char('.') + path.mid(name) + QStringLiteral(".icloud"));
}

bool mayHoldDotNamePlaceholders(const QString& folder, qsizetype files) {
    constexpr qsizetype fewest = 4; // below, listing costs as much as looking
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(
        files < fewest ? nullptr : ::opendir(QFile::encodeName(folder).constData()), ::closedir);
    if (!listing)
        return files < fewest || (errno != ENOENT && errno != ENOTDIR);
    const std::string_view ending(".icloud");
    for (qsizetype left = 4 * files; left > 0; --left) {
        errno = 0;
        const dirent* const entry = ::readdir(listing.get());
        if (!entry)
            return errno != 0;
        // Some file systems don't tell upper from lower case.
        const std::string_view name(entry->d_name);
        if (name.size() > ending.size() &&
            ::strcasecmp(name.data() + name.size() - ending.size(), ending.data()) == 0)
            return true;
    }
    return true;
}

FilePresence presenceBySyncClient(const QString& path, MountTable* mounts) {
    // The first call also tells whether the file exists, which spares thousands of files a second
    // one.
    if (hasAttribute(path, "user.nextcloud.hydrate_exec"))
        return FilePresence::evicted;
    if (errno == ENOENT)
        return suffixPlaceholder(path) ? FilePresence::evicted : FilePresence::gone;
    if (errno != ENODATA && errno != ENOTSUP)
        return ::access(QFile::encodeName(path).constData(), F_OK) == 0 ? FilePresence::here
                                                                        : FilePresence::gone;
    if (!mounts || mounts->typeOf(path) != "fuse.openvfs")
        return FilePresence::here;
    const auto record = attribute(path, "user.openvfs.data");
    return record && stateRecordSaysEvicted(*record) ? FilePresence::evicted : FilePresence::here;
}

bool stateRecordSaysEvicted(const QByteArray& record) {
    // A short text is its length plus 0xa0, then its bytes; a small number is itself.
    static const QByteArray key("\xa5state");
    const qsizetype at = record.indexOf(key);
    return at < 0 || at + key.size() >= record.size() || record[at + key.size()] != 0;
}

} // namespace halvane
