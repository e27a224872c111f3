// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace halvane {

/// What tells one state of a file from another without reading it. A file that is not there, or
/// that is no regular file, has the stamp {}.
struct FileStamp {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 bytes = 0;
    qint64 nanoseconds = 0; ///< of its modification, since 1970
    bool operator==(const FileStamp&) const = default;
};

/// May block on the disk. Any thread.
FileStamp fileStamp(const QString& path);
/// The same of an open file.
FileStamp openFileStamp(int descriptor);

} // namespace halvane
