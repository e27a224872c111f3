// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/playlists/playlist_file.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace halvane {

/// A track of the library, by what a list may say of it.
struct KnownTrack {
    QString title;
    QString artist;
    std::optional<double> seconds;
};
using KnownTracks = QHash<QString, KnownTrack>; ///< by standardized path

/// A list that becomes a playlist.
struct GivenPlaylist {
    QString name;
    QStringList paths; ///< standardized, in its order, those that were not found among them
    qint64 entries = 0;
    qint64 notFound = 0;
    qint64 addresses = 0;
};

/// The lists among what was given.
struct GivenPlaylists {
    std::vector<GivenPlaylist> lists;
    QStringList unreadable; ///< names of files
};

/// Takes the lists out of `roots`, and puts the files in their places that they name and that are
/// on a disk. An entry is found by its path, in the library or on the disk; then in the library by
/// a path that differs in case or Unicode form alone; then by its file's name and title,
/// where its length leaves one track. One that is not found keeps its path, so that the file may
/// come later. Lists within lists are not followed. Blocks on disks; any thread but the main one.
GivenPlaylists takePlaylists(QStringList& roots, const KnownTracks& known,
                             const std::stop_token& stop);

/// For each entry the path of the track or file that it means, or nothing. `isFile` says whether a
/// path is a file on a disk. Pure but for that.
std::vector<QString> foundPaths(const std::vector<PlaylistEntry>& entries, const KnownTracks& known,
                                const std::function<bool(const QString& path)>& isFile);

} // namespace halvane
