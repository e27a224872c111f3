// SPDX-License-Identifier: MIT
// Playlists as files: M3U and M3U8, which are lines of text, and XSPF 1, which is XML. Any thread.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace halvane {

/// One entry of a list, as the list has it.
struct PlaylistEntry {
    /// What its location can mean, as standardized absolute paths: a location may be encoded or
    /// not, and a backslash may part folders. The likeliest is first. Empty if it can be no path.
    std::vector<QString> paths;
    QString label; ///< "Artist - Title" or a title alone; empty if the list has none
    std::optional<double> seconds; ///< its length
};

/// What a list holds.
struct PlaylistFile {
    QString name; ///< its own, or the file's without the extension
    std::vector<PlaylistEntry> entries;
    qint64 addresses = 0; ///< entries on a network, which are left out
};

/// Larger files and longer lists are not read.
inline constexpr qint64 largestPlaylistFile = 64LL << 20; // bytes
inline constexpr std::size_t longestPlaylist = 250'000;   // entries

/// Whether the name is that of a list, by its extension in any case.
bool isPlaylistFile(const QString& path);

/// Reads the contents of the list at `path`, which locations are relative to. The failure is for
/// the log. Opens nothing.
Result<PlaylistFile> readPlaylist(const QByteArray& contents, const QString& path);

/// The same of a file. Only a regular file is read. May block on the disk.
Result<PlaylistFile> loadPlaylist(const QString& path);

} // namespace halvane
