// SPDX-License-Identifier: MIT
#include "audio/graph/sample_ring.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

namespace halvane {
namespace {

TEST(SampleRing, HoldsWhatFitsAndWrapsAround) {
    SampleRing<int> ring(6); // rounded up to 8
    std::vector<int> in(10), out(10, -1);
    int next = 0;
    for (int round = 0; round < 20; ++round) {
        for (int& v : in)
            v = next++;
        const auto accepted = ring.write(in.data(), in.size());
        ASSERT_EQ(accepted, 8u);
        EXPECT_EQ(ring.writeAvailable(), 0u);
        ASSERT_EQ(ring.read(out.data(), 3), 3u);
        EXPECT_EQ(ring.write(in.data() + 8, 2), 2u);
        ASSERT_EQ(ring.read(out.data() + 3, 99), 7u);
        EXPECT_EQ(out, in);
        EXPECT_EQ(ring.readAvailable(), 0u);
    }
}

TEST(SampleRing, KeepsWhatHasBeenReadForGoingBack) {
    SampleRing<int> ring(100, 28); // 128 in all
    std::vector<int> in(100), out(100);
    int next = 0;
    const auto fill = [&] {
        for (int& v : in)
            v = next++;
        return ring.write(in.data(), in.size());
    };
    EXPECT_EQ(ring.goBack(5), 0u) << "nothing has been read";
    ASSERT_EQ(fill(), 100u);
    ASSERT_EQ(ring.read(out.data(), 20), 20u);
    EXPECT_EQ(ring.goBack(99), 20u);
    ASSERT_EQ(ring.read(out.data(), 100), 100u);
    ASSERT_EQ(fill(), 100u) << "what is kept is not in its way";
    EXPECT_EQ(ring.goBack(10), 10u);
    ASSERT_EQ(ring.read(out.data(), 4), 4u);
    EXPECT_EQ(out[0], 90);
    EXPECT_EQ(ring.writeAvailable(), 0u) << "going back gives no room away";
    EXPECT_EQ(ring.goBack(99), 22u) << "kept behind the furthest that was read";
    ASSERT_EQ(ring.read(out.data(), 100), 100u);
    EXPECT_EQ(out[0], 72);
    EXPECT_EQ(out[99], 171);
}

TEST(SampleRing, CarriesEveryValueInOrderBetweenTwoThreads) {
    constexpr std::uint64_t total = 300'000;
    SampleRing<std::uint64_t> ring(1 << 10, 100);
    std::thread writer([&ring] {
        std::uint64_t next = 0;
        std::uint64_t block[97];
        while (next < total) {
            std::size_t count = 0;
            for (; count < 1 + next % 97 && next + count < total; ++count)
                block[count] = next + count;
            next += ring.write(block, count);
        }
    });
    std::uint64_t expected = 0;
    std::uint64_t lookedTwice = 0; // where, or it might come to the same place for ever
    bool inOrder = true;
    std::uint64_t block[61];
    while (expected < total) {
        const auto count = ring.read(block, 1 + expected % 61);
        for (std::size_t i = 0; i < count; ++i)
            inOrder = inOrder && block[i] == expected++;
        if (expected % 7907 == 0 && count > 0 && std::exchange(lookedTwice, expected) != expected)
            expected -= ring.goBack(50);         // one that looks twice
        if (expected % 7919 == 0 && count > 0) { // a reader that loses interest now and then
            const auto to = ring.consumed() + ring.readAvailable() / 2;
            ring.skipTo(to);
            expected = to;
        }
    }
    writer.join();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(ring.consumed(), total);
}

} // namespace
} // namespace halvane
