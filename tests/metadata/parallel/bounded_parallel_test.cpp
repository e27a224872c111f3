// SPDX-License-Identifier: MIT
#include "metadata/parallel/bounded_parallel.h"

#include <gtest/gtest.h>

#include <numeric>
#include <semaphore>

namespace halvane::test {
namespace {

using namespace std::chrono_literals;

TEST(BoundedParallel, LeavesAStuckThreadBehind) {
    auto release = std::make_shared<std::counting_semaphore<>>(0);
    BoundedParallel<int>::Options options;
    options.threads = 2;
    options.patience = 1ms;
    options.reports = 1ms;
    const auto results = BoundedParallel<int>::run(
        4,
        [release](std::size_t i) {
            if (i == 1)
                release->acquire();
            return static_cast<int>(i);
        },
        options);
    EXPECT_FALSE(results[1]);
    release->release();
}

TEST(BoundedParallel, HandsOverInOrderWhileLaterResultsAreComputed) {
    auto seen = std::make_shared<std::counting_semaphore<>>(0);
    BoundedParallel<int>::Options options;
    options.threads = 3;
    std::vector<int> all;
    BoundedParallel<int>::stream(
        20,
        [seen](std::size_t i) {
            if (i == 19)
                seen->acquire();
            return static_cast<int>(i);
        },
        options, {2, 4},
        [&](const BoundedParallel<int>::Results& next) {
            EXPECT_LE(next.size(), 4U);
            for (const auto& result : next)
                all.push_back(result.value_or(-1));
            seen->release();
        });
    std::vector<int> expected(20);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(all, expected);
}

} // namespace
} // namespace halvane::test
