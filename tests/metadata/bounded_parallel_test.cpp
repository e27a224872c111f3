// SPDX-License-Identifier: MIT
#include "metadata/bounded_parallel.h"

#include <gtest/gtest.h>

#include <semaphore>

namespace halvane::test {
namespace {

using namespace std::chrono_literals;

TEST(BoundedParallel, ComputesEveryResultAndReportsIt) {
    std::size_t reported = 0;
    BoundedParallel<std::size_t>::Options options;
    options.progress = [&](std::size_t done) { reported = done; };
    const auto results = BoundedParallel<std::size_t>::run(
        1000, [](std::size_t i) { return i * i; }, options);
    for (std::size_t i = 0; i < results.size(); ++i)
        EXPECT_EQ(results[i], i * i);
    EXPECT_EQ(reported, 1000U);
    EXPECT_TRUE(BoundedParallel<int>::run(0, [](std::size_t) { return 1; }, {}).empty());
}

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

TEST(BoundedParallel, StopsWhenCancelled) {
    std::atomic<bool> cancelled = false;
    BoundedParallel<int>::Options options;
    options.threads = 1;
    options.reports = 1ms;
    options.isCancelled = [&] { return cancelled.load(); };
    const auto results = BoundedParallel<int>::run(
        10'000,
        [&](std::size_t) {
            cancelled = true;
            std::this_thread::yield();
            return 1;
        },
        options);
    EXPECT_EQ(results.size(), 10'000U);
}

} // namespace
} // namespace halvane::test
