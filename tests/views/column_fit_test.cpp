// SPDX-License-Identifier: MIT
#include "views/library/table/column_fit.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace halvane;
using namespace halvane::views;

namespace {

using Columns = QList<TrackOrder>;

QList<int> numbers(const Columns& columns) {
    QList<int> list;
    for (const TrackOrder column : columns)
        list.append(static_cast<int>(column));
    return list;
}

constexpr double least = 128;

} // namespace

TEST(ColumnFit, ColumnsGiveWayToTheTitleInTheirOrder) {
    using enum TrackOrder;
    const Columns standard{album, quality, time};
    const Columns most{number, artist, album, genre, year, plays, added, path, quality, rating};
    struct Case {
        Columns chosen;
        double room;
        Columns fitting;
    };
    const Case cases[] = {
        {standard, 1000, {album, quality}}, // the time has its place beyond
        {standard, 478, {album, quality}},
        {standard, 477, {album}},
        {standard, 328, {album}},
        {standard, 327, {}}, // also where the quality would fit: it went before
        {standard, 0, {}},
        {{quality, time}, 278, {quality}}, // the numbered tracks of an album
        {most, 3000, {artist, album, genre, year, plays, added, path, quality, rating}},
        {most, least + 1211, {artist, album, genre, year, plays, added, quality, rating}},
        {most, least + 951, {album, genre, year, plays, added, quality, rating}},
        {most, least + 566, {album, year, plays, quality, rating}},
        {most, least + 128, {year, plays}},
        {most, least + 56, {year}},
        {most, least, {}},
        {{year, rating}, least + 90, {year}},
    };
    for (const Case& c : cases) {
        const QList<int> fitting = fittingColumns(numbers(c.chosen), c.room, least);
        const QList<int> expected = numbers(c.fitting);
        EXPECT_TRUE(std::equal(fitting.begin(), fitting.end(), expected.begin(), expected.end()))
            << c.room << " for " << c.chosen.size();
    }
}

TEST(ColumnFit, OneThatHasGivenWayDoesNotComeBackInANarrowerTable) {
    using enum TrackOrder;
    const auto chosen =
        numbers({artist, album, genre, year, plays, added, path, quality, rating, time});
    QList<int> before = chosen;
    for (double room = 2000; room >= 0; --room) {
        const QList<int> fitting = fittingColumns(chosen, room, least);
        double taken = 0;
        for (const int column : fitting) {
            EXPECT_TRUE(before.contains(column)) << room;
            taken += columnWidth(static_cast<TrackOrder>(column));
        }
        EXPECT_TRUE(fitting.isEmpty() || room - taken >= least) << room;
        before = fitting;
    }
}

TEST(ColumnFit, TellsOnlyOfOtherColumns) {
    ColumnFit fit;
    fit.setChosen(numbers({TrackOrder::album, TrackOrder::year, TrackOrder::time}));
    fit.setRoom(300);
    EXPECT_EQ(fit.property("texts").toList().size(), 1);
    fit.setLeastTitleWidth(least); // a view may set these in any order
    EXPECT_TRUE(fit.property("texts").toList().isEmpty());
    fit.setOfOneAlbum(true);
    fit.setRoom(500);
    EXPECT_TRUE(fit.property("texts").toList().isEmpty()) << "its name is not repeated";
    fit.setOfOneAlbum(false);
    const auto texts = fit.property("texts").toList();
    ASSERT_EQ(texts.size(), 1);
    EXPECT_EQ(texts[0].toMap().value(QStringLiteral("fromEnd")).toDouble(), 256)
        << "before the year";
    EXPECT_EQ(fit.property("figures").toList().size(), 1);
    int told = 0;
    QObject::connect(&fit, &ColumnFit::fitted, [&] { ++told; });
    fit.setRoom(400);
    EXPECT_EQ(told, 0);
    fit.setRoom(200);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(fit.property("taken").toDouble(), 56);
}
