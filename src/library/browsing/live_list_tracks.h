// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/row_lookup.h"
#include "model/live_list.h"

namespace halvane {

class LiveLists;
class TrackUserData;

/// What live lists hold at the moment, of the published catalog. Main thread.
class LiveListTracks {
  public:
    /// All must outlive it.
    LiveListTracks(const LiveLists& lists, const LibraryStore& store,
                   const CatalogPublisher& catalog, const TrackUserData& userData)
        : m_lists(lists)
        , m_catalog(catalog)
        , m_userData(userData)
        , m_lookup(store, catalog) {}

    /// In the list's order.
    [[nodiscard]] std::vector<quint32> rowsOf(const LiveList& list) const;
    /// Of a list that the user has made; none for an unknown one.
    [[nodiscard]] TrackRows tracksOf(const QUuid& id) const;
    /// Empty for an unknown one.
    [[nodiscard]] QString nameOf(const QUuid& id) const;

    /// What the user has said of the rows, which a search may ask for. It is valid as long as this.
    [[nodiscard]] NumbersOf saidOfRows() const;

  private:
    const LiveLists& m_lists;
    const CatalogPublisher& m_catalog;
    const TrackUserData& m_userData;
    const RowLookup m_lookup;
};

} // namespace halvane
