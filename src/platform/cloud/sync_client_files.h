// SPDX-License-Identifier: MIT
// What sync clients leave on the disk in place of a file that they have not downloaded. Nothing
// here opens the file, which would wait for the whole download on their own file systems.
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

/// Whether a folder may hold such placeholders. Listing it once costs less than looking for the
/// placeholder of each of `files` files. A folder that can't be listed, or that holds far more
/// files than that, may hold them. Any thread.
bool mayHoldDotNamePlaceholders(const QString& folder, qsizetype files);

/// Whether the file is there, or a sync client has left something in its place, or its extended
/// attributes say that its contents are not on this disk. `mounts` tells where on-demand file
/// systems are; null when there is none. Any thread.
FilePresence presenceBySyncClient(const QString& path, MountTable* mounts);

/// Whether the state record of an on-demand file system says that the file is not downloaded. The
/// record is a MessagePack map whose "state" is 0 for a downloaded file. A record that can't be
/// read counts as not downloaded, because a needless wait does less harm than an open that hangs.
bool stateRecordSaysEvicted(const QByteArray& record);

} // namespace halvane
