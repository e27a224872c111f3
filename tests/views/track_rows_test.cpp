// SPDX-License-Identifier: MIT
// What a hand does with the rows of the track table, besides playing them.
#include "views/main_window_fixture.h"

#include <QSignalSpy>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class TrackRowsTest : public MainWindowFixture {
  protected:
    void SetUp() override {
        MainWindowFixture::SetUp();
        library.browsing()->selectBrowseMode(LibraryMode::songs);
        ASSERT_TRUE(ui->waitsFor(sodium));
    }
    QRect row() { return placeOf(sodium, QAccessible::ListItem); }
    // Where the row's texts stand.
    QList<QRectF> texts() {
        QList<QRectF> places;
        forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
            const QRectF place = item->mapRectToScene({0, 0, item->width(), item->height()});
            if (item->inherits("QQuickText") && row().contains(place.center().toPoint()) &&
                (item->property("text") == u"Sodium"_s ||
                 item->property("text") == u"The Lanterns"_s))
                places.append(place);
        });
        return places;
    }
    const QString sodium = u"Sodium, The Lanterns"_s;
};

TEST_F(TrackRowsTest, StarsAndAHeartAreSetWhereTheHandPoints) {
    resize({1900, 900});
    ASSERT_TRUE(ui->waitsFor(sodium));
    ASSERT_TRUE(ui->comesToRest());
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    const QString path = [&] {
        for (int at = 0; at < tracks->rowCount(); ++at)
            if (tracks->index(at, 0).data(tracks->roleNames().key("title")) == u"Sodium"_s)
                return tracks->index(at, 0).data(tracks->roleNames().key("path")).toString();
        return QString();
    }();
    library.userData()->setRating(0, path);
    const bool wasLoved = library.userData()->isLoved(path);
    const QString current = library.player()->currentTrack().path();
    const QList<QRectF> before = texts();
    ASSERT_GE(before.size(), 2);
    ui->pointAt(row().center());
    ASSERT_TRUE(ui->waitsFor(u"Rating: 4"_s));
    EXPECT_EQ(texts(), before) << "nothing gives way to what comes up";
    const QPoint fourth = ui->centreOf(u"Rating: 4"_s);
    ASSERT_TRUE(row().contains(fourth));
    ASSERT_TRUE(ui->click(u"Rating: 4"_s));
    EXPECT_EQ(library.userData()->rating(path), 4);
    EXPECT_EQ(ui->centreOf(u"Rating: 4"_s), fourth);
    EXPECT_TRUE(ui->find(u"Rating: 4"_s)->state().checked);
    ASSERT_TRUE(ui->click(u"Rating: 4"_s));
    EXPECT_EQ(library.userData()->rating(path), 0) << "the same stars again take them away";
    QAccessibleInterface* heart = nullptr;
    forEachAccessible(ui->find(sodium, QAccessible::ListItem), [&](auto& thing) {
        if (thing.text(QAccessible::Name) == u"Loved"_s)
            heart = &thing;
    });
    ASSERT_NE(heart, nullptr);
    EXPECT_EQ(heart->state().checked, wasLoved);
    ui->clickAt(ui->window().mapFromGlobal(heart->rect().center()));
    EXPECT_NE(library.userData()->isLoved(path), wasLoved);
    EXPECT_EQ(texts(), before);
    EXPECT_EQ(library.player()->currentTrack().path(), current) << "none of this plays the row";
    EXPECT_TRUE(library.transport()->isPlaying());
    ui->pointAt({1, 1});
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Rating: "_s); }));
}

TEST_F(TrackRowsTest, TheFirstEntryOfTheMenuPlaysTheRow) {
    ASSERT_TRUE(ui->click(sodium, QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->waitsFor(u"Remove from Library"_s));
    ui->key(Qt::Key_Down);
    EXPECT_EQ(ui->focusedName(), u"Play"_s);
    ui->key(Qt::Key_Return);
    EXPECT_TRUE(
        world.waitFor([&] { return library.player()->currentTrack().title == u"Sodium"_s; }));
    EXPECT_TRUE(library.transport()->isPlaying());
}

TEST_F(TrackRowsTest, AClickInTheMiddleOfARowPlaysItAndRatesNothing) {
    QSignalSpy rated(library.userData(), &TrackUserData::ratingChanged);
    for (const QSize size : {QSize(980, 600), QSize(1360, 720), QSize(1900, 900)}) {
        SCOPED_TRACE(size.width());
        resize(size);
        ASSERT_TRUE(ui->waitsFor(sodium));
        ASSERT_TRUE(ui->comesToRest());
        for (const double part : {0.3, 0.4, 0.5, 0.6}) {
            const QPoint place(row().left() + qRound(row().width() * part), row().center().y());
            ui->pointAt(place);
            if (size.width() == 1900) {
                ASSERT_TRUE(ui->waitsFor(u"Rating: 4"_s));
            }
            const bool wasPlaying = library.player()->currentTrack().title == u"Sodium"_s &&
                                    library.transport()->isPlaying();
            ui->clickAt(place);
            EXPECT_TRUE(world.waitFor([&] {
                return library.player()->currentTrack().title == u"Sodium"_s &&
                       library.transport()->isPlaying() != wasPlaying;
            }));
        }
    }
    EXPECT_EQ(rated.count(), 0);
}

TEST_F(TrackRowsTest, TheRowWhoseMenuIsOpenIsMarked) {
    const auto marked = [&] {
        QStringList titles;
        forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
            if (item->property("hasMenu").toBool())
                titles.append(item->property("title").toString());
        });
        return titles;
    };
    EXPECT_EQ(marked(), QStringList());
    ASSERT_TRUE(ui->click(sodium, QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->waitsFor(u"Remove from Library"_s));
    EXPECT_EQ(marked(), QStringList{u"Sodium"_s});
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return marked().isEmpty(); }));
}

} // namespace
} // namespace halvane::test
