// SPDX-License-Identifier: MIT
// Up Next in the main window: followed, and edited by hand and keys.
#include "views/main_window_fixture.h"

#include <QTest>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

using UpNextTest = MainWindowFixture;

TEST_F(UpNextTest, QueueRowsMoveByDraggingAndByKeyboard) {
    QAbstractListModel* queue = library.queue();
    ASSERT_GE(queue->rowCount(), 6);
    auto* list = ui->find(u"Up Next"_s, QAccessible::List);
    ASSERT_NE(list, nullptr);
    const QRect area = list->rect();
    const auto row = [&](int number) {
        return ui->window().mapFromGlobal(area.topLeft()) + QPoint(120, 44 * number + 22);
    };
    const QString dragged = textAt(queue, 1, "title");
    ui->drag(row(1), row(4));
    EXPECT_EQ(textAt(queue, 4, "title"), dragged);
    EXPECT_EQ(library.queue()->rowOfCurrent(), 0);
    const auto ringed = [&] {
        QString name;
        forEachAccessible(ui->find(u"Up Next"_s, QAccessible::List), [&](auto& thing) {
            if (thing.role() == QAccessible::ListItem && thing.state().focused)
                name = thing.text(QAccessible::Name);
        });
        return name;
    };
    EXPECT_TRUE(world.waitFor([&] { return ringed().startsWith(dragged); }))
        << qPrintable(ringed());
    // The press has put the cursor on the dragged entry.
    ui->key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(textAt(queue, 3, "title"), dragged);
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.player()->currentTrack().title, dragged);
}

TEST_F(UpNextTest, TheQueueScrollsUnderADragHeldAtItsEdge) {
    QAbstractListModel* queue = library.queue();
    library.collections()->playArtist(u"林间乐队"_s);
    ASSERT_GT(queue->rowCount(), 20);
    auto* list = ui->find(u"Up Next"_s, QAccessible::List);
    ASSERT_NE(list, nullptr);
    const QPoint corner = ui->window().mapFromGlobal(list->rect().topLeft());
    const QString dragged = textAt(queue, 1, "title");
    const QString id = textAt(queue, 1, "entryId");
    ui->hold(corner + QPoint(120, 66), corner + QPoint(120, list->rect().height() - 4));
    EXPECT_TRUE(
        world.waitFor([&] { return textAt(queue, queue->rowCount() - 1, "entryId") == id; }));
    ui->release(corner + QPoint(120, list->rect().height() - 4));
}

TEST_F(UpNextTest, AQueueRowThatIsPickedUpAndHeldStaysInTheHand) {
    library.collections()->playArtist(u"林间乐队"_s);
    ASSERT_GT(library.queue()->rowCount(), 20);
    const QPoint corner = placeOf(u"Up Next"_s, QAccessible::List).topLeft();
    const auto row = [&](int number) { return corner + QPoint(120, 44 * number + 22); };
    // An earlier drag has ended at the list's lower edge.
    ui->hold(row(1), row(4));
    ui->release(row(4));
    const QString held = queued(4);
    ASSERT_TRUE(ui->comesToRest());
    for (const int down : {12, -12}) {
        ui->hold(row(4), row(4) + QPoint(0, down));
        QTest::qWait(1200); // as long as a hand hesitates
        EXPECT_EQ(queued(4), held);
        ui->release(row(4) + QPoint(0, down));
    }
}

TEST_F(UpNextTest, UpNextFollowsWhatPlaysUnlessAHandIsInIt) {
    library.collections()->playArtist(u"林间乐队"_s);
    const int rows = library.queue()->rowCount();
    ASSERT_GT(rows, 20);
    const auto isInView = [&] {
        const QRect list = placeOf(u"Up Next"_s, QAccessible::List);
        bool found = false;
        forEachAccessible(ui->find(u"Up Next"_s, QAccessible::List), [&](auto& thing) {
            found = found || (thing.role() == QAccessible::ListItem && thing.state().selected &&
                              list.contains(placeOf(thing)));
        });
        return found;
    };
    for (int step = 0; step < 16; ++step)
        library.transport()->playNext(true);
    EXPECT_TRUE(world.waitFor(isInView));
    const QPoint list = placeOf(u"Up Next"_s, QAccessible::List).center();
    ui->turnWheel(list, -12);
    ASSERT_TRUE(world.waitFor([&] { return !isInView(); }));
    ASSERT_TRUE(ui->comesToRest());
    library.transport()->playNext(true);
    ASSERT_TRUE(ui->comesToRest());
    EXPECT_FALSE(isInView()) << "the hand's place stays";
    EXPECT_TRUE(world.waitFor(isInView, 12'000)) << "until the hand has left it";
}

TEST_F(UpNextTest, QueueRowsAreTakenOutAndPutBack) {
    ASSERT_TRUE(world.waitFor([&] { return library.engine()->hasFile(); }));
    ASSERT_GT(library.queue()->rowCount(), 8);
    const QString current = library.player()->currentTrack().title;
    const int at = library.queue()->rowOfCurrent();
    ASSERT_EQ(at, 0) << "the list stands at its beginning";
    const QRect list = placeOf(u"Up Next"_s, QAccessible::List);
    const QPoint corner = list.topLeft();
    const auto row = [&](int number) { return corner + QPoint(120, 44 * number + 22); };
    const auto titles = [&] {
        QStringList all;
        for (int place = 0; place < library.queue()->rowCount(); ++place)
            all.append(queued(place));
        return all;
    };
    const QStringList before = titles();
    QStringList expected = before;
    const auto isAsExpected = [&] {
        return titles() == expected && library.player()->currentTrack().title == current &&
               library.transport()->isPlaying();
    };

    // Two by the Delete key, where the second takes the first one's place.
    library.transport()->togglePlayback();
    QTest::mouseClick(&ui->window(), Qt::LeftButton, {}, row(at)); // plays on, and has the keyboard
    ui->key(Qt::Key_Down);
    ui->key(Qt::Key_Delete);
    ui->key(Qt::Key_Delete);
    expected.remove(at + 1, 2);
    EXPECT_TRUE(isAsExpected()) << qPrintable(titles().mid(0, 4).join(u", "_s));

    ASSERT_TRUE(ui->comesToRest());
    QTest::mouseClick(&ui->window(), Qt::RightButton, {}, row(at + 3));
    ASSERT_TRUE(ui->waitsFor(u"Remove from Queue"_s));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->click(u"Remove from Queue"_s, QAccessible::MenuItem));
    EXPECT_TRUE(world.waitFor([&] { return titles().size() == expected.size() - 1; }));
    expected.removeAt(at + 3);
    EXPECT_TRUE(isAsExpected());
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Remove from Queue"_s); }));
    ASSERT_TRUE(ui->comesToRest());

    ui->pointAt(row(at + 2));
    ASSERT_TRUE(ui->comesToRest());
    QTest::mouseClick(&ui->window(), Qt::LeftButton, {},
                      corner + QPoint(list.width() - 16 - 18, 44 * (at + 2) + 22));
    expected.removeAt(at + 2);
    EXPECT_TRUE(isAsExpected()) << qPrintable(titles().mid(0, 4).join(u", "_s));

    // The pill takes back the newest, and the keys all others.
    ASSERT_TRUE(ui->click(u"Undo"_s, QAccessible::Button));
    EXPECT_EQ(titles().size(), expected.size() + 1);
    for (int step = 0; step < 3; ++step)
        ui->key(Qt::Key_Z, Qt::ControlModifier);
    expected = before;
    EXPECT_TRUE(isAsExpected());
    ui->key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    expected.removeAt(at + 1);
    EXPECT_TRUE(isAsExpected());
}

TEST_F(UpNextTest, TheQueueIsKeptAndCleared) {
    ASSERT_TRUE(world.waitFor([&] { return library.engine()->hasFile(); }));
    const int rows = library.queue()->rowCount();
    const int lists = library.playlists()->rowCount();
    ASSERT_TRUE(ui->click(u"More"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Save as Playlist..."_s));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->click(u"Save as Playlist..."_s, QAccessible::MenuItem));
    ASSERT_TRUE(ui->waitsFor(u"Playlist name"_s));
    EXPECT_TRUE(ui->find(u"Save as Playlist"_s, QAccessible::Dialog));
    auto* field = ui->find(u"Playlist name"_s, QAccessible::EditableText);
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->text(QAccessible::Value), library.queueEditing()->suggestedName());
    const auto mayAnswer = [&] {
        return !ui->find(u"Done"_s, QAccessible::Button)->state().disabled;
    };
    EXPECT_TRUE(mayAnswer());
    ui->key(Qt::Key_Backspace);
    EXPECT_FALSE(mayAnswer()) << "without a name";
    ui->key(Qt::Key_Return);
    EXPECT_TRUE(ui->shows(u"Playlist name"_s));
    ui->type(u"Forest"_s);
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.playlists()->rowCount(), lists + 1);
    EXPECT_TRUE(ui->waitsFor(u"Forest"_s));
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Playlist name"_s); }));

    ASSERT_TRUE(ui->click(u"More"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Clear Queue"_s));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->click(u"Clear Queue"_s, QAccessible::MenuItem));
    EXPECT_TRUE(world.waitFor([&] { return library.queue()->rowCount() == 1; }));
    EXPECT_TRUE(library.transport()->isPlaying());
    ASSERT_TRUE(ui->waitsFor(u"Up Next cleared"_s));
    ASSERT_TRUE(ui->click(u"Undo"_s, QAccessible::Button));
    EXPECT_EQ(library.queue()->rowCount(), rows);
    EXPECT_EQ(library.status()->text(), QString());
}

TEST_F(UpNextTest, ATrackGoesIntoTheQueueByMenuAndByDrag) {
    ASSERT_TRUE(world.waitFor([&] { return library.engine()->hasFile(); }));
    const int at = library.queue()->rowOfCurrent();
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    const int rows = library.queue()->rowCount();
    const QStringList titles{u"Sodium"_s, u"Lamplight"_s};
    const QStringList names{u"Sodium, The Lanterns"_s, u"Lamplight, The Lanterns"_s};
    ASSERT_TRUE(ui->click(names[0], QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->waitsFor(u"Play Next"_s));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->click(u"Play Next"_s, QAccessible::MenuItem));
    EXPECT_TRUE(world.waitFor([&] { return queued(at + 1) == titles[0]; }));
    ASSERT_TRUE(ui->comesToRest());
    QRect current;
    forEachAccessible(ui->find(u"Up Next"_s, QAccessible::List), [&](auto& thing) {
        if (thing.role() == QAccessible::ListItem && thing.state().selected)
            current = placeOf(thing);
    });
    // Below the one that plays next.
    ui->drag(ui->centreOf(names[1], QAccessible::ListItem),
             current.bottomLeft() + QPoint(120, 44 + 6));
    EXPECT_TRUE(world.waitFor([&] { return queued(at + 2) == titles[1]; }))
        << qPrintable(queued(at + 2));
    EXPECT_EQ(library.queue()->rowCount(), rows + 2);
    EXPECT_EQ(library.queue()->rowOfCurrent(), at);
}

TEST_F(UpNextTest, ThereIsAWayBackToWhatPlays) {
    library.collections()->playArtist(u"林间乐队"_s);
    const QRect list = placeOf(u"Up Next"_s, QAccessible::List);
    ui->turnWheel(list.center(), 12);
    ASSERT_TRUE(ui->waitsFor(u"Now Playing"_s));
    ASSERT_TRUE(ui->click(u"Now Playing"_s, QAccessible::Button));
    EXPECT_TRUE(world.waitFor([&] {
        bool isSeen = false;
        forEachAccessible(ui->find(u"Up Next"_s, QAccessible::List), [&](auto& thing) {
            isSeen = isSeen || (thing.role() == QAccessible::ListItem && thing.state().selected &&
                                list.contains(placeOf(thing)));
        });
        return isSeen;
    }));
}

} // namespace
} // namespace halvane::test
