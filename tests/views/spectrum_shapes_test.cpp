// SPDX-License-Identifier: MIT
#include "views/playing/spectrum_shapes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace halvane::views {
namespace {

TEST(SpectrumCurve, RunsFromEdgeToEdgeWithoutLeavingTheBands) {
    const QList<float> bands{0.2f, 0.9f, 0.1f, 0.6f, 0.4f};
    const auto curve = spectrumCurve(bands, 100, 50, 6);
    ASSERT_FALSE(curve.isEmpty());
    EXPECT_EQ(curve.first(), QPointF(0, 50 * (1 - static_cast<double>(0.2f))));
    EXPECT_EQ(curve.last(), QPointF(100, 50 * (1 - static_cast<double>(0.4f))));
    EXPECT_TRUE(std::is_sorted(curve.begin(), curve.end(),
                               [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); }));
    for (const QPointF& point : curve) {
        EXPECT_GE(point.y(), 50 * (1 - static_cast<double>(0.9f)));
        EXPECT_LE(point.y(), 50 * (1 - static_cast<double>(0.1f)));
    }
}

TEST(SpectrumCurve, IsEmptyWhereThereIsNothingToDraw) {
    EXPECT_TRUE(spectrumCurve({}, 100, 50, 4).isEmpty());
    EXPECT_TRUE(spectrumCurve({0.5f}, 100, 50, 4).isEmpty());
    EXPECT_TRUE(spectrumCurve({0.5f, 0.5f}, 0, 50, 4).isEmpty());
    EXPECT_EQ(spectrumCurve({0.0f, 1.0f}, 10, 10, 4).size(), 2);
}

TEST(RingLevels, SampleBetweenNeighboursAndClose) {
    const QList<float> bands{0, 1, 0.5f, 0.25f};
    EXPECT_DOUBLE_EQ(bandLevelAt(bands, 0), 0);
    EXPECT_DOUBLE_EQ(bandLevelAt(bands, 0.25), 0.25);
    EXPECT_DOUBLE_EQ(bandLevelAt(bands, 1.5), 0.75);
    EXPECT_DOUBLE_EQ(bandLevelAt(bands, 3.5), 0.125); // between the last and the first
    EXPECT_DOUBLE_EQ(bandLevelAt({}, 2), 0);
    const auto levels = ringLevels(bands, 8);
    ASSERT_EQ(levels.size(), 8);
    EXPECT_DOUBLE_EQ(levels[2], 1);
    EXPECT_DOUBLE_EQ(levels[3], 0.75);
}

} // namespace
} // namespace halvane::views
