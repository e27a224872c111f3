// SPDX-License-Identifier: MIT
// What has changed in followed folders, compared with what the library knows.
#pragma once

#include "library/catalog/library_store.h"
#include "library/import/reading_needs.h"
#include "metadata/track_metadata_loader.h"
#include "model/enums.h"

namespace halvane {

/// Whether a path lies in a folder, at any depth, or is the folder. Pure.
bool liesIn(const QString& path, const QString& folder);

/// The folders once this one is followed, too: it takes the place of those that lie in it, and
/// changes nothing where it lies in one of them. Pure.
QStringList folderAdded(QStringList folders, const QString& folder);

/// Where to look.
struct FolderLook {
    QStringList places;  ///< files and folders
    QStringList created; ///< files that count only as links: another program may be writing them
};

/// What was found there.
struct FolderChanges {
    QStringList fresh;               ///< files that the library does not know
    std::vector<LoadedItem> changed; ///< known files, read again
};

/// Compares files with the library's rows, and reads those again that have another date than when
/// they were read. Files in `leftOut` are not fresh. Waits for the disk; any thread.
FolderChanges folderChanges(const FolderLook& look, const TrackRows& library,
                            const QSet<QString>& leftOut, const ReadingNeeds& needs,
                            ResolvedLanguage language, const std::stop_token& stop);

} // namespace halvane
