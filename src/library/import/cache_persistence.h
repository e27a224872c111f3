// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "metadata/cache/metadata_cache.h"
#include "platform/serial_worker.h"

#include <QObject>

namespace halvane {

/// Saves the metadata cache on a worker. There is one save at a time, of the library as it is when
/// the save begins. Requests during a save are answered by one more save. Main thread.
class CachePersistence : public QObject {
    Q_OBJECT

  public:
    /// The store must outlive it.
    CachePersistence(const LibraryStore& library, const MetadataCache& cache,
                     QObject* parent = nullptr);
    /// Waits for a save that has begun.
    ~CachePersistence() override;

    void persistMetadataCache();
    /// No save begins from now until release(). While the library is not whole, a save would drop
    /// the records of the tracks that are not there yet.
    void hold() { m_isHeld = true; }
    void release();

  Q_SIGNALS:
    /// A save has ended, with or without success.
    void saved();

  private:
    void begin();

    const LibraryStore& m_library;
    const MetadataCache m_cache;
    bool m_isSaving = false;
    bool m_isWanted = false;
    bool m_isHeld = false;
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
