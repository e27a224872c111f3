// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "metadata/cache/metadata_cache.h"
#include "platform/serial_worker.h"

#include <QObject>

namespace halvane {

/// Writes the metadata cache behind the program's back: one save at a time, of the library as it is
/// when the save begins; whatever is asked for meanwhile is one more save. Main thread.
class CachePersistence : public QObject {
    Q_OBJECT

  public:
    /// The store must outlive it.
    CachePersistence(const LibraryStore& library, const MetadataCache& cache,
                     QObject* parent = nullptr);
    /// Waits for a save that has begun.
    ~CachePersistence() override;

    void persistMetadataCache();
    /// Until the library is whole no save begins: it would drop the records of what is not there
    /// yet.
    void hold() { m_isHeld = true; }
    void release();

  Q_SIGNALS:
    /// A save has ended, well or not.
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
