// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/catalog_publisher.h"
#include "library/catalog/catalog_search.h"

namespace halvane {

/// Finds the rows of the published catalog by the paths of their tracks. Where the catalog is of
/// the store's present rows, the store knows them; else the catalog is gone through. Main thread.
class RowLookup {
  public:
    /// Both must outlive it.
    RowLookup(const LibraryStore& store, const CatalogPublisher& catalog)
        : m_store(store)
        , m_catalog(catalog) {}

    /// In the order of the paths, without those that the library does not have.
    [[nodiscard]] std::vector<quint32> rowsOf(const std::vector<QString>& paths) const;
    /// What is kept by path, by row.
    [[nodiscard]] std::vector<RowNumber> numbersOf(const IntegerMap& numbers) const;

  private:
    const LibraryStore& m_store;
    const CatalogPublisher& m_catalog;
};

} // namespace halvane
