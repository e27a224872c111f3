// SPDX-License-Identifier: MIT
#include "library/browsing/live_list_rows.h"

#include "library/browsing/library_search.h"
#include "library/catalog/track_sorting.h"

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostListed = 500;

std::vector<quint32> rowsFound(const QString& text, const Catalog& catalog, const NumbersOf& said,
                               const QDateTime& now) {
    LibrarySearch search;
    search.setText(text, now);
    if (search.isEmpty())
        return allRows(catalog);
    search.lookThrough(catalog, said);
    return search.rows(catalog, nullptr);
}

// By row. What is not known is 0.
std::vector<qint64> saidOfRows(TermField field, const Catalog& catalog, const NumbersOf& said) {
    std::vector<qint64> numbers(catalog.rows->size(), 0);
    for (const RowNumber& one : said(field))
        numbers[one.row] = one.number;
    return numbers;
}

template<typename Value>
std::vector<qint64> valuesOfRows(const Catalog& catalog, Value value) {
    std::vector<qint64> numbers;
    numbers.reserve(catalog.rows->size());
    for (const TrackPtr& row : *catalog.rows)
        numbers.push_back(static_cast<qint64>(value(*row)));
    return numbers;
}

std::vector<qint64> numbersOfRows(LiveOrder order, const Catalog& catalog, const NumbersOf& said) {
    switch (order) {
    case LiveOrder::library:
        break;
    case LiveOrder::added:
        return valuesOfRows(catalog, [](const Track& track) { return track.addedDate; });
    case LiveOrder::played:
        return saidOfRows(TermField::played, catalog, said);
    case LiveOrder::plays:
        return saidOfRows(TermField::plays, catalog, said);
    case LiveOrder::rating:
        return saidOfRows(TermField::rating, catalog, said);
    case LiveOrder::year:
        return valuesOfRows(catalog, [](const Track& track) { return track.year; });
    }
    return {};
}

} // namespace

bool isLiveList(SidebarItem item) {
    return item >= SidebarItem::recentlyAdded;
}

LiveList standardLiveList(SidebarItem item) {
    LiveList list;
    list.most = mostListed;
    switch (item) {
    case SidebarItem::recentlyPlayed:
        list.search = u"played:>=2001"_s; // at any time
        list.order = LiveOrder::played;
        break;
    case SidebarItem::mostPlayed:
        list.search = u"plays:>=1"_s;
        list.order = LiveOrder::plays;
        break;
    case SidebarItem::topRated:
        list.search = u"rating:>=4"_s;
        list.order = LiveOrder::rating;
        list.most = 0;
        break;
    default:
        list.search = u"added:>=2001"_s; // at any time
        list.order = LiveOrder::added;
        break;
    }
    return list;
}

std::vector<quint32> rowsOfLiveList(const LiveList& list, const Catalog& catalog,
                                    const NumbersOf& said, const QDateTime& now) {
    auto rows = rowsFound(list.search, catalog, said, now);
    const std::size_t most =
        list.most > 0 ? std::min(rows.size(), static_cast<std::size_t>(list.most)) : rows.size();
    if (list.order == LiveOrder::library) {
        if (list.isReversed)
            std::reverse(rows.begin(), rows.end());
    } else {
        const auto numbers = numbersOfRows(list.order, catalog, said);
        const bool isRising = list.isReversed;
        std::partial_sort(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(most),
                          rows.end(), [&](quint32 a, quint32 b) {
                              if (numbers[a] == numbers[b])
                                  return a < b;
                              return (numbers[a] < numbers[b]) == isRising;
                          });
    }
    rows.resize(most);
    return rows;
}

} // namespace halvane
