// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"

#include <vector>

namespace halvane {

/// One field of all rows, with each distinct text (compared exactly) kept once.
struct InternedColumn {
    std::vector<QString> texts; ///< the distinct texts, by number, in the order of appearance
    std::vector<quint32> ofRow; ///< the number of each row's text
};

/// The fields that repeat over a library, as numbers: what groups, counts and searches works on a
/// few thousand distinct texts rather than on every row's. Plain value, any thread.
struct TrackColumns {
    InternedColumn artist;
    InternedColumn album;
    InternedColumn genre;
    InternedColumn format;
};

TrackColumns columnsOf(const TrackRows& rows);

} // namespace halvane
