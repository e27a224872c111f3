// SPDX-License-Identifier: MIT
// Writes playlists as files that other players read: M3U8, or XSPF 1 where the file's extension is
// that. Any thread but the main one.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace halvane {

struct WrittenEntry {
    QString path;   ///< standardized
    QString artist; ///< empty where it is not known, as all that follows
    QString title;
    std::optional<double> seconds;
};

/// The contents of the list at `path`. Locations below its folder are relative to it, so that the
/// folder can be moved with what is in it. Pure.
QByteArray playlistContents(const QString& path, const QString& name,
                            const std::vector<WrittenEntry>& entries);

/// Writes them in place of the file that is there. It is whole or as it was. The failure is the
/// system's own text.
Result<> writePlaylist(const QString& path, const QString& name,
                       const std::vector<WrittenEntry>& entries);

} // namespace halvane
