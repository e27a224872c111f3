// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/track_sorting.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <functional>

namespace halvane {

class LanguageSetting;
class TrackUserData;

/// Publishes the catalog that is derived from the tracks, always as a whole. A small library is
/// derived at once, a large one by a worker. A stale result is dropped. Main thread; a catalog may
/// be read on any thread.
class CatalogPublisher : public QObject {
    Q_OBJECT

  public:
    /// A derivation or a sorting of so many rows takes a few milliseconds, which is not worth a
    /// worker's round trip.
    static constexpr std::size_t doneInPlace = 2000;

    /// All references must outlive it.
    CatalogPublisher(const LibraryStore& store, const TrackUserData& userData,
                     const LanguageSetting& language, QObject* parent = nullptr);

    /// The newest catalog, never null.
    [[nodiscard]] const std::shared_ptr<const Catalog>& published() const { return m_catalog; }
    /// The published catalog's rows in the order that was asked for, of which they may still be
    /// one behind. Null: the library's own order.
    [[nodiscard]] const std::vector<quint32>* sortedRows() const {
        return m_sorted.by == TrackOrder::library ? nullptr : &m_sortedRows;
    }
    /// A few rows of the published catalog, sorted at once.
    [[nodiscard]] std::vector<quint32> sortedRows(const TrackSorting& sorting,
                                                  std::vector<quint32> rows) const;
    /// How many rows of the published catalog are loved now.
    [[nodiscard]] std::size_t lovedCount() const { return m_lovedCount; }
    /// Whether the published catalog is of the store's rows as they are now.
    [[nodiscard]] bool isCurrent() const { return m_catalog->rows.get() == &m_store.rows(); }

    /// The tracks of the album that a track of the store is on, which is among them. A track that
    /// the published catalog does not have yet is its own album.
    [[nodiscard]] TrackRows albumAround(const TrackPtr& track) const;

    /// Calls `then` when the published catalog is of the store's rows, which may be at once. Does
    /// not call it if `context` has been destroyed by then.
    void whenCurrent(QObject* context, std::function<void()> then);

    /// Derives a catalog from the tracks and the language as they are now.
    void rebuildImportedAlbums();
    /// Sorts the rows, and those of later catalogs.
    void setSorting(const TrackSorting& sorting);
    /// Sorts them again if they are sorted by plays or stars that have changed since.
    void sortOutdated();

  Q_SIGNALS:
    void catalogChanged();
    /// The same catalog's rows are in another order.
    void sortedRowsChanged();
    /// One track is loved, or no longer, in the same catalog.
    void lovedCountChanged();

  private:
    /// A catalog and its rows in an order.
    struct Derived {
        std::shared_ptr<const Catalog> catalog;
        TrackSorting sorting;
        std::vector<quint32> rows;
    };

    static Derived sorted(std::shared_ptr<const Catalog> catalog, const TrackSorting& sorting,
                          const IntegerMap& said);
    /// What the user has said of the tracks, as far as it takes part in a sorting.
    [[nodiscard]] IntegerMap said(const TrackSorting& sorting) const;
    void publish(Derived derived);
    void sortRows();
    void takeOrder(Derived derived);
    void followLoved(const QString& path);

    const LibraryStore& m_store;
    const TrackUserData& m_userData;
    const LanguageSetting& m_language;
    std::shared_ptr<const Catalog> m_catalog;
    TrackSorting m_sorting; ///< as it was asked for
    TrackSorting m_sorted;  ///< of the sorted rows
    std::vector<quint32> m_sortedRows;
    bool m_isOutdated = false; ///< plays or stars have changed by which the rows are sorted
    std::size_t m_lovedCount = 0;
    std::ptrdiff_t m_lovedSince = 0; ///< tracks loved since the newest derivation began
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
