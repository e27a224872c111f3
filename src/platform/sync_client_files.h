// SPDX-License-Identifier: MIT
// What sync clients leave on the disk in place of a file that they have not downloaded. Nothing
// here opens the file: on a file system of theirs that would wait for the whole download.
#pragma once

#include "platform/cloud_files.h"
#include "platform/mount_table.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace halvane {

/// The one-byte placeholder beside `path` that stands for it ("song.mp3.nextcloud"); none when the
/// file itself is there. Any thread.
std::optional<QString> suffixPlaceholder(const QString& path);

/// Whether a cloud service's hidden placeholder (".song.mp3.icloud") lies beside `path`. Any
/// thread.
bool hasDotNamePlaceholder(const QString& path);

/// Whether the file is there, or a sync client has left something in its place, or its extended
/// attributes say that its contents are not on this disk. Any thread.
FilePresence presenceBySyncClient(const QString& path, MountTable& mounts);

/// Whether the state record of an on-demand file system (a MessagePack map whose "state" is 0 for a
/// downloaded file) says so. A record that can't be read counts as not downloaded: to be wrong that
/// way is to wait for nothing, the other way to hang on an open.
bool stateRecordSaysEvicted(const QByteArray& record);

} // namespace halvane
