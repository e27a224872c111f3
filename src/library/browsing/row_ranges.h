// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

namespace halvane {

/// Neighbouring rows of a list.
struct RowRange {
    std::size_t first = 0;
    std::size_t count = 0;

    bool operator==(const RowRange&) const = default;
};

/// With more separate ranges than this, a list resets: telling a view of each would take longer.
inline constexpr std::size_t mostNarrowRanges = 64;

/// Adds a row to ascending ranges that are all before it.
inline void addRow(std::vector<RowRange>& ranges, std::size_t row) {
    if (!ranges.empty() && ranges.back().first + ranges.back().count == row)
        ++ranges.back().count;
    else
        ranges.push_back({row, 1});
}

/// Whether a row is in one of ascending ranges.
inline bool isIn(const std::vector<RowRange>& ranges, std::size_t row) {
    const auto next = std::upper_bound(
        ranges.cbegin(), ranges.cend(), row,
        [](std::size_t place, const RowRange& range) { return place < range.first; });
    return next != ranges.cbegin() && row - std::prev(next)->first < std::prev(next)->count;
}

/// Has the views of a list draw some of its rows again.
inline void redraw(QAbstractListModel& list, const RowRange& rows, const QList<int>& roles) {
    if (rows.count > 0)
        Q_EMIT list.dataChanged(list.index(static_cast<int>(rows.first)),
                                list.index(static_cast<int>(rows.first + rows.count - 1)), roles);
}

} // namespace halvane
