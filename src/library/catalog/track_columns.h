// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"

#include <vector>

namespace halvane {

/// One field of all rows. Each distinct text is kept once; texts are compared exactly.
struct InternedColumn {
    std::vector<QString> texts; ///< the distinct texts in the order of appearance
    std::vector<quint32> ofRow; ///< the place of each row's text in `texts`
};

/// The fields whose texts repeat over a library. Grouping, counting and searching work on a few
/// thousand distinct texts rather than on those of every row. A plain value; any thread.
struct TrackColumns {
    InternedColumn artist;
    /// Who leads each row's album: a place among the artists' texts, which hold the leaders' too.
    std::vector<quint32> leadOfRow;
    InternedColumn album;
    InternedColumn genre;
    InternedColumn format;
};

TrackColumns columnsOf(const TrackRows& rows);

} // namespace halvane
