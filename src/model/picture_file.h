// SPDX-License-Identifier: MIT
#pragma once

#include "model/file_stamp.h"

#include <QByteArray>

namespace halvane {

struct PictureFile {
    QByteArray bytes; ///< empty when the file can't be read
    FileStamp stamp;  ///< of the file that was read
};

/// Pictures in larger files are not read. A cover is a few megabytes, and a scan of one some tens.
inline constexpr qint64 largestPictureFile = 64LL << 20; // bytes

/// Reads a file that holds a picture. Pipes, devices and what is larger than a picture are left
/// alone, so that only a disk can hold the reader up. Any thread but the main one.
PictureFile readPictureFile(const QString& path);

} // namespace halvane
