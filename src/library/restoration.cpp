// SPDX-License-Identifier: MIT
#include "library/restoration.h"

#include "library/background.h"
#include "library/cache_persistence.h"
#include "library/imported_paths.h"
#include "library/thread_check.h"
#include "library/track_rows.h"
#include "platform/cloud_files.h"

#include <algorithm>
#include <sys/resource.h>

namespace halvane {

namespace {

/// Where processors are scarce the window comes first: this thread, and those that it starts, get
/// less of them. (A thread of Qt's can't be given a priority under the usual scheduler.)
void yieldToTheWindow() {
    constexpr int nicer = 5;
    ::setpriority(PRIO_PROCESS, 0, nicer);
}

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
    runInBackground(
        m_worker, this,
        [stored = m_with.importedPaths.stored(), cache = m_with.cache, journal = m_with.journal,
         cloudFiles = &m_with.cloudFiles, language = m_with.language(), cancelled = m_cancelled] {
            yieldToTheWindow();
            QStringList paths = stored;
            std::sort(paths.begin(), paths.end());
            std::vector<FileUrl> urls;
            urls.reserve(static_cast<std::size_t>(paths.size()));
            for (const QString& path : paths)
                urls.emplace_back(path);
            TrackMetadataLoader::Accompaniment with;
            with.journal = journal;
            with.cancelled = cancelled.get();
            with.isEvicted = [cloudFiles](const QString& path) {
                return cloudFiles->isEvicted(path);
            };
            const auto index = cache.loadIndex();
            auto loaded = cache.loadItems(urls, language, index, with);
            Restored restored;
            restored.isCacheCurrent =
                static_cast<std::size_t>(index.size()) == loaded.size() &&
                std::all_of(loaded.cbegin(), loaded.cend(),
                            [](const LoadedItem& item) { return item.isFromCache; });
            restored.rows = indexed(rowsFromLoaded(std::move(loaded)));
            restored.entries = PlayQueue::entriesFor(restored.rows.rows);
            return restored;
        },
        [this](Restored restored) {
            if (!*m_cancelled)
                publish(std::move(restored));
        });
}

void Restoration::publish(Restored restored) {
    // Something may have been imported meanwhile.
    if (!m_with.queue.isEmpty())
        std::erase_if(restored.entries, [this](const PlayQueue::Entry& entry) {
            return m_with.queue.rowOfPath(entry.record->path()).has_value();
        });
    m_with.queue.append(std::move(restored.entries));
    m_with.library.append(std::move(restored.rows));
    m_with.rebuildImportedAlbums();
    if (!restored.isCacheCurrent)
        m_with.persistence.persistMetadataCache();
    m_with.restored();
    Q_EMIT finished();
}

} // namespace halvane
