// SPDX-License-Identifier: MIT
#include "library/sound/level_rules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace halvane::test {
namespace {

// A sound of one level throughout.
ProgrammeLoudness steady(double lufs, double peak = -10, std::size_t hops = 1000) {
    ProgrammeLoudness measured =
        programmeLoudness(std::vector<double>(hops, std::pow(10, (lufs + 0.691) / 10)));
    measured.truePeakDb = peak;
    return measured;
}

KnownLevel tagged(const LevelTags& tags) {
    KnownLevel level;
    level.tags = tags;
    return level;
}

KnownLevel heard(const ProgrammeLoudness& measured, const LevelTags& tags = {}) {
    KnownLevel level = tagged(tags);
    level.measured = measured;
    return level;
}

const LevelTags whole{-7, -1, -5, 0.5};

TEST(LevelRules, TagsGoBeforeWhatWasMeasured) {
    const ProgrammeLoudness silent = steady(-90, -95);
    struct Case {
        const char* name;
        KnownLevel own;
        std::vector<KnownLevel> others;
        Level track;
        Level album;
    };
    const std::vector<Case> cases{
        {"nothing known", tagged({}), {}, {}, {}},
        {"tags", tagged(whole), {}, {-7, -1}, {-5, 0.5}},
        {"tags and measured", heard(steady(-30, -20), whole), {}, {-7, -1}, {-5, 0.5}},
        {"measured", heard(steady(-23, -3)), {}, {5, -3}, {5, -3}},
        {"no peak", heard(steady(-23, -3), {-7, {}, {}, {}}), {}, {-7, -3}, {5, -3}},
        {"another track names the album's", tagged({}), {tagged(whole)}, {}, {-5, 0.5}},
        {"one of two measured", heard(steady(-23, -3)), {tagged({})}, {5, -3}, {}},
        {"both measured", heard(steady(-23, -3)), {heard(steady(-23, -1))}, {5, -3}, {5, -1}},
        // The soft one is far below the gate of both, and does not count.
        {"a soft one", heard(steady(-48, -30)), {heard(steady(-18, -2))}, {30, -30}, {0, -2}},
        {"a peak by tag",
         heard(steady(-23, -3), {{}, 1, {}, {}}),
         {heard(steady(-23, -1))},
         {5, 1},
         {5, 1}},
        {"silence", heard(silent), {}, {{}, -95}, {{}, -95}},
        {"silence on an album", heard(silent), {heard(steady(-20, -2))}, {{}, -95}, {2, -2}},
    };
    const auto expectNear = [](const std::optional<double>& a, const std::optional<double>& b) {
        ASSERT_EQ(a.has_value(), b.has_value());
        if (a) {
            EXPECT_NEAR(*a, *b, 0.02);
        }
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<KnownLevel> all = c.others;
        all.push_back(c.own);
        expectNear(trackLevel(c.own).gain, c.track.gain);
        expectNear(trackLevel(c.own).peak, c.track.peak);
        expectNear(albumLevel(c.own, all).gain, c.album.gain);
        expectNear(albumLevel(c.own, all).peak, c.album.peak);
    }
}

TEST(LevelRules, GainsKeepPeaksBelowFullScaleWhereThatIsWanted) {
    struct Case {
        Level level;
        double preamp;
        double limited;
        double free;
    };
    for (const Case& c : {
             Case{{-7, 0}, 0, -7, -7},
             Case{{6, -2}, 0, 2, 6},
             Case{{6, -2}, -5, 1, 1},
             Case{{-7, 0}, 12, 0, 5},
             Case{{-1, 2}, 0, -2, -1}, // between the samples it is above full scale
             Case{{6, {}}, 0, 0, 6},   // the peak may be anything
             Case{{{}, {}}, -4, -4, -4},
             Case{{{}, {}}, 4, 0, 4},
             Case{{60, -70}, 0, 24, 24},
             Case{{-60, 0}, 0, -24, -24},
         }) {
        EXPECT_DOUBLE_EQ(levelGain(c.level, {c.preamp, true}), c.limited);
        EXPECT_DOUBLE_EQ(levelGain(c.level, {c.preamp, false}), c.free);
    }
}

TEST(LevelRules, AMeasurementIsKeptInNumbers) {
    for (const ProgrammeLoudness& measured : {steady(-23.4, -3), steady(-90), ProgrammeLoudness{}})
        EXPECT_EQ(levelFromNumbers(levelNumbers(measured)), measured);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const std::vector<double>& nonsense :
         {std::vector<double>{}, {-20, -1}, {-20, nan, -20, 5}, {-20, -1, 1e300, 5}})
        EXPECT_EQ(levelFromNumbers(nonsense), std::nullopt);
}

} // namespace
} // namespace halvane::test
