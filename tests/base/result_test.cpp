// SPDX-License-Identifier: MIT
#include "base/result.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace halvane {
namespace {

using namespace Qt::StringLiterals;

using Number = std::unique_ptr<int>; // can only be moved

Result<Number> number(int digit) {
    if (digit > 9)
        return Failure{u"%1 is no digit"_s.arg(digit)};
    return std::make_unique<int>(digit);
}

Result<> check(int digit) {
    const auto found = number(digit);
    if (!found)
        return found.failure();
    return {};
}

TEST(ResultTest, HoldsAValueOrAFailureThatPassesOn) {
    const struct {
        int digit;
        QString failure; // empty for success
    } cases[] = {{0, {}}, {9, {}}, {10, u"10 is no digit"_s}};
    for (const auto& [digit, failure] : cases) {
        Result<Number> found = number(digit);
        const Result<> checked = check(digit);
        ASSERT_EQ(static_cast<bool>(found), failure.isEmpty()) << digit;
        ASSERT_EQ(static_cast<bool>(checked), failure.isEmpty()) << digit;
        if (!found) {
            EXPECT_EQ(found.failure().text, failure);
            EXPECT_EQ(checked.failure().text, failure);
            continue;
        }
        EXPECT_EQ(**found, digit);
        const Number taken = *std::move(found);
        EXPECT_EQ(*taken, digit);
    }
}

// A text is a value, and a failure is never one.
TEST(ResultTest, TellsATextFromAFailure) {
    const Result<QString> text = u"text"_s;
    const Result<QString> failure = Failure{u"text"_s};
    EXPECT_TRUE(text);
    EXPECT_EQ(text->size(), 4);
    EXPECT_FALSE(failure);
    EXPECT_FALSE((std::is_convertible_v<QString, Result<>>));
    EXPECT_FALSE((std::is_convertible_v<Result<QString>, bool>));
}

} // namespace
} // namespace halvane
