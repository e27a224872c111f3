// SPDX-License-Identifier: MIT
#include "library/import/restoration.h"

#include "library/catalog/catalog_publisher.h"
#include "library/catalog/track_rows.h"
#include "library/import/cache_persistence.h"
#include "library/import/fallback_names.h"
#include "library/import/imported_paths.h"
#include "library/user/language_setting.h"
#include "metadata/file_dates.h"
#include "platform/thread_check.h"

#include <algorithm>
#include <chrono>

namespace halvane {

namespace {

// A hidden window never shows a picture, and would be waited for without end.
constexpr std::chrono::milliseconds longestWaitForPicture{1000};

TrackPtr withSize(Track track, qint64 bytes) {
    track.fileSize = bytes;
    return makeRow(std::move(track));
}

} // namespace

Restoration::Restoration(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                         ImportedPaths& importedPaths, CachePersistence& persistence,
                         const LanguageSetting& language, QueueMemory& memory, ReadingNeeds needs,
                         std::shared_future<void> firstPicture, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_queue(queue)
    , m_importedPaths(importedPaths)
    , m_persistence(persistence)
    , m_language(language)
    , m_memory(memory)
    , m_needs(std::move(needs))
    , m_firstPicture(std::move(firstPicture)) {
}

void Restoration::restoreImportedAudio() {
    assertOwnThread(*this);
    m_isRunning = true;
    m_persistence.hold();
    remember(m_importedPaths.restore());
}

void Restoration::remember(const StoredPaths& stored) {
    // Freeing the index takes time, so it is kept until the rows are posted to the main thread.
    const auto index = std::make_shared<std::shared_ptr<const MetadataIndex>>();
    m_worker.run(
        [stored, index, cache = m_needs.cache, recall = m_memory.recall(),
         firstPicture = m_firstPicture]() -> std::optional<Remembered> {
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
            remembered.left = recall();
            if (remembered.left)
                remembered.entries = remembered.left->entries(remembered.toCheck);
            if (remembered.entries.empty()) {
                remembered.left.reset();
                remembered.entries = PlayQueue::entriesFor(remembered.toCheck);
            }
            remembered.records = static_cast<std::size_t>((*index)->size());
            return remembered;
        },
        [this](std::optional<Remembered> remembered) {
            if (remembered)
                publish(*std::move(remembered));
            else // the list could not be read ahead of time
                remember([paths = m_importedPaths.stored()] { return std::optional(paths); });
        });
}

void Restoration::publish(Remembered remembered) {
    // Something may have been imported meanwhile.
    if (!m_queue.isEmpty()) {
        const QStringList queued = pathsOf(m_queue.records());
        std::erase_if(remembered.entries, [known = QSet<QString>(queued.cbegin(), queued.cend())](
                                              const PlayQueue::Entry& entry) {
            return known.contains(entry.record->path());
        });
    }
    const bool isCacheCurrent = remembered.records == remembered.toCheck.size();
    if (remembered.left && m_queue.isEmpty())
        m_memory.takeUp(std::move(remembered.entries), *remembered.left);
    else
        m_queue.append(std::move(remembered.entries));
    m_memory.begin();
    m_store.append(std::move(remembered.library.rows));
    m_persistence.release(); // every file with a record is in the library
    m_catalog.rebuildImportedAlbums();
    // The user waits for the albums, and a look at the disk would delay them.
    m_catalog.whenCurrent(this, [this, known = std::move(remembered.toCheck),
                                 unknown = std::move(remembered.library.unknown),
                                 isCacheCurrent]() mutable {
        check(std::move(known), std::move(unknown), isCacheCurrent);
    });
}

void Restoration::check(TrackRows known, std::vector<FileUrl> unknown, bool isCacheCurrent) {
    m_worker.run(
        [known = std::move(known), unknown = std::move(unknown), needs = m_needs,
         language = m_language.resolvedLanguage()](const SerialWorker::Job& job) {
            return fresh(known, unknown, needs, language, job.token());
        },
        [this, isCacheCurrent](Fresh fresh) {
            const bool isUnchanged = fresh.changed.empty() && fresh.added.empty();
            takeOver(std::move(fresh), isCacheCurrent && isUnchanged);
        });
}

Restoration::Fresh Restoration::fresh(const TrackRows& known, std::vector<FileUrl> unknown,
                                      const ReadingNeeds& needs, ResolvedLanguage language,
                                      const std::stop_token& stop) {
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

    // A missing file is known by its record only.
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

    // What was said of a changed file is to follow its sound, so that has to be known at once.
    auto with = needs.accompaniment(stop);
    with.isThorough = true;
    const auto firstUnknown = toRead.begin() + static_cast<std::ptrdiff_t>(changed.size());
    auto read = TrackMetadataLoader::loadItems({toRead.begin(), firstUnknown},
                                               fallbackNames(language), with);
    for (std::size_t i = 0; i < changed.size(); ++i) {
        // A file that can't be opened now, such as one in the cloud, stays as it is known. Its date
        // will still differ at the next start.
        if (read[i].item.fileSize >= 0)
            fresh.changed.push_back(rowReadAgain(*changed[i], std::move(read[i])));
    }
    fresh.added = rowsFromLoaded(TrackMetadataLoader::loadItems({firstUnknown, toRead.end()},
                                                                fallbackNames(language),
                                                                needs.accompaniment(stop)),
                                 0);
    std::reverse(fresh.added.begin(), fresh.added.end());
    return fresh;
}

void Restoration::takeOver(Fresh fresh, bool isCacheCurrent) {
    if (!fresh.changed.empty())
        replaceSome(fresh);
    else if (!fresh.added.empty())
        addSome(fresh.added);
    else
        return finish(isCacheCurrent);
    QMetaObject::invokeMethod(
        this,
        [this, fresh = std::move(fresh), isCacheCurrent]() mutable {
            takeOver(std::move(fresh), isCacheCurrent);
        },
        Qt::QueuedConnection);
}

void Restoration::replaceSome(Fresh& fresh) {
    const TrackRows changed = takeLast(fresh.changed, takenOverAtOnce);
    m_store.replace(changed);
    m_queue.replace(changed, fresh.queued);
}

void Restoration::addSome(TrackRows& fresh) {
    TrackRows added = takeLast(fresh, takenOverAtOnce);
    std::reverse(added.begin(), added.end());
    // Something may have been imported meanwhile.
    std::erase_if(
        added, [this](const TrackPtr& track) { return m_store.rowOf(track->path()).has_value(); });
    m_store.append(added);
    m_queue.append(added);
}

void Restoration::finish(bool isCacheCurrent) {
    m_importedPaths.restored();
    m_isRunning = false;
    if (!m_catalog.isCurrent())
        m_catalog.rebuildImportedAlbums();
    if (!isCacheCurrent)
        m_persistence.persistMetadataCache();
    Q_EMIT finished();
}

} // namespace halvane
