// SPDX-License-Identifier: MIT
#include "platform/sound/heard_clock.h"

#include <gtest/gtest.h>

#include <thread>

namespace halvane::test {

TEST(HeardClock, countsOnBetweenReportsAndNeverBack) {
    HeardClock clock;
    clock.reset(1000);
    clock.addRendered(500);
    EXPECT_EQ(clock.heard(5), 0) << "stands still at first";
    clock.run(-20, 10); // the first frame is heard in 20 ms
    EXPECT_EQ(clock.heard(10.01), 0);
    EXPECT_EQ(clock.heard(10.12), 100);
    clock.run(90, 10.12); // the server corrects itself: stands still until it is true
    EXPECT_EQ(clock.heard(10.12), 100);
    EXPECT_EQ(clock.heard(10.15), 120);
    EXPECT_EQ(clock.heard(20), 500) << "never more than there is";
}

TEST(HeardClock, holdsGoesOnAndSkips) {
    HeardClock clock;
    clock.reset(1000);
    clock.addRendered(1000);
    clock.run(0, 0);
    clock.hold(0.3);
    EXPECT_EQ(clock.heard(0.9), 300);
    clock.run(300, 1);
    EXPECT_EQ(clock.heard(1.1), 400);
    clock.skipToRendered();
    EXPECT_EQ(clock.heard(1.2), 1000);
    clock.reset(1000);
    EXPECT_EQ(clock.heard(2), 0);
}

TEST(HeardClock, aServerThatRanDryDoesNotRunAhead) {
    HeardClock clock;
    clock.reset(1000);
    clock.addRendered(100);
    clock.run(0, 0);
    clock.runDry();
    clock.addRendered(900); // comes late, and is heard later still
    EXPECT_EQ(clock.heard(0.5), 100);
    clock.run(100, 0.6);
    EXPECT_EQ(clock.heard(0.7), 200);
}

TEST(HeardClock, anEndCountsAsHeardBeforeTheEarGetsThere) {
    HeardClock clock;
    clock.reset(1000);
    clock.addRendered(1000);
    clock.run(100, 1);
    clock.endAt(300);
    EXPECT_EQ(clock.heard(1.05), 300);
    EXPECT_NEAR(clock.atEar(1.05), 150, 1e-6);
    EXPECT_EQ(clock.heard(2), 300) << "only silence comes";
    clock.run(200, 1.1); // more has been scheduled behind it
    EXPECT_EQ(clock.heard(1.15), 300);
    EXPECT_EQ(clock.heard(1.3), 400);
}

TEST(HeardClock, readersNeverSeeHalfAReport) {
    HeardClock clock;
    clock.reset(1000);
    clock.addRendered(1'000'000);
    std::atomic<bool> done = false;
    // Every report says the same: one frame heard each unit of 1 ms. A mixture would say otherwise.
    std::thread writer([&] {
        for (int i = 1; i < 200'000; ++i)
            clock.run(i, i / 1000.0);
        done = true;
    });
    std::int64_t last = 0;
    while (!done) {
        const auto heard = clock.heard(200);
        EXPECT_GE(heard, last);
        EXPECT_TRUE(heard == 0 || std::abs(heard - 200'000) <= 1) << heard;
        last = heard;
    }
    writer.join();
}

} // namespace halvane::test
