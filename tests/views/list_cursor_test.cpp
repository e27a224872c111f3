// SPDX-License-Identifier: MIT
#include "views/library/table/list_cursor.h"

#include <QStandardItemModel>

#include <gtest/gtest.h>

namespace halvane::views {
namespace {

using namespace Qt::StringLiterals;

constexpr int idRole = Qt::UserRole;
constexpr int titleRole = Qt::UserRole + 1;

class ListCursorTest : public testing::Test {
  protected:
    ListCursorTest() {
        model.setItemRoleNames({{idRole, "trackId"}, {titleRole, "title"}});
        for (const auto& title : {u"Amber"_s, u"Birch"_s, u"Bramble"_s, u"Cedar"_s, u"birdsong"_s})
            add(model.rowCount(), title);
        cursor.setProperty("idRole", u"trackId"_s);
        cursor.setProperty("textRole", u"title"_s);
        cursor.setModel(&model);
    }
    void add(int row, const QString& title) {
        auto* item = new QStandardItem;
        item->setData(title + u"-id"_s, idRole);
        item->setData(title, titleRole);
        model.insertRow(row, item);
    }
    [[nodiscard]] QString chosen() const {
        return cursor.value(cursor.index(), u"title"_s).toString();
    }

    QStandardItemModel model;
    ListCursor cursor;
};

TEST_F(ListCursorTest, StaysOnItsRowWhileTheListChangesAroundIt) {
    cursor.setIndex(2);
    add(0, u"Acorn"_s);
    EXPECT_EQ(chosen(), u"Bramble"_s);
    EXPECT_EQ(cursor.index(), 3);
    model.removeRow(1);
    EXPECT_EQ(chosen(), u"Bramble"_s);
    model.sort(0);
    EXPECT_EQ(chosen(), u"Bramble"_s);
}

TEST_F(ListCursorTest, ComesBackToARowThatASearchHidForAWhile) {
    cursor.setIndex(3);
    const auto hidden = model.takeRow(3);
    EXPECT_EQ(cursor.index(), -1);
    model.insertRow(1, hidden);
    EXPECT_EQ(cursor.index(), 1);
    EXPECT_EQ(chosen(), u"Cedar"_s);
}

TEST_F(ListCursorTest, KeepsToTheEndsOfTheList) {
    cursor.setIndex(99);
    EXPECT_EQ(cursor.index(), 4);
    cursor.setIndex(-7);
    EXPECT_EQ(cursor.index(), -1);
    model.clear();
    cursor.setIndex(3);
    EXPECT_EQ(cursor.index(), -1);
}

TEST_F(ListCursorTest, FindsTypedTextWithoutRegardToCase) {
    cursor.type(u"B"_s);
    EXPECT_EQ(chosen(), u"Birch"_s);
    cursor.type(u"r"_s);
    EXPECT_EQ(chosen(), u"Bramble"_s);
    cursor.type(u"x"_s);
    EXPECT_EQ(chosen(), u"Bramble"_s);
}

TEST_F(ListCursorTest, GoesRoundTheRowsOfOneLetter) {
    QStringList seen;
    for (int press = 0; press < 4; ++press) {
        cursor.type(u"b"_s);
        seen.append(chosen());
    }
    EXPECT_EQ(seen, QStringList({u"Birch"_s, u"Bramble"_s, u"birdsong"_s, u"Birch"_s}));
}

} // namespace
} // namespace halvane::views
