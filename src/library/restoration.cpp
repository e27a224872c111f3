// SPDX-License-Identifier: MIT
#include "library/restoration.h"

#include "library/background.h"
#include "library/cache_persistence.h"
#include "library/imported_paths.h"
#include "library/thread_check.h"
#include "library/track_rows.h"
#include "platform/cloud_files.h"

#include <algorithm>
#include <chrono>

namespace halvane {

namespace {

/// A window that nobody sees gets no picture.
constexpr std::chrono::milliseconds longestWaitForPicture{1000};

} // namespace

Restoration::Restoration(RestorationCollaborators with, QObject* parent)
    : QObject(parent)
    , m_with(std::move(with))
    , m_cancelled(std::make_shared<std::atomic<bool>>(false)) {
    m_worker.setMaxThreadCount(1);
}

Restoration::~Restoration() {
    *m_cancelled = true;
    m_worker.waitForDone();
}

void Restoration::restoreImportedAudio() {
    assertOwnThread(*this);
    m_with.persistence.hold();
    load(m_with.importedPaths.restore());
}

void Restoration::load(const StoredPaths& stored) {
    runInBackground(
        m_worker, this,
        [stored, firstPicture = m_with.firstPicture,
         with = Loading{m_with.cache, m_with.journal, &m_with.cloudFiles, m_with.language(),
                        m_cancelled}]() -> std::optional<Restored> {
            yieldToTheWindow();
            auto paths = stored();
            if (firstPicture.valid())
                firstPicture.wait_for(longestWaitForPicture);
            return paths ? std::optional(restored(*std::move(paths), with)) : std::nullopt;
        },
        [this](std::optional<Restored> restored) {
            if (*m_cancelled)
                return;
            if (restored)
                publish(*std::move(restored));
            else // could not be read ahead of need
                load([paths = m_with.importedPaths.stored()] { return std::optional(paths); });
        });
}

Restoration::Restored Restoration::restored(QStringList paths, const Loading& with) {
    if (!std::is_sorted(paths.cbegin(), paths.cend()))
        std::sort(paths.begin(), paths.end());
    std::vector<FileUrl> urls;
    urls.reserve(static_cast<std::size_t>(paths.size()));
    for (const QString& path : std::as_const(paths))
        urls.emplace_back(path);
    TrackMetadataLoader::Accompaniment beside;
    beside.journal = with.journal;
    beside.cancelled = with.cancelled.get();
    beside.isEvicted = [files = with.cloudFiles](const QString& path) {
        return files->isEvicted(path);
    };
    const auto index = with.cache.loadIndex();
    auto loaded = with.cache.loadItems(urls, with.language, index, beside);
    Restored restored;
    restored.isCacheCurrent = static_cast<std::size_t>(index.size()) == loaded.size() &&
                              std::all_of(loaded.cbegin(), loaded.cend(),
                                          [](const LoadedItem& item) { return item.isFromCache; });
    restored.rows = indexed(rowsFromLoaded(std::move(loaded)));
    restored.entries = PlayQueue::entriesFor(restored.rows.rows);
    return restored;
}

void Restoration::publish(Restored restored) {
    // Something may have been imported meanwhile.
    if (!m_with.queue.isEmpty())
        std::erase_if(restored.entries, [this](const PlayQueue::Entry& entry) {
            return m_with.queue.rowOfPath(entry.record->path()).has_value();
        });
    m_with.queue.append(std::move(restored.entries));
    m_with.library.append(std::move(restored.rows));
    m_with.importedPaths.restored();
    m_with.persistence.release();
    m_with.rebuildImportedAlbums();
    if (!restored.isCacheCurrent)
        m_with.persistence.persistMetadataCache();
    m_with.restored();
    Q_EMIT finished();
}

} // namespace halvane
