// SPDX-License-Identifier: MIT
#include "library/import/restoration.h"

#include "library/catalog/library_catalog.h"
#include "library/catalog/track_rows.h"
#include "library/import/cache_persistence.h"
#include "library/import/imported_paths.h"
#include "metadata/file_dates.h"
#include "platform/cloud/cloud_files.h"
#include "platform/thread_check.h"

#include <algorithm>
#include <chrono>

namespace halvane {

namespace {

/// A window that nobody sees gets no picture.
constexpr std::chrono::milliseconds longestWaitForPicture{1000};

constexpr std::size_t takenOverAtOnce = 500; ///< rows within a few milliseconds

/// Takes up to so many rows from the end.
TrackRows portionOf(TrackRows& rows) {
    const auto begin =
        rows.end() - static_cast<std::ptrdiff_t>(std::min(rows.size(), takenOverAtOnce));
    TrackRows portion(begin, rows.end());
    rows.erase(begin, rows.end());
    return portion;
}

TrackPtr withSize(Track track, qint64 bytes) {
    track.fileSize = bytes;
    return makeRow(std::move(track));
}

} // namespace

Restoration::Restoration(RestorationCollaborators with, QObject* parent)
    : QObject(parent)
    , m_with(std::move(with)) {
}

void Restoration::restoreImportedAudio() {
    assertOwnThread(*this);
    m_isRunning = true;
    m_with.persistence.hold();
    remember(m_with.importedPaths.restore());
}

void Restoration::remember(const StoredPaths& stored) {
    // The index is kept until the rows are on their way to the main thread: to free it takes time.
    const auto index = std::make_shared<std::shared_ptr<const MetadataIndex>>();
    m_worker.run(
        [stored, index, cache = m_with.cache,
         firstPicture = m_with.firstPicture]() -> std::optional<Remembered> {
            if (firstPicture.valid())
                firstPicture.wait_for(longestWaitForPicture);
            *index = std::make_shared<const MetadataIndex>(cache.loadIndex());
            auto paths = stored();
            if (!paths)
                return std::nullopt;
            Remembered remembered;
            remembered.library =
                rememberedLibrary(*std::move(paths), *index, cache.cacheDirectory());
            remembered.toCheck = remembered.library.rows.rows;
            remembered.entries = PlayQueue::entriesFor(remembered.toCheck);
            remembered.records = static_cast<std::size_t>((*index)->size());
            return remembered;
        },
        [this](std::optional<Remembered> remembered) {
            if (remembered)
                publish(*std::move(remembered));
            else // could not be read ahead of need
                remember([paths = m_with.importedPaths.stored()] { return std::optional(paths); });
        });
}

void Restoration::publish(Remembered remembered) {
    // Something may have been imported meanwhile.
    if (!m_with.queue.isEmpty()) {
        const QStringList queued = pathsOf(m_with.queue.records());
        std::erase_if(remembered.entries, [known = QSet<QString>(queued.cbegin(), queued.cend())](
                                              const PlayQueue::Entry& entry) {
            return known.contains(entry.record->path());
        });
    }
    const bool isCacheCurrent = remembered.records == remembered.toCheck.size();
    m_with.queue.append(std::move(remembered.entries));
    m_with.library.append(std::move(remembered.library.rows));
    m_with.persistence.release(); // what has a record is there
    m_with.catalog.rebuildImportedAlbums();
    // The albums are what is waited for: a look at the disk would only hold them up.
    m_with.catalog.whenCurrent(this, [this, known = std::move(remembered.toCheck),
                                      unknown = std::move(remembered.library.unknown),
                                      isCacheCurrent]() mutable {
        check(std::move(known), std::move(unknown), isCacheCurrent);
    });
}

void Restoration::check(TrackRows known, std::vector<FileUrl> unknown, bool isCacheCurrent) {
    m_worker.run(
        [known = std::move(known), unknown = std::move(unknown),
         with = Reading{m_with.journal, m_with.cloudFiles, m_with.language()}](
            const SerialWorker::Job& job) { return fresh(known, unknown, with, job.token()); },
        [this, isCacheCurrent](Fresh fresh) {
            const bool isUnchanged = fresh.changed.empty() && fresh.added.empty();
            takeOver(std::move(fresh), isCacheCurrent && isUnchanged);
        });
}

Restoration::Fresh Restoration::fresh(const TrackRows& known, std::vector<FileUrl> unknown,
                                      const Reading& with, const std::stop_token& stop) {
    std::vector<const Track*> tracks;
    std::vector<FileUrl> files;
    tracks.reserve(known.size());
    files.reserve(known.size() + unknown.size());
    for (const TrackPtr& track : known) {
        if (track->sourceURL) {
            tracks.push_back(track.get());
            files.push_back(*track->sourceURL);
        }
    }
    std::move(unknown.begin(), unknown.end(), std::back_inserter(files));
    const std::vector<FileFacts> facts = fileFacts(files, stop);

    // What is gone is known by its record; without one it is not known at all.
    std::vector<FileUrl> toRead;
    std::vector<const Track*> changed;
    Fresh fresh;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!facts[i].exists)
            continue;
        const Track* track = i < tracks.size() ? tracks[i] : nullptr;
        if (track && track->readDate == facts[i].modificationDate) {
            if (track->fileSize != facts[i].size)
                fresh.changed.push_back(withSize(*track, facts[i].size));
        } else {
            toRead.push_back(files[i]);
            if (track)
                changed.push_back(track);
        }
    }

    TrackMetadataLoader::Accompaniment beside;
    beside.journal = with.journal;
    beside.stop = stop;
    beside.isEvicted = [cloud = with.cloudFiles](const QString& path) {
        return cloud->blocksWhenOpened(path);
    };
    auto read = TrackMetadataLoader::loadItems(toRead, with.language, beside);
    for (std::size_t i = 0; i < changed.size(); ++i) {
        // What can't be opened now, such as a file that is in the cloud, stays as it is known; its
        // date still differs at the next start.
        if (read[i].item.fileSize >= 0)
            fresh.changed.push_back(rowReadAgain(*changed[i], std::move(read[i])));
    }
    read.erase(read.begin(), read.begin() + static_cast<std::ptrdiff_t>(changed.size()));
    fresh.added = rowsFromLoaded(std::move(read));
    std::reverse(fresh.added.begin(), fresh.added.end());
    return fresh;
}

void Restoration::takeOver(Fresh fresh, bool isCacheCurrent) {
    if (fresh.changed.empty() && fresh.added.empty())
        return finish(isCacheCurrent);
    const TrackRows changed = portionOf(fresh.changed);
    m_with.library.replace(changed);
    m_with.queue.replace(changed);
    TrackRows added = portionOf(fresh.added);
    std::reverse(added.begin(), added.end());
    // Something may have been imported meanwhile.
    std::erase_if(added, [this](const TrackPtr& track) {
        return m_with.library.rowOf(track->path()).has_value();
    });
    m_with.library.append(added);
    m_with.queue.append(added);
    QMetaObject::invokeMethod(
        this,
        [this, fresh = std::move(fresh), isCacheCurrent]() mutable {
            takeOver(std::move(fresh), isCacheCurrent);
        },
        Qt::QueuedConnection);
}

void Restoration::finish(bool isCacheCurrent) {
    m_with.importedPaths.restored();
    m_isRunning = false;
    if (!m_with.catalog.isCurrent())
        m_with.catalog.rebuildImportedAlbums();
    if (!isCacheCurrent)
        m_with.persistence.persistMetadataCache();
    m_with.restored();
    Q_EMIT finished();
}

} // namespace halvane
