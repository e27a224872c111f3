// SPDX-License-Identifier: MIT
#include "library/playback/queue_planner.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace halvane;

namespace {

// A queue in letters. Capitals can be played and small letters can't. Equal letters are one file.
struct Letters final : QueueView {
    std::string files;
    std::optional<std::size_t> at;
    std::vector<bool> played;
    std::vector<bool> askedFor;

    explicit Letters(std::string letters, int current = -1)
        : files(std::move(letters))
        , played(files.size())
        , askedFor(files.size()) {
        if (current >= 0)
            at = current;
    }
    [[nodiscard]] std::size_t size() const override { return files.size(); }
    [[nodiscard]] std::optional<std::size_t> current() const override { return at; }
    [[nodiscard]] bool isPlayable(std::size_t i) const override {
        return std::isupper(files[i]) != 0;
    }
    [[nodiscard]] bool wasPlayed(std::size_t i) const override { return played[i]; }
    [[nodiscard]] bool isAskedFor(std::size_t i) const override { return askedFor[i]; }
    [[nodiscard]] bool isSameFile(std::size_t i, std::size_t j) const override {
        return files[i] == files[j];
    }
};

using enum PlaybackRepeatMode;
constexpr int none = -1;

int placeOf(const Advance& advance) {
    return advance.entry ? static_cast<int>(*advance.entry) : none;
}

std::size_t firstOf(std::size_t) {
    return 0;
}

} // namespace

TEST(QueuePlanner, NeighboursAreWhatIsHeardBeforeAndAfter) {
    struct Case {
        const char* files;
        std::size_t entry;
        PlayMode mode;
        std::vector<std::size_t> beside;
    };
    const Case cases[] = {
        {"A", 0, {all, false}, {}},
        {"ABC", 1, {off, false}, {0, 2}},
        {"ABC", 0, {off, false}, {1}},
        {"ABC", 0, {all, false}, {2, 1}},
        {"ABC", 2, {all, false}, {1, 0}},
        {"AbCdE", 2, {one, false}, {0, 4}},
        {"aBc", 1, {all, false}, {}},
        {"ABC", 1, {all, true}, {}}, // nobody knows what shuffle will choose
    };
    for (const Case& c : cases)
        EXPECT_EQ(neighbours(Letters(c.files), c.mode, c.entry), c.beside) << c.files << c.entry;
}

TEST(QueuePlanner, AdvancesInOrder) {
    struct Case {
        const char* files;
        int current;
        PlaybackRepeatMode repeat;
        int byUser;
        int atEnd;
        int back;
        int gapless;
    };
    const Case cases[] = {
        // files, current, repeat, user's Next, end of track, Previous, gapless
        {"", none, off, none, none, none, none},
        {"ABC", none, off, 0, 0, none, 0},
        {"aBC", none, all, 1, 1, 2, 1},
        {"ABC", 0, off, 1, 1, none, 1},
        {"AbC", 0, off, 2, 2, none, 2},
        {"ABC", 2, off, 0, none, 1, none}, // only the user's Next wraps round
        {"ABC", 2, all, 0, 0, 1, 0},
        {"ABC", 0, all, 1, 1, 2, 1},
        {"aBC", 2, all, 1, 1, 1, 1},
        {"ABc", 0, all, 1, 1, 1, 1},
        {"Abc", 0, all, 0, 0, none,
         none}, // wrapping lands on the same file only where nothing else plays
        {"ABA", 2, all, 1, 1, 1, 0},
        {"AxA", 0, off, 2, 2, none, 2}, // but going forward may
        {"ABC", 1, one, 2, 1, 0, none},
        {"AbC", 1, one, 2, 2, 0, none}, // what does not play is not repeated
        {"abc", 1, all, none, none, none, none},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.files << " at " << c.current << " repeat " << static_cast<int>(c.repeat));
        const Letters queue(c.files, c.current);
        const PlayMode mode{c.repeat, false};
        EXPECT_EQ(placeOf(nextEntry(queue, mode, true, firstOf)), c.byUser);
        EXPECT_EQ(placeOf(nextEntry(queue, mode, false, firstOf)), c.atEnd);
        EXPECT_EQ(placeOf(previousEntry(queue, mode, firstOf)), c.back);
        const auto gapless = gaplessSuccessor(queue, mode);
        EXPECT_EQ(gapless ? static_cast<int>(*gapless) : none, c.gapless);
    }
}

// Pearson's statistic of equally likely outcomes is below these limits in 99.9 % of all runs.
TEST(QueuePlanner, ShuffleIsUniform) {
    constexpr int draws = 60'000;
    constexpr double limitOf9 = 27.88; // degrees of freedom
    constexpr double limitOf8 = 26.12;
    std::mt19937 generator(20'240'611);
    const RandomIndex random = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(generator);
    };
    const auto statistic = [&](const Letters& queue, int outcomes) {
        std::vector<int> counts(queue.size());
        for (int i = 0; i < draws; ++i)
            ++counts[*shuffledEntry(queue, all, false, random).entry];
        const double expected = static_cast<double>(draws) / outcomes;
        double sum = 0;
        for (const int count : counts) {
            if (count > 0)
                sum += (count - expected) * (count - expected) / expected;
        }
        return sum;
    };
    EXPECT_LT(statistic(Letters("ABxCDExFGHIJ"), 10), limitOf9);
    Letters nextCycle("ABCDEFGHIJ", 3); // any but the entry that just ended
    nextCycle.played.assign(10, true);
    EXPECT_LT(statistic(nextCycle, 9), limitOf8);
}
