// SPDX-License-Identifier: MIT
#pragma once

#include "model/file_url.h"

#include <QHash>

#include <mutex>
#include <optional>

namespace halvane {

/// The folder part of a path, without a trailing slash; "/" for the top.
QString folderOf(const QString& path);

struct FolderCover {
    bool isKnown = false; ///< the folders where it may lie could be listed
    std::optional<FileUrl> file;
};

/// The folder above one that is named like a disc of an album, such as "CD1".
std::optional<QString> folderAboveDisc(const QString& folder);

/// The cover among the pictures of a folder. A disc without one has that of the folder above.
FolderCover lookForCover(const QString& folder);

/// Remembers the covers of folders for one batch of files, so that each folder is listed once. Any
/// thread.
class FolderCovers {
  public:
    std::optional<FileUrl> cover(const QString& folder);

  private:
    std::mutex m_mutex;
    QHash<QString, std::optional<FileUrl>> m_covers;
};

} // namespace halvane
