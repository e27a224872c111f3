// SPDX-License-Identifier: MIT
#include "library/import/cache_persistence.h"

#include "library/catalog/track_conversion.h"
#include "platform/thread_check.h"

namespace halvane {

CachePersistence::CachePersistence(const LibraryStore& library, const MetadataCache& cache,
                                   QObject* parent)
    : QObject(parent)
    , m_library(library)
    , m_cache(cache) {
}

CachePersistence::~CachePersistence() {
    m_worker.finish();
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
    m_worker.run(
        [cache = m_cache, rows = m_library.snapshot()] {
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
