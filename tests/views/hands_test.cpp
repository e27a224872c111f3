// SPDX-License-Identifier: MIT
// What hands do in the main window, as fast as they do it: nothing may move under them.
#include "views/main_window_fixture.h"

#include <QTest>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class HandsTest : public MainWindowFixture {
  protected:
    QString playing() { return library.player()->currentTrack().album; }
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
        ui->turnWheel(placeOf(u"Albums"_s, QAccessible::List).center(), hand.wheel);
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
            list.contains(placeOf(thing)) && !thing.text(QAccessible::Name).contains(u"Sodium"_s)) {
            title = thing.text(QAccessible::Name).section(u", "_s, 0, -2);
            row = placeOf(thing).center();
        }
    });
    ui->doubleClickAt(row);
    EXPECT_EQ(library.player()->currentTrack().title, title);
    EXPECT_TRUE(library.transport()->isPlaying());
}

// The lowest line of a tile that the pane would cover, where the tile could not be moved up.

TEST_F(HandsTest, ATilesLastLineCanBeClickedTwiceInTheSmallestWindow) {
    resize({980, 600});
    const QPoint inGrid = placeOf(u"Albums"_s, QAccessible::List).center();
    ui->turnWheel(inGrid, 2);
    ASSERT_TRUE(ui->comesToRest());
    const QRect tile = placeOf(u"Paper Moons, Arden Quartet"_s, QAccessible::ListItem);
    ASSERT_TRUE(placeOf(u"Albums"_s, QAccessible::List).contains(tile.center()));
    ui->doubleClickAt(QPoint(tile.center().x(), tile.bottom() - 6));
    EXPECT_TRUE(world.waitFor([&] { return playing() == u"Paper Moons"_s; }, 1500))
        << qPrintable(playing());
}

TEST_F(HandsTest, TheDiscOfATileThatIsPointedAtPlaysIt) {
    const QRect tile = placeOf(u"Kelp & Salt, Mira Holt"_s, QAccessible::ListItem);
    ui->pointAt(tile.center());
    ASSERT_TRUE(ui->waitsFor(u"Play Album"_s));
    ASSERT_TRUE(world.waitFor(
        [&] { return tile.contains(placeOf(u"Play Album"_s, QAccessible::Button).center()); }));
    ASSERT_TRUE(ui->click(u"Play Album"_s, QAccessible::Button));
    EXPECT_TRUE(world.waitFor([&] { return playing() == u"Kelp & Salt"_s; }));
    EXPECT_FALSE(ui->shows(u"Show All Tracks"_s)) << "playing opens nothing";
}

// By key, menu and hand, each time beside what plays, which plays on.

TEST_F(HandsTest, ASearchShowsItsFirstResultsAndAPlaceItsBeginning) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    ASSERT_TRUE(ui->comesToRest());
    // The heads stand lower while what plays is shown above them.
    const auto heads = [&] { return placeOf(u"Title"_s, QAccessible::ColumnHeader).y(); };
    const int beginning = heads();
    const auto scrollDown = [&] {
        const QPoint table = placeOf(u"Tracks"_s, QAccessible::Table).center();
        ui->turnWheel(table, 8);
        return world.waitFor([&] { return heads() < beginning - 150; });
    };
    const auto isAtTop = [&] { return world.waitFor([&] { return heads() == beginning; }, 3000); };
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
    ui->turnWheel(placeOf(u"Albums"_s, QAccessible::List).center(), 2);
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
    // It can be found once; where the window has the keyboard, it is read out besides.
    const auto said = [&](bool aloud) {
        int times = 0;
        forEachAccessible(QAccessible::queryAccessibleInterface(&ui->window()), [&](auto& thing) {
            times += thing.text(QAccessible::Name) == u"Something has happened"_s &&
                     (thing.role() == QAccessible::Notification) == aloud;
        });
        return times;
    };
    EXPECT_TRUE(world.waitFor([&] { return said(false) == 1; })) << said(false);
    EXPECT_LE(said(true), 1);
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
            places.emplace_back(placeOf(thing).y(), thing.text(QAccessible::Name));
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
