// SPDX-License-Identifier: MIT
// The table of tracks: its keys, its order, its headings and its menu.
#include "views/main_window_fixture.h"

#include <algorithm>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

using TrackTableTest = MainWindowFixture;

TEST_F(TrackTableTest, TheTrackTableIsWorkedByKeyboard) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    ASSERT_TRUE(ui->click(u"Half the Way Home, The Lanterns"_s));
    EXPECT_EQ(library.player()->currentTrack().title, u"Half the Way Home"_s);
    ui->key(Qt::Key_Down);
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.player()->currentTrack().title, u"Sodium"_s);
    ui->key(Qt::Key_End);
    ui->key(Qt::Key_Home);
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.player()->currentTrack().path(), textAt(tracks, 0, "path"));
    // Letters find; a space is no letter, it plays and pauses.
    ui->type(u"kelp"_s);
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.player()->currentTrack().title, u"Kelp"_s);
    ui->key(Qt::Key_Space);
    EXPECT_FALSE(library.transport()->isPlaying());
}

TEST_F(TrackTableTest, TheMenuKeyOpensATracksMenu) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->click(u"Half the Way Home, The Lanterns"_s));
    const QString path = library.player()->currentTrack().path();
    ui->key(Qt::Key_Menu);
    ASSERT_TRUE(ui->click(u"Loved"_s, QAccessible::MenuItem));
    EXPECT_TRUE(library.player()->isCurrentTrackLoved());
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Remove from Library"_s); }));
    ui->key(Qt::Key_Menu);
    ASSERT_TRUE(ui->waitsFor(u"Remove from Library"_s));
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Remove from Library"_s); }));
}

TEST_F(TrackTableTest, AClickOnAColumnSortsTheTracks) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    const auto first = [&] { return textAt(tracks, 0, "title"); };
    const auto state = [&](const QString& column) {
        auto* head = ui->find(column, QAccessible::ColumnHeader);
        return head ? head->text(QAccessible::Description) : QString();
    };
    ASSERT_EQ(first(), u"Lamplight"_s);
    ASSERT_TRUE(ui->click(u"Title"_s, QAccessible::ColumnHeader));
    EXPECT_EQ(first(), u"Embers on the Rail"_s);
    EXPECT_EQ(state(u"Title"_s), u"Sorted, ascending. Reverse the order"_s);
    ASSERT_TRUE(ui->tabTo(u"Artist"_s));
    ui->key(Qt::Key_Space);
    EXPECT_EQ(textAt(tracks, 0, "artist"), u"Arden Quartet"_s);
    EXPECT_EQ(ui->focusedName(), u"Artist"_s) << "to be pressed again";
    ui->key(Qt::Key_Return);
    EXPECT_TRUE(state(u"Artist"_s).startsWith(u"Sorted, descending"_s));
    ui->key(Qt::Key_Return);
    EXPECT_EQ(first(), u"Lamplight"_s) << "the library's own order";
    EXPECT_TRUE(state(u"Artist"_s).startsWith(u"Sort by"_s));

    ASSERT_TRUE(ui->click(u"Time"_s, QAccessible::ColumnHeader));
    const QString second = textAt(tracks, 1, "path");
    library.views()->setShowNowPlayingPanel(false); // which has the same tracks
    library.browsing()->setSearchText(u"lanterns"_s);
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Up Next"_s); }));
    ASSERT_TRUE(ui->waitsFor(u"Weather Report, The Lanterns"_s));
    const QRect row = ui->find(u"Weather Report, The Lanterns"_s)->rect();
    ui->clickAt(ui->window().mapFromGlobal(QPoint(row.left() + 80, row.center().y())));
    EXPECT_EQ(library.player()->currentTrack().title, u"Weather Report"_s);
    EXPECT_EQ(library.queue()->record(1).path(), second) << "the queue is the sorted table";
}

TEST_F(TrackTableTest, AListThatTheLibraryKeepsPlaysAsItIsShown) {
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    for (int row = 0; row < tracks->rowCount(); ++row)
        library.userData()->setRating(row == 2 ? 4 : row == 5 ? 5 : 0, textAt(tracks, row, "path"));
    const QString four = textAt(tracks, 2, "title");
    const QString five = textAt(tracks, 5, "title");
    library.views()->setShowNowPlayingPanel(false); // which has the same tracks
    ASSERT_TRUE(ui->click(u"Top Rated"_s, QAccessible::ListItem));
    ASSERT_EQ(tracks->rowCount(), 2);
    EXPECT_EQ(textAt(tracks, 0, "title"), five);
    ASSERT_TRUE(ui->waitsFor(u"Rating"_s)) << "the column by which it goes";
    const QString name = four + u", "_s + textAt(tracks, 1, "artist");
    ASSERT_TRUE(ui->waitsFor(name));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->doubleClick(name, QAccessible::ListItem));
    EXPECT_TRUE(
        world.waitFor([&] { return library.player()->currentTrack().title == four; }, 1500));
    EXPECT_EQ(queued(0), five);
    EXPECT_EQ(library.queue()->size(), 2U);

    for (int row = 0; row < 2; ++row)
        library.userData()->setRating(0, textAt(tracks, row, "path"));
    EXPECT_EQ(tracks->rowCount(), 2) << "a row stays under the hand";
    ASSERT_TRUE(ui->click(u"Top Rated"_s, QAccessible::ListItem));
    ASSERT_TRUE(ui->waitsFor(u"No top rated tracks yet"_s));
    ASSERT_TRUE(ui->click(u"Browse Tracks"_s, QAccessible::Button));
    EXPECT_EQ(library.browsing()->selectedSidebar(), SidebarItem::tracks);
}

TEST_F(TrackTableTest, APlaylistIsSortedForItselfAndKeepsItsOrder) {
    ASSERT_TRUE(ui->click(u"Late evenings"_s, QAccessible::ListItem));
    ASSERT_TRUE(ui->waitsFor(u"Title"_s));
    ASSERT_TRUE(ui->comesToRest());
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    const auto titles = [&] {
        QStringList list;
        for (int row = 0; row < tracks->rowCount(); ++row)
            list.append(textAt(tracks, row, "title"));
        return list;
    };
    const QStringList own = titles();
    const auto paths = library.playlists()->all().front().trackPaths;
    ASSERT_TRUE(ui->click(u"Title"_s, QAccessible::ColumnHeader));
    EXPECT_NE(titles(), own);
    const QStringList sorted = titles();
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    EXPECT_EQ(library.tableOrder()->by(), TrackOrder::library) << "another place";
    ASSERT_TRUE(ui->click(u"Late evenings"_s, QAccessible::ListItem));
    EXPECT_EQ(titles(), sorted);
    ASSERT_TRUE(ui->waitsFor(u"Title"_s));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->click(u"Title"_s, QAccessible::ColumnHeader));
    auto* head = ui->find(u"Title"_s, QAccessible::ColumnHeader);
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(head->text(QAccessible::Description), u"Sorted, descending. Back to its own order"_s);
    ASSERT_TRUE(ui->click(u"Title"_s, QAccessible::ColumnHeader));
    EXPECT_EQ(titles(), own);
    EXPECT_EQ(library.playlists()->all().front().trackPaths, paths);
}

TEST_F(TrackTableTest, ColumnsAreChosenByMouseAndByKeys) {
    resize({1900, 900});
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    const auto heads = [&] {
        QStringList names;
        forEachAccessible(QAccessible::queryAccessibleInterface(&ui->window()), [&](auto& thing) {
            if (thing.role() == QAccessible::ColumnHeader)
                names.append(thing.text(QAccessible::Name));
        });
        std::sort(names.begin(), names.end());
        return names;
    };
    const QStringList standard{u"Album"_s, u"Artist"_s, u"Quality"_s, u"Time"_s, u"Title"_s};
    EXPECT_EQ(heads(), standard);
    ASSERT_TRUE(ui->click(u"Choose columns"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Genre"_s));
    ASSERT_TRUE(ui->comesToRest());
    const auto entry = [&](const QString& name) { return ui->find(name, QAccessible::CheckBox); };
    ASSERT_NE(entry(u"Genre"_s), nullptr);
    EXPECT_FALSE(entry(u"Genre"_s)->state().checked);
    EXPECT_TRUE(entry(u"Album"_s)->state().checked);
    EXPECT_TRUE(entry(u"Title"_s)->state().disabled) << "it is always there";
    ASSERT_TRUE(ui->click(u"Genre"_s, QAccessible::CheckBox));
    ASSERT_TRUE(ui->click(u"Plays"_s, QAccessible::CheckBox));
    EXPECT_TRUE(entry(u"Plays"_s)->state().checked) << "it stays open";
    QStringList more = standard;
    more << u"Genre"_s << u"Plays"_s;
    std::sort(more.begin(), more.end());
    EXPECT_EQ(heads(), more);
    ui->key(Qt::Key_Escape);
    ASSERT_TRUE(world.waitFor([&] { return !entry(u"Genre"_s); }));

    ASSERT_TRUE(ui->tabTo(u"Choose columns"_s));
    ui->key(Qt::Key_Space);
    ASSERT_TRUE(ui->waitsFor(u"Reset"_s));
    ASSERT_TRUE(ui->comesToRest());
    for (int i = 0; i < 20 && ui->focusedName() != u"Artist"_s; ++i)
        ui->key(Qt::Key_Down);
    EXPECT_EQ(ui->focusedName(), u"Artist"_s);
    ui->key(Qt::Key_Up);
    ui->key(Qt::Key_Space);
    EXPECT_TRUE(entry(u"Number"_s)->state().checked);
    ui->key(Qt::Key_Escape);
    ASSERT_TRUE(world.waitFor([&] { return !entry(u"Genre"_s); }));
    EXPECT_EQ(ui->focusedName(), u"Choose columns"_s);
    EXPECT_TRUE(heads().contains(u"Number"_s));

    // By the number of plays, which the row shows.
    library.userData()->countPlay(textAt(library.browsing()->visibleTracks(), 6, "path"));
    ASSERT_TRUE(ui->click(u"Plays"_s, QAccessible::ColumnHeader));
    ASSERT_TRUE(ui->click(u"Plays"_s, QAccessible::ColumnHeader));
    EXPECT_FALSE(textAt(library.browsing()->visibleTracks(), 0, "plays").isEmpty());

    // A place of its own; a right click on its heads.
    ASSERT_TRUE(ui->click(u"Late evenings"_s, QAccessible::ListItem));
    ASSERT_TRUE(ui->waitsFor(u"Album"_s));
    ASSERT_TRUE(ui->comesToRest());
    EXPECT_EQ(heads(), standard);
    ASSERT_TRUE(ui->click(u"Quality"_s, QAccessible::ColumnHeader, Qt::RightButton));
    ASSERT_TRUE(ui->waitsFor(u"Genre"_s));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->click(u"Quality"_s, QAccessible::CheckBox));
    EXPECT_FALSE(heads().contains(u"Quality"_s));
    ASSERT_TRUE(ui->click(u"Reset"_s, QAccessible::Button));
    EXPECT_EQ(heads(), standard);
    ui->key(Qt::Key_Escape);

    // In a narrow window they give way, and come back.
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    resize({980, 600});
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    EXPECT_TRUE(world.waitFor([&] { return !heads().contains(u"Genre"_s); }));
    const auto widthOf = [&](const QString& text) {
        double width = 0;
        forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
            if (item->inherits("QQuickText") && item->property("text") == text && width == 0)
                width = item->width();
        });
        return width;
    };
    EXPECT_GE(widthOf(u"Sodium"_s), 100) << "the title stays readable";
    EXPECT_TRUE(heads().contains(u"Time"_s));
    resize({1900, 900});
    EXPECT_TRUE(world.waitFor([&] { return heads().contains(u"Genre"_s); }));
}

TEST_F(TrackTableTest, TheTabsAndTheHeadsStayWhileTheRowsScroll) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->click(u"Half the Way Home, The Lanterns"_s));
    const auto heroTab = ui->centreOf(u"Artists"_s, QAccessible::PageTab);
    const auto rows = ui->window().size() / 2;
    ui->turnWheel({rows.width(), rows.height()}, 2);
    ASSERT_TRUE(ui->comesToRest());
    EXPECT_LT(ui->centreOf(u"Artists"_s, QAccessible::PageTab).y(), heroTab.y() - 150);
    ui->key(Qt::Key_End);
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    ASSERT_TRUE(ui->click(u"Title"_s, QAccessible::ColumnHeader));
    EXPECT_EQ(textAt(tracks, 0, "title"), u"Embers on the Rail"_s);
    ui->key(Qt::Key_End);
    ASSERT_TRUE(ui->click(u"Artists"_s, QAccessible::PageTab));
    EXPECT_EQ(library.browsing()->mode(), LibraryMode::artists);
}

TEST_F(TrackTableTest, DiscsAndAlbumsOfOthersHaveHeadings) {
    ASSERT_TRUE(ui->click(u"Kelp & Salt, Mira Holt"_s));
    EXPECT_TRUE(ui->waitsFor(u"Disc 1"_s));
    library.language()->setLanguageSetting(AppLanguage::simplifiedChinese);
    const auto scrollTo = [this](double y) {
        forEachItem(ui->window().contentItem(), [y](QQuickItem* item) {
            if (item->property("isNarrowed").toBool() && item->property("list").isValid())
                item->property("list").value<QObject*>()->setProperty("contentY", y);
        });
    };
    scrollTo(260);
    EXPECT_TRUE(ui->waitsFor(u"光盘 2"_s)) << "a row that comes has been another's";
    library.language()->setLanguageSetting(AppLanguage::english);
    ui->window().setHeight(1500);
    scrollTo(22);
    EXPECT_TRUE(ui->waitsFor(u"Disc 1"_s));
    EXPECT_TRUE(ui->waitsFor(u"Disc 2"_s)) << "both at once";
    ASSERT_TRUE(ui->click(u"Northern Line, Kite Season"_s));
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Disc 1"_s); })) << "it has no numbers";
    library.browsing()->jumpToArtist(u"Mira Holt"_s);
    EXPECT_TRUE(ui->waitsFor(u"The Long Blue, Mira Holt"_s));
    EXPECT_FALSE(ui->shows(u"Appears on: Mira Holt"_s)) << "her own album";
    const QString guest = u"Mira Holt feat. Nina Vale"_s;
    library.browsing()->selectBrowseMode(LibraryMode::artists);
    ASSERT_TRUE(ui->click(u"Arden Quartet"_s, QAccessible::ListItem));
    ui->key(Qt::Key_End);
    ASSERT_TRUE(world.waitFor([&] { return ui->shows(guest); })) << "after those with albums";
    ASSERT_TRUE(ui->click(guest, QAccessible::ListItem));
    EXPECT_TRUE(ui->waitsFor(u"Appears on: Mira Holt"_s));
}

TEST_F(TrackTableTest, TheCursorMovesByPagesAndOutlivesASearch) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->click(u"Half the Way Home, The Lanterns"_s));
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    const auto playsRow = [&](int row) {
        ui->key(Qt::Key_Return);
        return library.player()->currentTrack().path() == textAt(tracks, row, "path");
    };
    ui->key(Qt::Key_PageDown);
    ui->key(Qt::Key_PageUp);
    EXPECT_TRUE(playsRow(1));
    ui->key(Qt::Key_PageDown);
    EXPECT_FALSE(playsRow(1));
    ui->key(Qt::Key_Home);
    ui->key(Qt::Key_Down);
    const QString chosen = textAt(tracks, 1, "path");
    for (const QString& search : {u"nina vale"_s, QString()}) {
        const int before = tracks->rowCount();
        library.browsing()->setSearchText(search);
        ASSERT_TRUE(world.waitFor([&] { return tracks->rowCount() != before; }));
    }
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.player()->currentTrack().path(), chosen);
}

TEST_F(TrackTableTest, SeveralRowsAreChosenAndActedOnTogether) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    ASSERT_TRUE(ui->comesToRest());
    QAbstractListModel* tracks = library.browsing()->visibleTracks();
    const auto name = [&](int row) {
        return textAt(tracks, row, "title") + u", "_s + textAt(tracks, row, "artist");
    };
    const auto place = [&](int row) { return ui->centreOf(name(row), QAccessible::ListItem); };
    const auto chosen = [&] {
        QStringList names;
        forEachAccessible(ui->find(u"Tracks"_s, QAccessible::Table), [&](auto& thing) {
            if (thing.role() == QAccessible::ListItem && thing.state().selected)
                names.append(thing.text(QAccessible::Name));
        });
        return names;
    };
    const QString all = u"%1 visible"_s.arg(tracks->rowCount());
    const QString plays = library.player()->currentTrack().path();
    const int queue = library.queue()->rowCount();

    ui->clickAt(place(3), Qt::ControlModifier);
    ui->clickAt(place(1), Qt::ControlModifier);
    EXPECT_TRUE(ui->waitsFor(u"2 selected"_s));
    EXPECT_EQ(chosen(), (QStringList{name(1), name(3)}));
    EXPECT_EQ(library.player()->currentTrack().path(), plays) << "nothing is played by that";
    ASSERT_TRUE(ui->click(name(3), QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->waitsFor(u"Add to Queue"_s));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->click(u"Add to Queue"_s, QAccessible::MenuItem));
    ASSERT_TRUE(world.waitFor([&] { return library.queue()->rowCount() == queue + 2; }));
    EXPECT_EQ(queued(queue), textAt(tracks, 1, "title")) << "in the order of the list";
    EXPECT_EQ(queued(queue + 1), textAt(tracks, 3, "title"));
    ASSERT_TRUE(ui->comesToRest());

    ui->clickAt(place(5), Qt::ShiftModifier); // from the last that was chosen by itself
    EXPECT_TRUE(ui->waitsFor(u"5 selected"_s)) << qPrintable(chosen().join(u"; "_s));
    const auto roadTrip = [&] { return library.playlists()->all()[1].trackPaths; };
    ASSERT_EQ(library.playlists()->all()[1].name, u"Road trip"_s);
    ui->drag(place(4), ui->centreOf(u"Road trip, 118"_s));
    EXPECT_TRUE(world.waitFor([&] {
        const auto paths = roadTrip();
        for (int row = 1; row <= 5; ++row)
            if (std::find(paths.begin(), paths.end(), textAt(tracks, row, "path")) == paths.end())
                return false;
        return true;
    }));

    // A menu on another row is of that row.
    ASSERT_TRUE(ui->click(name(0), QAccessible::ListItem, Qt::RightButton));
    EXPECT_TRUE(ui->waitsFor(all));
    ASSERT_TRUE(ui->waitsFor(u"Remove from Library"_s));
    ui->key(Qt::Key_Escape);
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Remove from Library"_s); }));

    // By keys.
    ui->key(Qt::Key_Down, Qt::ShiftModifier);
    ui->key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(chosen(), (QStringList{name(0), name(1), name(2)}));
    ui->key(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(chosen(), (QStringList{name(0), name(1)}));
    ui->key(Qt::Key_Menu);
    ASSERT_TRUE(ui->waitsFor(u"Loved"_s));
    ASSERT_TRUE(ui->comesToRest());
    ASSERT_TRUE(ui->click(u"Loved"_s, QAccessible::MenuItem));
    EXPECT_TRUE(world.waitFor([&] {
        return library.userData()->isLoved(textAt(tracks, 0, "path")) &&
               library.userData()->isLoved(textAt(tracks, 1, "path"));
    }));
    ASSERT_TRUE(ui->comesToRest());
    ui->key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(ui->waitsFor(u"%1 selected"_s.arg(tracks->rowCount())));
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(ui->waitsFor(all));
    ui->key(Qt::Key_Down, Qt::ShiftModifier);
    ui->clickAt(place(4));
    EXPECT_EQ(library.player()->currentTrack().path(), textAt(tracks, 4, "path"));
    EXPECT_EQ(chosen(), QStringList{name(4)});
}

TEST_F(TrackTableTest, EveryTracksMenuShowsItsFileInTheFileManager) {
    QStringList asked;
    QObject::connect(&world.app(), &HalvaneApp::fileManagerAsked, &world.app(),
                     [&](const QString& path) { asked.append(path); });
    const auto choose = [&](const QString& track) {
        const bool chosen = ui->click(track, QAccessible::ListItem, Qt::RightButton) &&
                            ui->waitsFor(u"Show in File Manager"_s) &&
                            ui->click(u"Show in File Manager"_s, QAccessible::MenuItem);
        return chosen &&
               GalleryWorld::waitFor([&] { return !ui->shows(u"Show in File Manager"_s); });
    };
    EXPECT_TRUE(choose(u"Half the Way Home"_s)) << "in the queue";
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    EXPECT_TRUE(choose(u"Sodium, The Lanterns"_s)) << "in the library";
    ASSERT_EQ(asked.size(), 2);
    EXPECT_EQ(asked[0], library.queue()->record(1).path());
    EXPECT_NE(asked[0], asked[1]);
}

} // namespace
} // namespace halvane::test
