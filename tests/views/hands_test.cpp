// SPDX-License-Identifier: MIT
// What hands do in the main window, as fast as they do it: nothing may move under them.
#include "views/window_driver.h"

#include <QTest>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class HandsTest : public testing::Test {
  protected:
    void SetUp() override {
        world.furnish();
        QQuickWindow* window = world.open(u"main"_s);
        ASSERT_NE(window, nullptr);
        ui = std::make_unique<WindowDriver>(*window);
    }
    void TearDown() override { EXPECT_EQ(world.warnings(), QStringList()); }
    void resize(QSize size) {
        ui->window().resize(size);
        ASSERT_TRUE(world.waitFor([&] { return ui->window().size() == size; }));
    }
    QRect placeOf(const QString& name, QAccessible::Role role) {
        auto* thing = ui->find(name, role);
        return thing ? thing->rect() : QRect();
    }
    QString playing() { return library.player()->currentTrack().album; }
    QString queued(int row) {
        QAbstractListModel* queue = library.queue();
        return queue->index(row, 0).data(queue->roleNames().key("title")).toString();
    }

    GalleryWorld world{12};
    LibraryViewModel& library = world.library();
    std::unique_ptr<WindowDriver> ui;
};

struct DoubleClick {
    const char* name;
    QSize size;
    int wheel = 0; // turned before, in steps down
    bool paneIsOpen = false;
};

class DoubleClickTest : public HandsTest, public testing::WithParamInterface<DoubleClick> {
  protected:
    void SetUp() override {
        HandsTest::SetUp();
        const DoubleClick& hand = GetParam();
        resize(hand.size);
        if (hand.paneIsOpen) {
            ASSERT_TRUE(ui->click(u"Paper Moons, Arden Quartet"_s, QAccessible::ListItem));
            ASSERT_TRUE(ui->waitsFor(u"Show All Tracks"_s));
        }
        ui->turnWheel(ui->window().mapFromGlobal(placeOf(u"Albums"_s, QAccessible::List).center()),
                      hand.wheel);
        ASSERT_TRUE(ui->comesToRest());
    }
};

// A tile in every place that can be clicked: wholly there, or cut by the view's end.
TEST_P(DoubleClickTest, PlaysTheTileThatWasClicked) {
    QAbstractListModel* albums = library.browsing()->visibleAlbums();
    const auto text = [&](int row, const char* role) {
        return albums->index(row, 0).data(albums->roleNames().key(role)).toString();
    };
    // Those whose middle is in view; the files of the unknown one are damaged.
    const auto inView = [&] {
        const QRect view = placeOf(u"Albums"_s, QAccessible::List).adjusted(0, 6, 0, -6);
        QStringList names;
        for (int row = 0; row < albums->rowCount(); ++row) {
            const QString name = text(row, "title") + u", "_s + text(row, "artist");
            if (view.contains(placeOf(name, QAccessible::ListItem).center()) &&
                !name.startsWith(u"Unknown"_s))
                names.append(name);
        }
        return names;
    };
    for (const bool isLast : {true, false}) {
        const QStringList names = inView();
        ASSERT_FALSE(names.isEmpty());
        const QString name = isLast ? names.last() : names.first();
        ASSERT_TRUE(ui->doubleClick(name, QAccessible::ListItem));
        const QString title = name.section(u", "_s, 0, -2);
        EXPECT_TRUE(world.waitFor([&] { return playing() == title; }, 1500))
            << qPrintable(name) << " was clicked, and " << qPrintable(playing()) << " plays";
        EXPECT_EQ(library.browsing()->selectedAlbum()->title, title);
        EXPECT_TRUE(ui->waitsFor(u"Show All Tracks"_s));
        EXPECT_TRUE(ui->comesToRest());
        EXPECT_TRUE(world.waitFor([&] { return inView().contains(name); }, 3000))
            << qPrintable(name) << " is behind the pane";
        EXPECT_TRUE(ui->comesToRest());
    }
}

INSTANTIATE_TEST_SUITE_P(Tiles, DoubleClickTest,
                         testing::Values(DoubleClick{"first_window", {1360, 720}},
                                         DoubleClick{"least_window", {980, 600}},
                                         DoubleClick{"large_window", {2000, 1200}},
                                         DoubleClick{"without_the_hero", {1360, 720}, 2},
                                         DoubleClick{"beside_the_pane", {1360, 720}, 0, true},
                                         DoubleClick{
                                             "scrolled_beside_the_pane", {1360, 720}, 2, true}),
                         [](const auto& hand) { return std::string(hand.param.name); });

TEST_F(HandsTest, AnArtistIsPlayedByTwoClicks) {
    library.browsing()->selectBrowseMode(LibraryMode::artists);
    for (const QString& name : {u"Mira Holt"_s, u"Nina Vale"_s}) {
        ASSERT_TRUE(ui->doubleClick(name, QAccessible::ListItem));
        EXPECT_TRUE(
            world.waitFor([&] { return library.player()->currentTrack().artist == name; }, 1500))
            << qPrintable(library.player()->currentTrack().artist);
        EXPECT_TRUE(ui->waitsFor(u"Show All Tracks"_s));
        EXPECT_TRUE(ui->comesToRest());
    }
}

TEST_F(HandsTest, ATrackIsPlayedByTwoClicksToo) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->doubleClick(u"Sodium, The Lanterns"_s, QAccessible::ListItem));
    EXPECT_EQ(library.player()->currentTrack().title, u"Sodium"_s);
    EXPECT_TRUE(library.transport()->isPlaying());
    ASSERT_TRUE(ui->click(u"Sodium, The Lanterns"_s, QAccessible::ListItem));
    EXPECT_FALSE(library.transport()->isPlaying()) << "one click on what plays is a pause";
    const QRect list = placeOf(u"Up Next"_s, QAccessible::List);
    QString title;
    QPoint row;
    forEachAccessible(ui->find(u"Up Next"_s, QAccessible::List), [&](auto& thing) {
        if (title.isEmpty() && thing.role() == QAccessible::ListItem && !thing.state().selected &&
            list.contains(thing.rect()) && !thing.text(QAccessible::Name).contains(u"Sodium"_s)) {
            title = thing.text(QAccessible::Name).section(u", "_s, 0, -2);
            row = ui->window().mapFromGlobal(thing.rect().center());
        }
    });
    ui->doubleClickAt(row);
    EXPECT_EQ(library.player()->currentTrack().title, title);
    EXPECT_TRUE(library.transport()->isPlaying());
}

// The lowest line of a tile that the pane would cover, where the tile could not be moved up.
TEST_F(HandsTest, ATilesLastLineCanBeClickedTwiceInTheSmallestWindow) {
    resize({980, 600});
    const QPoint inGrid =
        ui->window().mapFromGlobal(placeOf(u"Albums"_s, QAccessible::List).center());
    ui->turnWheel(inGrid, 2);
    ASSERT_TRUE(ui->comesToRest());
    const QRect tile = placeOf(u"Paper Moons, Arden Quartet"_s, QAccessible::ListItem);
    ASSERT_TRUE(placeOf(u"Albums"_s, QAccessible::List).contains(tile.center()));
    ui->doubleClickAt(ui->window().mapFromGlobal(QPoint(tile.center().x(), tile.bottom() - 6)));
    EXPECT_TRUE(world.waitFor([&] { return playing() == u"Paper Moons"_s; }, 1500))
        << qPrintable(playing());
}

TEST_F(HandsTest, TheDiscOfATileThatIsPointedAtPlaysIt) {
    const QRect tile = placeOf(u"Kelp & Salt, Mira Holt"_s, QAccessible::ListItem);
    ui->pointAt(ui->window().mapFromGlobal(tile.center()));
    ASSERT_TRUE(ui->waitsFor(u"Play Album"_s));
    ASSERT_TRUE(world.waitFor(
        [&] { return tile.contains(placeOf(u"Play Album"_s, QAccessible::Button).center()); }));
    ASSERT_TRUE(ui->click(u"Play Album"_s, QAccessible::Button));
    EXPECT_TRUE(world.waitFor([&] { return playing() == u"Kelp & Salt"_s; }));
    EXPECT_FALSE(ui->shows(u"Show All Tracks"_s)) << "playing opens nothing";
}

TEST_F(HandsTest, AQueueRowThatIsPickedUpAndHeldStaysInTheHand) {
    library.collections()->playArtist(u"林间乐队"_s);
    ASSERT_GT(library.queue()->rowCount(), 20);
    const QPoint corner =
        ui->window().mapFromGlobal(placeOf(u"Up Next"_s, QAccessible::List).topLeft());
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

TEST_F(HandsTest, UpNextFollowsWhatPlaysUnlessAHandIsInIt) {
    library.collections()->playArtist(u"林间乐队"_s);
    const int rows = library.queue()->rowCount();
    ASSERT_GT(rows, 20);
    const auto isInView = [&] {
        const QRect list = placeOf(u"Up Next"_s, QAccessible::List);
        bool found = false;
        forEachAccessible(ui->find(u"Up Next"_s, QAccessible::List), [&](auto& thing) {
            found = found || (thing.role() == QAccessible::ListItem && thing.state().selected &&
                              list.contains(thing.rect()));
        });
        return found;
    };
    for (int step = 0; step < 16; ++step)
        library.transport()->playNext(true);
    EXPECT_TRUE(world.waitFor(isInView));
    const QPoint list =
        ui->window().mapFromGlobal(placeOf(u"Up Next"_s, QAccessible::List).center());
    ui->turnWheel(list, -12);
    ASSERT_TRUE(world.waitFor([&] { return !isInView(); }));
    ASSERT_TRUE(ui->comesToRest());
    library.transport()->playNext(true);
    ASSERT_TRUE(ui->comesToRest());
    EXPECT_FALSE(isInView()) << "the hand's place stays";
    EXPECT_TRUE(world.waitFor(isInView, 12'000)) << "until the hand has left it";
}

// By key, menu and hand, each time beside what plays, which plays on.
TEST_F(HandsTest, QueueRowsAreTakenOutAndPutBack) {
    ASSERT_TRUE(world.waitFor([&] { return library.engine()->hasFile(); }));
    ASSERT_GT(library.queue()->rowCount(), 8);
    const QString current = library.player()->currentTrack().title;
    const int at = library.queue()->rowOfCurrent();
    ASSERT_EQ(at, 0) << "the list stands at its beginning";
    const QRect list = placeOf(u"Up Next"_s, QAccessible::List);
    const QPoint corner = ui->window().mapFromGlobal(list.topLeft());
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

TEST_F(HandsTest, TheQueueIsKeptAndCleared) {
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

TEST_F(HandsTest, ATrackGoesIntoTheQueueByMenuAndByDrag) {
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
            current = thing.rect();
    });
    // Below the one that plays next.
    ui->drag(ui->centreOf(names[1], QAccessible::ListItem),
             ui->window().mapFromGlobal(current.bottomLeft()) + QPoint(120, 44 + 6));
    EXPECT_TRUE(world.waitFor([&] { return queued(at + 2) == titles[1]; }))
        << qPrintable(queued(at + 2));
    EXPECT_EQ(library.queue()->rowCount(), rows + 2);
    EXPECT_EQ(library.queue()->rowOfCurrent(), at);
}

TEST_F(HandsTest, ThereIsAWayBackToWhatPlays) {
    library.collections()->playArtist(u"林间乐队"_s);
    const QRect list = placeOf(u"Up Next"_s, QAccessible::List);
    ui->turnWheel(ui->window().mapFromGlobal(list.center()), 12);
    ASSERT_TRUE(ui->waitsFor(u"Now Playing"_s));
    ASSERT_TRUE(ui->click(u"Now Playing"_s, QAccessible::Button));
    EXPECT_TRUE(world.waitFor([&] {
        bool isSeen = false;
        forEachAccessible(ui->find(u"Up Next"_s, QAccessible::List), [&](auto& thing) {
            isSeen = isSeen || (thing.role() == QAccessible::ListItem && thing.state().selected &&
                                list.contains(thing.rect()));
        });
        return isSeen;
    }));
}

TEST_F(HandsTest, ASearchShowsItsFirstResultsAndAPlaceItsBeginning) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    const auto scrollDown = [&] {
        const QPoint table =
            ui->window().mapFromGlobal(placeOf(u"Tracks"_s, QAccessible::Table).center());
        ui->turnWheel(table, 8);
        return world.waitFor(
            [&] { return placeOf(u"Title"_s, QAccessible::ColumnHeader).bottom() < 0; });
    };
    const auto isAtTop = [&] {
        return world.waitFor(
            [&] {
                return placeOf(u"Tracks"_s, QAccessible::Table)
                    .contains(placeOf(u"Title"_s, QAccessible::ColumnHeader));
            },
            3000);
    };
    ASSERT_TRUE(scrollDown());
    ui->key(Qt::Key_F, Qt::ControlModifier);
    ui->type(u"l"_s);
    EXPECT_TRUE(isAtTop());
    ASSERT_TRUE(scrollDown());
    ui->key(Qt::Key_Backspace);
    EXPECT_TRUE(isAtTop());
    ASSERT_TRUE(scrollDown());
    ASSERT_TRUE(ui->click(u"Loved"_s, QAccessible::ListItem));
    EXPECT_TRUE(isAtTop());
}

TEST_F(HandsTest, ASearchThatFindsNoAlbumShowsItsBeginningToo) {
    const QRect tab = placeOf(u"Albums"_s, QAccessible::PageTab);
    ui->turnWheel(ui->window().mapFromGlobal(placeOf(u"Albums"_s, QAccessible::List).center()), 2);
    ASSERT_TRUE(
        world.waitFor([&] { return placeOf(u"Albums"_s, QAccessible::PageTab).y() < tab.y(); }));
    ui->key(Qt::Key_F, Qt::ControlModifier);
    ui->type(u"zzzz"_s);
    EXPECT_TRUE(
        world.waitFor([&] { return placeOf(u"Albums"_s, QAccessible::PageTab) == tab; }, 3000));
}

TEST_F(HandsTest, AJumpToAnAlbumBringsItsTileIntoView) {
    resize({1360, 720});
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    library.collections()->playArtist(u"林间乐队"_s);
    library.browsing()->jumpToAlbum(library.player()->currentTrack());
    const auto isWhole = [&] {
        const Album* album = library.browsing()->selectedAlbum();
        return placeOf(u"Albums"_s, QAccessible::List)
            .contains(placeOf(album->title + u", "_s + album->artist, QAccessible::ListItem)
                          .adjusted(0, 0, 0, -60));
    };
    EXPECT_TRUE(world.waitFor(isWhole, 3000));
}

TEST_F(HandsTest, AnOpenAlbumStaysOpenWhilePlaybackGoesOn) {
    ASSERT_TRUE(ui->doubleClick(u"Kelp & Salt, Mira Holt"_s, QAccessible::ListItem));
    ASSERT_TRUE(ui->waitsFor(u"Show All Tracks"_s));
    ASSERT_EQ(playing(), u"Kelp & Salt"_s);
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    const auto title = [&] {
        return tracks->index(0, 0).data(tracks->roleNames().key("title")).toString();
    };
    const QString first = title();
    const int count = tracks->rowCount();
    library.collections()->playArtist(u"林间乐队"_s);
    ASSERT_TRUE(world.waitFor(
        [&] { return library.browsing()->selectedAlbum()->artist == u"林间乐队"_s; }));
    EXPECT_EQ(title(), first);
    EXPECT_EQ(tracks->rowCount(), count);
    EXPECT_TRUE(ui->shows(first + u", Mira Holt"_s));
    EXPECT_TRUE(ui->shows(u"Show All Tracks"_s));
}

TEST_F(HandsTest, AMessageMovesNothingAndIsSaidOnce) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    const QRect before = placeOf(u"Sodium, The Lanterns"_s, QAccessible::ListItem);
    library.status()->show({}, false);
    library.status()->show(u"Something has happened"_s, true);
    ASSERT_TRUE(ui->waitsFor(u"Something has happened"_s));
    bool isWritten = false;
    forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
        isWritten = isWritten || (item->inherits("QQuickText") &&
                                  item->property("text") == u"Something has happened"_s);
    });
    EXPECT_TRUE(isWritten);
    int said = 0;
    forEachAccessible(QAccessible::queryAccessibleInterface(&ui->window()), [&](auto& thing) {
        said += thing.text(QAccessible::Name) == u"Something has happened"_s;
    });
    EXPECT_EQ(said, 1);
    EXPECT_EQ(placeOf(u"Sodium, The Lanterns"_s, QAccessible::ListItem), before);
}

TEST_F(HandsTest, ATrackGoesIntoANewPlaylistFromItsMenu) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->click(u"Sodium, The Lanterns"_s, QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->click(u"Add to Playlist"_s, QAccessible::MenuItem));
    ASSERT_TRUE(ui->click(u"New Playlist..."_s, QAccessible::MenuItem));
    ASSERT_TRUE(ui->waitsFor(u"Playlist name"_s));
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Remove from Library"_s); }));
    ASSERT_TRUE(world.waitFor([&] { return ui->focusedName() == u"Playlist name"_s; }))
        << "the menu has not taken the keyboard along";
    const QString before = library.player()->currentTrack().title;
    ui->type(u"Sunday"_s);
    ui->key(Qt::Key_Return);
    EXPECT_TRUE(ui->waitsFor(u"Sunday, 1"_s));
    EXPECT_EQ(library.player()->currentTrack().title, before);
}

TEST_F(HandsTest, TheDeleteKeyAsksBeforeItTakesAPlaylist) {
    QAbstractListModel* playlists = library.playlists();
    const int before = playlists->rowCount();
    ASSERT_TRUE(ui->tabTo(u"Road trip, 118"_s));
    for (const bool isMeant : {false, true}) {
        ui->key(Qt::Key_Delete);
        ASSERT_TRUE(ui->waitsFor(u"Delete “Road trip”"_s));
        EXPECT_EQ(playlists->rowCount(), before);
        if (isMeant)
            ASSERT_TRUE(ui->click(u"Delete"_s, QAccessible::Button));
        else
            ui->key(Qt::Key_Escape);
        ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Delete “Road trip”"_s); }));
    }
    EXPECT_EQ(playlists->rowCount(), before - 1);
}

TEST_F(HandsTest, ThePresetMenuHasTheUsersOwnLastAndMarksTheCurrentOne) {
    for (const QString& name : {u"My Evening"_s, u"Bright"_s})
        library.equalizer()->saveCurrentEQPreset(name);
    ASSERT_TRUE(ui->click(u"Equalizer"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Preamp"_s));
    const auto entries = [&] {
        std::vector<std::pair<int, QString>> places;
        QString marked;
        forEachAccessible(QAccessible::queryAccessibleInterface(&ui->window()), [&](auto& thing) {
            if (thing.role() != QAccessible::MenuItem || !thing.state().checkable)
                return;
            places.emplace_back(thing.rect().y(), thing.text(QAccessible::Name));
            if (thing.state().checked)
                marked += thing.text(QAccessible::Name);
        });
        std::sort(places.begin(), places.end());
        QStringList names;
        for (const auto& [y, name] : places)
            names.append(name);
        return std::pair(names, marked);
    };
    const auto openMenu = [&] {
        return ui->click(u"Equalizer: "_s, QAccessible::ComboBox) && ui->waitsFor(u"Vocal"_s);
    };
    ASSERT_TRUE(openMenu());
    auto [names, marked] = entries();
    EXPECT_EQ(names.first(), u"Flat"_s);
    EXPECT_GT(names.indexOf(u"Bright"_s), names.indexOf(u"Acoustic"_s));
    EXPECT_GT(names.indexOf(u"My Evening"_s), names.indexOf(u"Bright"_s));
    EXPECT_EQ(marked, u"Bright"_s);
    ASSERT_TRUE(ui->click(u"Vocal"_s, QAccessible::MenuItem));
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Acoustic"_s); }));
    ASSERT_TRUE(openMenu());
    EXPECT_EQ(entries().second, u"Vocal"_s);
}

} // namespace
} // namespace halvane::test
