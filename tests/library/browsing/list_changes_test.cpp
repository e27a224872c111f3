// SPDX-License-Identifier: MIT
#include "library/browsing/list_changes.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace halvane;

namespace {

std::optional<ListChanges> changes(const std::string& from, const std::string& to) {
    return listChanges(
        from.size(), to.size(), [&](std::size_t i) { return from[i]; },
        [&](std::size_t j) { return to[j]; },
        [&](std::size_t i, std::size_t j) { return from[i] == to[j]; });
}

// Changes a list as a view does.
std::string applied(std::string list, const ListChanges& told, const std::string& to) {
    for (auto range = told.removed.crbegin(); range != told.removed.crend(); ++range)
        list.erase(range->first, range->count);
    for (const RowRange& range : told.inserted)
        list.insert(range.first, to, range.first, range.count);
    return list;
}

} // namespace

TEST(ListChanges, AreMinimalAtTheEndsAndInBetween) {
    const auto appended = changes("abc", "abcde");
    ASSERT_TRUE(appended);
    EXPECT_TRUE(appended->removed.empty());
    EXPECT_EQ(appended->inserted, (std::vector<RowRange>{{3, 2}}));

    const auto narrowed = changes("abcdefg", "bcf");
    ASSERT_TRUE(narrowed);
    EXPECT_EQ(narrowed->removed, (std::vector<RowRange>{{0, 1}, {3, 2}, {6, 1}}));
    EXPECT_FALSE(changes("abc", "cab")); // a row that stays has moved
}

TEST(ListChanges, AlwaysLeadToTheNewList) {
    std::mt19937 generator(7);
    for (int i = 0; i < 5000; ++i) {
        const auto subset = [&] {
            std::string letters;
            for (char letter = 'a'; letter <= 'z'; ++letter) {
                if (generator() % 3 != 0)
                    letters += letter;
            }
            return letters;
        };
        const std::string from = subset();
        const std::string to = subset();
        const auto told = changes(from, to);
        ASSERT_TRUE(told);
        ASSERT_EQ(applied(from, *told, to), to);
    }
}
