// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/playlists/playlist_file.h"

namespace halvane {

/// Reads M3U and M3U8. The text is UTF-8 or UTF-16 where it says so or is plainly that, and
/// otherwise in the old encoding that is likeliest for its lines. `file` is the list's standardized
/// path. Pure.
Result<PlaylistFile> readM3u(const QByteArray& contents, const QString& file);

} // namespace halvane
