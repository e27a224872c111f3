// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/catalog.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <functional>

namespace halvane {

/// Publishes what is derived from the tracks: albums, artists and search texts, always whole and
/// consistent with each other. A small library is derived at once, a large one by a worker; a
/// result that has been overtaken is dropped. Main thread; a catalog may be read on any.
class LibraryCatalog : public QObject {
    Q_OBJECT

  public:
    /// The store must outlive it.
    LibraryCatalog(const LibraryStore& store, std::function<ResolvedLanguage()> language,
                   QObject* parent = nullptr);

    /// What is published now; never null.
    const std::shared_ptr<const Catalog>& catalog() const { return m_catalog; }
    /// Whether the published catalog is of the store's rows as they are now.
    bool isCurrent() const { return m_catalog->rows.get() == &m_store.rows(); }

    /// Calls `then` once the published catalog is of the store's rows, at once if it is; not after
    /// `context` has gone.
    void whenCurrent(QObject* context, std::function<void()> then);

    /// Derives everything anew from the tracks and the language as they are now.
    void rebuildImportedAlbums();

  Q_SIGNALS:
    void catalogChanged();

  private:
    void publish(std::shared_ptr<const Catalog> catalog);

    const LibraryStore& m_store;
    std::function<ResolvedLanguage()> m_language;
    std::shared_ptr<const Catalog> m_catalog;
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
