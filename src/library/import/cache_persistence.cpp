// SPDX-License-Identifier: MIT
#include "library/import/cache_persistence.h"

#include "library/background.h"
#include "library/catalog/track_conversion.h"
#include "platform/thread_check.h"

namespace halvane {

CachePersistence::CachePersistence(const LibraryStore& library, const MetadataCache& cache,
                                   QObject* parent)
    : QObject(parent)
    , m_library(library)
    , m_cache(cache) {
    m_worker.setMaxThreadCount(1);
}

CachePersistence::~CachePersistence() {
    m_worker.waitForDone();
}

void CachePersistence::persistMetadataCache() {
    assertOwnThread(*this);
    m_isWanted = true;
    if (!m_isSaving && !m_isHeld)
        begin();
}

void CachePersistence::release() {
    m_isHeld = false;
    if (m_isWanted)
        persistMetadataCache();
}

void CachePersistence::begin() {
    m_isWanted = false;
    m_isSaving = true;
    runInBackground(
        m_worker, this,
        [cache = m_cache, rows = m_library.snapshot()] {
            yieldToTheWindow();
            cache.save(rows->size(), [&rows](std::size_t row) {
                return queueItemFromTrack(*(*rows)[row]).value_or(QueueItem());
            });
            return true;
        },
        [this](bool) {
            m_isSaving = false;
            if (m_isWanted && !m_isHeld)
                begin();
            Q_EMIT saved();
        });
}

} // namespace halvane
