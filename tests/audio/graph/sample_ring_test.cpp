// SPDX-License-Identifier: MIT
#include "audio/graph/sample_ring.h"

#include <gtest/gtest.h>

#include <thread>
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

TEST(SampleRing, CarriesEveryValueInOrderBetweenTwoThreads) {
    constexpr std::uint64_t total = 300'000;
    SampleRing<std::uint64_t> ring(1 << 10);
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
    bool inOrder = true;
    std::uint64_t block[61];
    while (expected < total) {
        const auto count = ring.read(block, 1 + expected % 61);
        for (std::size_t i = 0; i < count; ++i)
            inOrder = inOrder && block[i] == expected++;
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
