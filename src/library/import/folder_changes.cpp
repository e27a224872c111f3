// SPDX-License-Identifier: MIT
#include "library/import/folder_changes.h"

#include "library/import/fallback_names.h"
#include "metadata/file_dates.h"

#include <algorithm>
#include <sys/stat.h>

namespace halvane {

namespace {

/// What it leads to is whole. A file with one name only may still be written.
bool isLink(const QString& path) {
    struct stat facts;
    return ::lstat(path.toUtf8().constData(), &facts) == 0 &&
           (S_ISLNK(facts.st_mode) || (S_ISREG(facts.st_mode) && facts.st_nlink > 1));
}

} // namespace

bool liesIn(const QString& path, const QString& folder) {
    if (!path.startsWith(folder))
        return false;
    return path.size() == folder.size() || folder.endsWith(u'/') || path[folder.size()] == u'/';
}

QStringList folderAdded(QStringList folders, const QString& folder) {
    if (std::any_of(folders.cbegin(), folders.cend(),
                    [&](const QString& known) { return liesIn(folder, known); }))
        return folders;
    folders.removeIf([&](const QString& known) { return liesIn(known, folder); });
    folders.append(folder);
    return folders;
}

FolderChanges folderChanges(const FolderLook& look, const TrackRows& library,
                            const QSet<QString>& leftOut, const ReadingNeeds& needs,
                            ResolvedLanguage language, const std::stop_token& stop) {
    std::vector<QString> places(look.places.cbegin(), look.places.cend());
    std::copy_if(look.created.cbegin(), look.created.cend(), std::back_inserter(places), isLink);
    const auto files = TrackMetadataLoader::audioFileURLs(places, stop);
    QHash<QString, const Track*> rows;
    rows.reserve(std::ssize(library));
    for (const TrackPtr& row : library)
        rows.insert(row->path(), row.get());

    FolderChanges changes;
    std::vector<FileUrl> known;
    QSet<QString> seen; // places may lie in each other
    for (const FileUrl& file : files) {
        const QString& path = file.standardizedPath();
        if (seen.contains(path))
            continue;
        seen.insert(path);
        if (rows.contains(path))
            known.push_back(file);
        else if (!leftOut.contains(path))
            changes.fresh.append(path);
    }
    const auto facts = fileFacts(known, stop);
    std::vector<FileUrl> toRead;
    for (std::size_t i = 0; i < known.size(); ++i) {
        const Track* row = rows.value(known[i].standardizedPath());
        if (facts[i].exists && row->readDate != facts[i].modificationDate)
            toRead.push_back(known[i]);
    }
    auto with = needs.accompaniment(stop);
    with.isThorough = true; // what was said of them follows their sound
    changes.changed = TrackMetadataLoader::loadItems(toRead, fallbackNames(language), with);
    return changes;
}

} // namespace halvane
