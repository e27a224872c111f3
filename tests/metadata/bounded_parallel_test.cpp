// SPDX-License-Identifier: MIT
#include "metadata/bounded_parallel.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace halvane::test
