// SPDX-License-Identifier: MIT
// The orders in which the track table can show the library. Pure; any thread.
#pragma once

#include "library/catalog/catalog.h"
#include "model/enums.h"

namespace halvane {

/// By which column the tracks are sorted.
struct TrackSorting {
    TrackOrder by = TrackOrder::library;
    bool isDescending = false; ///< means nothing for the library's own order

    bool operator==(const TrackSorting&) const = default;
};

/// The rows of the whole catalog, sorted. Texts are compared as the user's language sorts them,
/// artists by their sort names. Tracks of one artist or album keep the order of the albums, in
/// either direction. Empty fields are last. The library's own order has no rows: the result is
/// empty.
std::vector<quint32> sortedRows(const Catalog& catalog, const TrackSorting& sorting);

} // namespace halvane
