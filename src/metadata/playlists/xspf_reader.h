// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/playlists/playlist_file.h"

namespace halvane {

/// Reads XSPF 1, with or without its namespace. A document that declares entities is refused: no
/// list needs them, and a few lines of them can stand for gigabytes. `file` is the list's
/// standardized path. Pure.
Result<PlaylistFile> readXspf(const QByteArray& contents, const QString& file);

} // namespace halvane
