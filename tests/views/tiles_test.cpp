// SPDX-License-Identifier: MIT
// The tiles of albums and artists in the real main window.
#include "library/user/settings_keys.h"
#include "views/main_window_fixture.h"

#include <QSignalSpy>

#include <algorithm>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class TilesTest : public MainWindowFixture {
  protected:
    bool openMenu(const QString& tile) {
        return ui->click(tile, QAccessible::ListItem, Qt::RightButton) &&
               ui->waitsFor(u"Show in File Manager"_s);
    }
    bool choose(const QString& entry) {
        QPoint place;
        forEachAccessible(QAccessible::queryAccessibleInterface(&ui->window()), [&](auto& thing) {
            if (thing.role() == QAccessible::MenuItem && thing.text(QAccessible::Name) == entry)
                place = ui->window().mapFromGlobal(thing.rect().center());
        });
        if (place.isNull())
            return false;
        ui->clickAt(place);
        return world.waitFor([&] { return !ui->shows(u"Show in File Manager"_s); });
    }
    bool hasAll(const QString& playlist, const QStringList& paths) {
        return world.waitFor([&] {
            for (const Playlist& one : library.playlists()->all())
                if (one.name == playlist)
                    return std::all_of(paths.begin(), paths.end(), [&](const QString& path) {
                        return std::find(one.trackPaths.begin(), one.trackPaths.end(), path) !=
                               one.trackPaths.end();
                    });
            return false;
        });
    }
    QStringList kelpPaths() {
        QAbstractListModel* albums = library.browsing()->visibleAlbums();
        for (int row = 0; row < albums->rowCount(); ++row)
            if (albums->index(row, 0).data().toString() == u"Kelp & Salt"_s)
                return library.collections()->pathsOfAlbum(
                    albums->index(row, 0).data(albums->roleNames().key("albumId")).toString());
        return {};
    }
    // The mark of what plays, where it shows.
    QQuickItem* mark() {
        QQuickItem* found = nullptr;
        forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
            if (QByteArray(item->metaObject()->className()).startsWith("PlayingMark"))
                found = item;
        });
        return found;
    }
    const QString kelp = u"Kelp & Salt, Mira Holt"_s;
    const QString lanterns = u"The Lanterns"_s;
};

TEST_F(TilesTest, AnAlbumsMenuActsOnItAndOpensNothing) {
    QSignalSpy shown(&world.app(), &HalvaneApp::fileManagerAsked);
    ASSERT_TRUE(openMenu(kelp));
    EXPECT_FALSE(ui->shows(u"Show All Tracks"_s)) << "the menu chooses no album";
    ASSERT_TRUE(choose(u"Show in File Manager"_s));
    const QStringList paths = kelpPaths();
    ASSERT_EQ(paths.size(), 13);
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0][0].toString(), paths[0]);

    ASSERT_TRUE(openMenu(kelp));
    ASSERT_TRUE(choose(u"Play"_s));
    // These files can't be decoded, so another may be current already.
    EXPECT_EQ(library.queue()->record(0).path(), paths[0]);
    EXPECT_EQ(library.queue()->sourceLabel(), u"Kelp & Salt"_s);
    EXPECT_FALSE(library.transport()->isShuffleEnabled());
    ASSERT_TRUE(openMenu(kelp));
    ASSERT_TRUE(choose(u"Shuffle"_s));
    EXPECT_TRUE(library.transport()->isShuffleEnabled());
    EXPECT_EQ(library.queue()->sourceLabel(), u"Kelp & Salt"_s);

    const auto queued = [&](int row) {
        return library.queue()->record(static_cast<std::size_t>(row)).path();
    };
    library.transport()->toggleShuffle();
    library.collections()->playArtist(lanterns);
    const int before = library.queue()->rowCount();
    ASSERT_TRUE(openMenu(kelp));
    ASSERT_TRUE(choose(u"Play Next"_s));
    EXPECT_EQ(library.queue()->rowCount(), before + 13);
    EXPECT_EQ(queued(1), paths[0]);
    ASSERT_TRUE(openMenu(kelp));
    ASSERT_TRUE(choose(u"Add to Queue"_s));
    EXPECT_EQ(library.queue()->rowCount(), before + 26);
    EXPECT_EQ(queued(before + 25), paths.last());

    ASSERT_TRUE(openMenu(kelp));
    ASSERT_TRUE(ui->click(u"Add to Playlist"_s, QAccessible::MenuItem));
    ASSERT_TRUE(choose(u"Road trip"_s));
    EXPECT_TRUE(hasAll(u"Road trip"_s, paths));

    ASSERT_TRUE(openMenu(kelp));
    ASSERT_TRUE(choose(u"Go to artist"_s));
    EXPECT_EQ(library.browsing()->focusedArtist(), u"Mira Holt"_s);
}

TEST_F(TilesTest, TheKeyboardOpensTheSameMenu) {
    library.browsing()->selectBrowseMode(LibraryMode::artists);
    ASSERT_TRUE(ui->waitsFor(lanterns));
    EXPECT_EQ(ui->find(u"Play All"_s, QAccessible::Button), nullptr) << "no tile is pointed at";
    ASSERT_TRUE(ui->tabTo(u"Artists"_s)) << "the tab before the list";
    for (const bool isMenuKey : {true, false}) {
        while (ui->focusedName() != u"Artists"_s ||
               QAccessible::queryAccessibleInterface(ui->window().activeFocusItem())->role() !=
                   QAccessible::List)
            ui->key(Qt::Key_Tab);
        ui->type(u"nina"_s);
        if (isMenuKey)
            ui->key(Qt::Key_Menu);
        else
            ui->key(Qt::Key_F10, Qt::ShiftModifier);
        ASSERT_TRUE(ui->waitsFor(u"Show in File Manager"_s));
        EXPECT_FALSE(ui->shows(u"Go to artist"_s)) << "it is one";
        ui->key(Qt::Key_Down);
        if (!isMenuKey)
            ui->key(Qt::Key_Down);
        ui->key(Qt::Key_Return);
        ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Show in File Manager"_s); }));
        EXPECT_EQ(library.player()->currentTrack().artist, u"Nina Vale"_s);
        EXPECT_EQ(library.transport()->isShuffleEnabled(), !isMenuKey);
        EXPECT_EQ(ui->focusedName(), u"Artists"_s) << "the list has the keyboard again";
    }
}

TEST_F(TilesTest, ATileIsDraggedOntoAPlaylist) {
    ASSERT_EQ(kelpPaths().size(), 13);
    ui->drag(ui->centreOf(kelp, QAccessible::ListItem), ui->centreOf(u"Road trip, 118"_s));
    EXPECT_TRUE(hasAll(u"Road trip"_s, kelpPaths()));
    EXPECT_NE(library.player()->currentTrack().album, u"Kelp & Salt"_s);
    EXPECT_FALSE(ui->shows(u"Show All Tracks"_s)) << "a drag is no click";
}

TEST_F(TilesTest, ATileIsDraggedIntoTheQueue) {
    const int rows = library.queue()->rowCount();
    const QString first = queued(0);
    const QRect list = placeOf(u"Up Next"_s, QAccessible::List);
    ui->drag(ui->centreOf(kelp, QAccessible::ListItem), list.topLeft() + QPoint(120, 44 + 4));
    ASSERT_TRUE(world.waitFor([&] { return library.queue()->rowCount() == rows + 13; }));
    EXPECT_EQ(queued(0), first);
    const QModelIndex second = library.queue()->index(1, 0);
    EXPECT_EQ(second.data(library.queue()->roleNames().key("path")).toString(),
              kelpPaths().first());
    EXPECT_FALSE(ui->shows(u"Show All Tracks"_s)) << "a drag is no click";
}

TEST_F(TilesTest, CtrlAndTheWheelSizeTheAlbumsAndTheSizeStays) {
    const auto width = [&] { return placeOf(kelp, QAccessible::ListItem).width(); };
    const QPoint place = ui->centreOf(kelp, QAccessible::ListItem);
    const int before = width();
    ui->turnWheel(place, -1, Qt::ControlModifier);
    EXPECT_TRUE(world.waitFor([&] { return width() > before; }));
    EXPECT_EQ(library.views()->tileSize(), 2);
    ui->turnWheel(placeOf(u"Albums"_s, QAccessible::List).center(), 5, Qt::ControlModifier);
    EXPECT_EQ(library.views()->tileSize(), 0);
    EXPECT_EQ(*world.environment().preferences.number(SettingsKey::tileSize), 0);
    ASSERT_TRUE(ui->click(u"Albums"_s, QAccessible::PageTab));
    ASSERT_TRUE(ui->click(u"Northern Line, Kite Season"_s, QAccessible::ListItem));
    ui->key(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(library.views()->tileSize(), 1);
    ui->key(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(library.views()->tileSize(), 0);
}

TEST_F(TilesTest, TheMarkIsOnWhatPlaysAndMovesOnlyWithTheMusic) {
    const auto isMoving = [&] { return mark() && mark()->property("isMoving").toBool(); };
    const auto isOn = [&](const QString& name) {
        return world.waitFor([&] {
            return mark() && placeOf(name, QAccessible::ListItem)
                                 .contains(mark()->mapRectToScene(mark()->boundingRect()).toRect());
        });
    };
    EXPECT_TRUE(isOn(u"Night Walk, The Lanterns"_s));
    EXPECT_TRUE(isMoving());
    auto* tile = ui->find(u"Night Walk, The Lanterns"_s, QAccessible::ListItem);
    ASSERT_NE(tile, nullptr);
    EXPECT_TRUE(tile->text(QAccessible::Description).startsWith(u"Now Playing"_s));
    ASSERT_TRUE(ui->doubleClick(kelp, QAccessible::ListItem));
    EXPECT_TRUE(isOn(kelp));
    world.app().setMotionReduced(true);
    EXPECT_FALSE(isMoving());
    world.app().setMotionReduced(false);
    EXPECT_TRUE(isMoving());
    library.transport()->togglePlayback();
    EXPECT_FALSE(isMoving());
    library.transport()->togglePlayback();
    ASSERT_TRUE(isMoving());
    auto* before = mark();
    ui->window().hide();
    EXPECT_TRUE(world.waitFor([&] { return !before->property("isMoving").toBool(); }));
    ui->window().show();
    library.browsing()->selectBrowseMode(LibraryMode::artists);
    EXPECT_TRUE(isOn(u"Mira Holt"_s));
}

} // namespace
} // namespace halvane::test
