// SPDX-License-Identifier: MIT
#include "views/library/table/list_selection.h"

#include <QStandardItemModel>

#include <gtest/gtest.h>

namespace halvane::views {
namespace {

using namespace Qt::StringLiterals;

constexpr int idRole = Qt::UserRole;
constexpr int titleRole = Qt::UserRole + 1;

class ListSelectionTest : public testing::Test {
  protected:
    ListSelectionTest() {
        model.setItemRoleNames({{idRole, "trackId"}, {titleRole, "title"}});
        for (const auto& title : {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}) {
            auto* item = new QStandardItem;
            item->setData(QUuid::createUuid(), idRole);
            item->setData(title, titleRole);
            model.appendRow(item);
        }
        selection.setProperty("idRole", u"trackId"_s);
        selection.setModel(&model);
    }
    [[nodiscard]] QString chosen() const { return selection.texts(u"title"_s).join(QString()); }

    QStandardItemModel model;
    ListSelection selection;
};

TEST_F(ListSelectionTest, RangesBeginWhereARowWasChosenByItself) {
    selection.extend(1, 3);
    EXPECT_EQ(chosen(), u"bcd"_s);
    selection.extend(3, 0);
    EXPECT_EQ(chosen(), u"ab"_s) << "still from the second row";
    selection.toggle(4);
    EXPECT_EQ(chosen(), u"abe"_s);
    selection.extend(0, 3);
    EXPECT_EQ(chosen(), u"de"_s);
    selection.toggle(3);
    EXPECT_EQ(chosen(), u"e"_s);
    selection.clear();
    EXPECT_EQ(selection.count(), 0);
    selection.extend(2, 2);
    EXPECT_EQ(chosen(), u"c"_s);
    for (const int row : {-1, 5}) {
        selection.toggle(row);
        selection.extend(0, row);
    }
    EXPECT_EQ(chosen(), u"c"_s);
    selection.chooseAll();
    EXPECT_EQ(chosen(), u"abcde"_s);
}

TEST_F(ListSelectionTest, FollowsItsRowsAndLetsThoseGoThatLeave) {
    selection.toggle(1);
    selection.toggle(3);
    model.setSortRole(titleRole);
    model.sort(0, Qt::DescendingOrder);
    EXPECT_EQ(chosen(), u"db"_s);
    model.removeRow(3);
    EXPECT_EQ(chosen(), u"d"_s);
    model.clear();
    EXPECT_EQ(selection.count(), 0);
}

} // namespace
} // namespace halvane::views
