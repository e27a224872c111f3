// SPDX-License-Identifier: MIT
// The table of tracks: its keys, its order, its headings and its menu.
#include "views/main_window_fixture.h"

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
    library.browsing()->setSearchText({});
    library.browsing()->setSelectedPlaylistID(
        library.playlists()
            ->index(0, 0)
            .data(library.playlists()->roleNames().key("playlistId"))
            .toUuid());
    EXPECT_TRUE(world.waitFor([&] {
        return ui->shows(u"Title"_s) && !ui->find(u"Artist"_s, QAccessible::ColumnHeader);
    })) << "a playlist's order is its own";
}

TEST_F(TrackTableTest, DiscsAndAlbumsOfOthersHaveHeadings) {
    ASSERT_TRUE(ui->click(u"Kelp & Salt, Mira Holt"_s));
    EXPECT_TRUE(ui->waitsFor(u"Disc 1"_s));
    library.language()->setLanguageSetting(AppLanguage::simplifiedChinese);
    const auto scrollTo = [this](double y) {
        forEachItem(ui->window().contentItem(), [y](QQuickItem* item) {
            if (item->property("isNarrowed").toBool() && item->property("contentY").isValid())
                item->setProperty("contentY", y);
        });
    };
    scrollTo(260);
    EXPECT_TRUE(ui->waitsFor(u"光盘 2"_s)) << "a row that comes has been another's";
    library.language()->setLanguageSetting(AppLanguage::english);
    ui->window().setHeight(1500);
    scrollTo(0);
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
