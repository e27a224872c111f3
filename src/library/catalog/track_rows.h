// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "metadata/track_metadata_loader.h"

namespace halvane {

/// Library rows for what was loaded, in its order. They come into the library on a date in seconds
/// since 2001-01-01 UTC; 0: nobody knows when they came. Any thread.
TrackRows rowsFromLoaded(std::vector<LoadedItem> loaded, double addedDate);

/// The row of a file that was read again. It keeps its id, the date on which it was added and the
/// user's data. Any thread.
TrackPtr rowReadAgain(const Track& known, LoadedItem read);

/// So many rows that were read are taken over within a few milliseconds.
inline constexpr std::size_t takenOverAtOnce = 500;

/// Takes up to that many rows from the end. Any thread.
TrackRows takeLast(TrackRows& rows, std::size_t most);

/// The standardized paths of rows, without those that have no file. Any thread.
QStringList pathsOf(const TrackRows& rows);

} // namespace halvane
