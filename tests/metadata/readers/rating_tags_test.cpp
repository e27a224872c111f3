// SPDX-License-Identifier: MIT
// Each program's way of writing the same stars.
#include "metadata/readers/rating_tags.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

TEST(RatingTags, ComeOutAsWholeStarsOnTheScaleThatTheyWereWrittenOn) {
    struct Row {
        quint8 (*starsOf)(const QString&);
        std::vector<const char*> ofEachStar; // for 1 to 5 in turn
    };
    const Row rows[] = {
        {starsOfShare, {"0.2", "0.4", "0.6", "0,8", "1.0"}},
        {starsOfShare, {"0.1", "0.3", "0.5", "0.7", "0.9"}}, // half stars
        {starsOfRating, {"1", "2", "3", "4", "5"}},
        {starsOfRating, {"0.2", "0.4", "0.6", "0.8", "1.0"}},
        {starsOfRating, {"20", "40", "60", "80", "100"}},
        {starsOfPopularity, {"1", "64", "128", "196", "255"}},
        {starsOfPopularity, {"1", "64", "128", "192", "255"}},
        {starsOfPopularity, {"51", "102", "153", "204", "255"}},
        {starsOfPopularity, {"54", "118", "186", "242", "255"}}, // half a star more, but the last
        {starsOfShared, {"1", "25", "50", "75", "99"}},
    };
    for (const Row& row : rows)
        for (std::size_t star = 0; star < row.ofEachStar.size(); ++star)
            EXPECT_EQ(row.starsOf(QString::fromLatin1(row.ofEachStar[star])), star + 1)
                << row.ofEachStar[star];
    // The upper half of a scale to 10 can only mean that.
    EXPECT_EQ(starsOfRating(u"8"_s), 4);
    EXPECT_EQ(starsOfRating(u"10"_s), 5);
}

TEST(RatingTags, AreNoneWhenTheySayNothing) {
    for (const QString& text :
         {QString(), u"0"_s, u"0.0"_s, u"-1"_s, u"nan"_s, u"inf"_s, u"1e9"_s, u"256"_s, u"good"_s})
        for (const auto starsOf : {starsOfShare, starsOfRating, starsOfPopularity, starsOfShared})
            EXPECT_EQ(starsOf(text), 0) << text.toStdString();
    EXPECT_EQ(parsePlays(u"12.0"_s), 12U);
    for (const QString& text : {QString(), u"0"_s, u"-4"_s, u"nan"_s, u"1e12"_s, u"often"_s})
        EXPECT_EQ(parsePlays(text), 0U) << text.toStdString();
}

} // namespace
} // namespace halvane::test
