// SPDX-License-Identifier: MIT
// The orders in which the track table can show the library. Pure; any thread.
#pragma once

#include "library/catalog/catalog.h"
#include "model/enums.h"
#include "platform/preferences/preference_value.h"

namespace halvane {

/// By which column the tracks are sorted.
struct TrackSorting {
    TrackOrder by = TrackOrder::library;
    bool isDescending = false; ///< means nothing for the order that they have by themselves

    bool operator==(const TrackSorting&) const = default;
};

/// Rows of the catalog, sorted. They come in the order that they have by themselves, which those
/// keep between which the column makes no difference; by artist, album, genre or year they keep the
/// order of the albums. Texts are compared as the user's language sorts them, artists by their sort
/// names. Empty fields are last, in either direction. `said` has the plays or the stars by path
/// where these are the column.
std::vector<quint32> sortedRows(const Catalog& catalog, const TrackSorting& sorting,
                                const IntegerMap& said, std::vector<quint32> rows);

/// All rows in the library's order.
std::vector<quint32> allRows(const Catalog& catalog);

} // namespace halvane
