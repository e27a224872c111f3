// SPDX-License-Identifier: MIT
#include "library/browsing/live_lists.h"

#include <algorithm>

namespace halvane {

namespace {

constexpr std::size_t mostListed = 500;
constexpr qint64 fewestStars = 4;

} // namespace

bool isLiveList(SidebarItem item) {
    return item >= SidebarItem::recentlyAdded;
}

std::vector<quint32> rowsOfLiveList(SidebarItem list, std::vector<RowNumber> numbers) {
    const bool isByStars = list == SidebarItem::topRated;
    const qint64 least = isByStars ? fewestStars : 1;
    std::erase_if(numbers, [least](const RowNumber& one) { return one.number < least; });
    const std::size_t most = isByStars ? numbers.size() : std::min(numbers.size(), mostListed);
    std::partial_sort(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(most),
                      numbers.end(), [](const RowNumber& a, const RowNumber& b) {
                          return a.number != b.number ? a.number > b.number : a.row < b.row;
                      });
    std::vector<quint32> rows;
    rows.reserve(most);
    for (std::size_t i = 0; i < most; ++i)
        rows.push_back(numbers[i].row);
    return rows;
}

std::vector<RowNumber> datesAdded(const TrackRows& rows) {
    std::vector<RowNumber> dates;
    dates.reserve(rows.size());
    for (quint32 row = 0; row < rows.size(); ++row)
        dates.push_back({row, static_cast<qint64>(rows[row]->addedDate)});
    return dates;
}

} // namespace halvane
