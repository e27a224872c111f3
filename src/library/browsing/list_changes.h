// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/row_ranges.h"

#include <QSet>

#include <algorithm>
#include <optional>
#include <vector>

namespace halvane {

/// What makes one list into another: the rows that go, by their places in the old list, and the
/// rows that come, by their places in the new one. Both are ascending.
struct ListChanges {
    std::vector<RowRange> removed;
    std::vector<RowRange> inserted;
};

/// The changes from one list to another. There are none to give when they are too many to be worth
/// telling apart, or when rows that stay have changed places. `keyOfOld(i)` and `keyOfNew(i)` give
/// the key of a row; `isSame(i, j)` compares those of an old and a new row. The cost is linear, and
/// common rows at both ends are only compared.
template<typename KeyOfOld, typename KeyOfNew, typename IsSame>
std::optional<ListChanges> listChanges(std::size_t oldCount, std::size_t newCount,
                                       KeyOfOld keyOfOld, KeyOfNew keyOfNew, IsSame isSame) {
    constexpr std::size_t mostRowsBetween = 4096;
    const std::size_t shorter = std::min(oldCount, newCount);
    std::size_t head = 0;
    while (head < shorter && isSame(head, head))
        ++head;
    std::size_t tail = 0;
    while (tail < shorter - head && isSame(oldCount - 1 - tail, newCount - 1 - tail))
        ++tail;
    const std::size_t oldEnd = oldCount - tail;
    const std::size_t newEnd = newCount - tail;

    ListChanges changes;
    if (head == oldEnd || head == newEnd) {
        if (head < oldEnd)
            changes.removed.push_back({head, oldEnd - head});
        if (head < newEnd)
            changes.inserted.push_back({head, newEnd - head});
        return changes;
    }
    if (oldEnd - head > mostRowsBetween || newEnd - head > mostRowsBetween)
        return std::nullopt;

    QSet<std::decay_t<decltype(keyOfOld(head))>> oldKeys;
    QSet<std::decay_t<decltype(keyOfOld(head))>> newKeys;
    for (std::size_t i = head; i < oldEnd; ++i)
        oldKeys.insert(keyOfOld(i));
    for (std::size_t j = head; j < newEnd; ++j)
        newKeys.insert(keyOfNew(j));
    std::size_t i = head;
    std::size_t j = head;
    while (i < oldEnd || j < newEnd) {
        if (i < oldEnd && !newKeys.contains(keyOfOld(i)))
            addRow(changes.removed, i++);
        else if (j < newEnd && !oldKeys.contains(keyOfNew(j)))
            addRow(changes.inserted, j++);
        else if (i < oldEnd && j < newEnd && isSame(i, j))
            ++i, ++j;
        else
            return std::nullopt; // a row that stays has moved or occurs more than once
        if (changes.removed.size() + changes.inserted.size() > mostNarrowRanges)
            return std::nullopt;
    }
    return changes;
}

} // namespace halvane
