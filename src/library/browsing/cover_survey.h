// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "model/file_stamp.h"

#include <optional>
#include <stop_token>
#include <utility>

namespace halvane {

/// The dates of a folder, and of the folder above where its cover may lie too, or 0. In seconds
/// since 2001-01-01 UTC. A folder's date changes when a file comes, goes or gets another name.
using FolderDates = std::pair<double, double>;

/// What has become of the covers of some tracks since the last look.
struct CoverSurvey {
    /// Of the tracks' folders, as far as they can be listed.
    QHash<QString, FolderDates> folders;
    /// The keys behind which there is another picture now, or may be one that could not be read.
    QSet<QString> changed;
    /// The tracks that have another cover file, or none any more.
    QHash<QString, std::optional<FileUrl>> covers; ///< by the track's path
};

/// Looks at the folders of some tracks, and lists those that are new or have other dates than in
/// `folders`. Looks at the files of the pictures in `stamps`, which are as CoverStore::stamps gives
/// them. What a disk that does not answer holds stays as it was. Any thread but the main one.
CoverSurvey surveyOfCovers(const TrackRows& tracks, const QHash<QString, FolderDates>& folders,
                           const QHash<QString, FileStamp>& stamps, const std::stop_token& stop);

} // namespace halvane
