// SPDX-License-Identifier: MIT
#include "library/browsing/cover_survey.h"

#include "metadata/file_dates.h"
#include "metadata/folder_names.h"
#include "metadata/parallel/look_at_each.h"
#include "model/cover_key.h"

namespace halvane {

namespace {

struct FolderLook {
    FolderDates dates;
    FolderCover cover; // looked for only in a folder that is new or has changed
};

QSet<QString> changedPictures(const QHash<QString, FileStamp>& stamps,
                              const std::stop_token& stop) {
    QSet<QString> changed;
    QStringList keys;
    QStringList files;
    for (auto stamp = stamps.cbegin(); stamp != stamps.cend(); ++stamp) {
        if (!stamp.key().startsWith(coverFilePrefix)) {
            changed.insert(stamp.key()); // it could not be read, and only reading shows more
            continue;
        }
        keys.append(stamp.key());
        files.append(stamp.key().sliced(coverFilePrefix.size()));
    }
    const auto now = lookAtEach<FileStamp>(files, fileStamp, stop);
    for (qsizetype i = 0; i < keys.size(); ++i)
        if (const auto& stamp = now[static_cast<std::size_t>(i)];
            stamp && *stamp != stamps[keys[i]])
            changed.insert(keys[i]);
    return changed;
}

} // namespace

CoverSurvey surveyOfCovers(const TrackRows& tracks, const QHash<QString, FolderDates>& folders,
                           const QHash<QString, FileStamp>& stamps, const std::stop_token& stop) {
    CoverSurvey survey;
    survey.changed = changedPictures(stamps, stop);

    QHash<QString, std::vector<const Track*>> tracksOf; // by folder
    for (const TrackPtr& track : tracks)
        if (track->sourceURL)
            tracksOf[folderOf(track->sourceURL->path())].push_back(track.get());
    const QStringList paths = tracksOf.keys();
    const auto looks = lookAtEach<FolderLook>(
        paths,
        [folders](const QString& path) {
            const FileFacts facts = fileFacts(path);
            const auto known = folders.constFind(path);
            if (!facts.exists)
                return FolderLook();
            const auto above = folderAboveDisc(path);
            const FolderDates dates{facts.modificationDate,
                                    above ? fileFacts(*above).modificationDate : 0};
            return FolderLook{dates, known != folders.cend() && *known == dates
                                         ? FolderCover()
                                         : lookForCover(path)};
        },
        stop);
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const QString& path = paths[i];
        const auto& look = looks[static_cast<std::size_t>(i)];
        const auto known = folders.constFind(path);
        if (look && look->cover.isKnown) {
            survey.folders.insert(path, look->dates);
            for (const Track* track : tracksOf[path])
                if (track->coverURL != look->cover.file)
                    survey.covers.insert(track->path(), look->cover.file);
        } else if (known != folders.cend()) {
            survey.folders.insert(path, *known);
        }
    }
    return survey;
}

} // namespace halvane
