// SPDX-License-Identifier: MIT
#include "library/browsing/table_columns.h"
#include "library/browsing/table_place.h"
#include "support/memory_preferences.h"

#include <gtest/gtest.h>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

QList<int> numbers(std::initializer_list<TrackOrder> columns) {
    QList<int> list;
    for (const TrackOrder column : columns)
        list.append(static_cast<int>(column));
    return list;
}

const QList<int> standard = numbers({TrackOrder::album, TrackOrder::quality, TrackOrder::time});

} // namespace

TEST(TableColumns, AreChosenForEachPlaceAndKept) {
    using enum TrackOrder;
    MemoryPreferences preferences;
    const QString playlist = TablePlace::playlist(QUuid::createUuid());
    {
        TableColumns columns(preferences);
        columns.restore();
        EXPECT_EQ(columns.shown(), standard);
        columns.toggle(path);
        columns.toggle(number);
        columns.toggle(quality);
        EXPECT_EQ(columns.shown(), numbers({number, album, path, time}))
            << "in the table's order, not in that of the clicks";
        EXPECT_FALSE(columns.isStandard());
        columns.setPlace(playlist);
        EXPECT_EQ(columns.shown(), standard) << "a place of its own";
        columns.toggle(plays);
        columns.setPlace({});
        EXPECT_TRUE(columns.shown().contains(static_cast<int>(plays))) << "a table that goes";
        columns.setPlace(TablePlace::album);
        EXPECT_TRUE(columns.shown().contains(static_cast<int>(number)));
        EXPECT_TRUE(columns.isStandard());
    }
    TableColumns again(preferences);
    EXPECT_EQ(again.shown(), standard) << "nothing is read before it is restored";
    again.restore();
    EXPECT_EQ(again.shown(), numbers({number, album, path, time}));
    again.setPlace(playlist);
    EXPECT_EQ(again.shown(), numbers({album, plays, quality, time}));
    again.forget(playlist);
    EXPECT_FALSE(preferences.strings(u"Halvane.TrackColumns."_s + playlist));
    again.setPlace(TablePlace::tracks);
    again.reset();
    EXPECT_EQ(again.shown(), standard);
    EXPECT_FALSE(preferences.strings(u"Halvane.TrackColumns"_s));
}

TEST(TableColumns, WhatIsStoredMayBeAnything) {
    using enum TrackOrder;
    struct Case {
        QStringList stored;
        QList<int> shown;
    };
    const Case cases[] = {
        {{u"time"_s, u"genre"_s}, numbers({genre, time})},
        {{u"nonsense"_s, u"title"_s, u"library"_s, u"year"_s, u"year"_s}, numbers({year})},
        {{}, {}},
    };
    for (const Case& c : cases) {
        MemoryPreferences preferences;
        preferences.setStrings(u"Halvane.TrackColumns"_s, c.stored);
        TableColumns columns(preferences);
        columns.restore();
        EXPECT_EQ(columns.shown(), c.shown) << c.stored.join(u' ').toStdString();
    }
    MemoryPreferences preferences;
    preferences.setString(u"Halvane.TrackColumns"_s, u"genre"_s);
    TableColumns columns(preferences);
    columns.restore();
    EXPECT_EQ(columns.shown(), standard) << "a value of another kind";
}
