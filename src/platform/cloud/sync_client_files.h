// SPDX-License-Identifier: MIT
// What sync clients leave on the disk in place of a file that they have not downloaded. Nothing
// here opens the file: on a file system of theirs that would wait for the whole download.
#pragma once

#include "platform/cloud/cloud_files.h"
#include "platform/cloud/mount_table.h"

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

/// Whether there may be such placeholders in a folder of which so many files are asked for: one
/// look at it costs less than looking for each. A folder that can't be listed, or that holds far
/// more than that, may hold them. Any thread.
bool mayHoldDotNamePlaceholders(const QString& folder, qsizetype files);

/// Whether the file is there, or a sync client has left something in its place, or its extended
/// attributes say that its contents are not on this disk. `mounts` tells where on-demand file
/// systems are; null when there is none. Any thread.
FilePresence presenceBySyncClient(const QString& path, MountTable* mounts);

/// Whether the state record of an on-demand file system (a MessagePack map whose "state" is 0 for a
/// downloaded file) says so. A record that can't be read counts as not downloaded: to be wrong that
/// way is to wait for nothing, the other way to hang on an open.
bool stateRecordSaysEvicted(const QByteArray& record);

} // namespace halvane
