// SPDX-License-Identifier: MIT
#include "library/browsing/browsing_fixture.h"
#include "library/browsing/sidebar_model.h"
#include "library/browsing/table_place.h"
#include "library/catalog/library_summary.h"

#include <QCoreApplication>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

// Collects what a list tells its views.
struct Told {
    int resets = 0;
    QList<std::pair<int, int>> inserted, removed, changed;
    QList<QList<int>> roles;

    explicit Told(QAbstractItemModel& model) {
        QObject::connect(&model, &QAbstractItemModel::modelReset, [this] { ++resets; });
        QObject::connect(&model, &QAbstractItemModel::rowsInserted,
                         [this](const QModelIndex&, int a, int b) {
                             inserted.append({a, b});
                         });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved,
                         [this](const QModelIndex&, int a, int b) {
                             removed.append({a, b});
                         });
        QObject::connect(&model, &QAbstractItemModel::dataChanged,
                         [this](const QModelIndex& a, const QModelIndex& b, const QList<int>& r) {
                             changed.append({a.row(), b.row()});
                             roles.append(r);
                         });
    }
};

using Ranges = QList<std::pair<int, int>>;

} // namespace

TEST_F(BrowsingTest, ArtistsComeInTheReadersOrderIfThatIsChosen) {
    Track named = trackOf(u"/m/n"_s, u"n"_s, u"The Bird"_s, {});
    SortNames sortNames;
    sortNames.artist = u"bird, The"_s;
    named.albumTags.sortNames = std::make_shared<const SortNames>(sortNames);
    Track guest = trackOf(u"/m/g"_s, u"g"_s, u"aa"_s, u"Bark"_s);
    guest.albumTags.albumArtist = u"Moss"_s;
    store.append(rowsOf({named, guest, trackOf(u"/m/z"_s, u"z"_s, u"Élan"_s, {}),
                         trackOf(u"/m/y"_s, u"y"_s, u"zebra"_s, {})}));
    catalog.rebuildImportedAlbums();
    const QStringList plain{u"Lark"_s,  u"Moss"_s, u"The Bird"_s, u"moss"_s,
                            u"zebra"_s, u"Élan"_s, u"aa"_s};
    EXPECT_EQ(artists(), plain);
    browsing.setArtistOrder(ArtistOrder::readers);
    EXPECT_EQ(artists(), (QStringList{u"The Bird"_s, u"Élan"_s, u"Lark"_s, u"Moss"_s, u"moss"_s,
                                      u"zebra"_s, u"aa"_s}));
    browsing.setSearchText(u"s"_s);
    EXPECT_EQ(artists(), (QStringList{u"Moss"_s, u"moss"_s}));
    browsing.setSearchText({});
    browsing.setArtistOrder(ArtistOrder::plain);
    EXPECT_EQ(artists(), plain);
}

TEST_F(BrowsingTest, SourcesTakePrecedenceInTheirOrder) {
    EXPECT_EQ(shown(), u"abcdef"_s);
    browsing.setSelectedAlbumID(u"local|moss|fern"_s);
    EXPECT_EQ(shown(), u"abf"_s); // both spellings share the id
    EXPECT_EQ(browsing.focusedAlbum()->title, u"Fern"_s);

    for (const QString& path : {u"/m/e"_s, u"/m/b"_s, u"/gone"_s})
        userData.toggleLoved(path);
    browsing.selectSidebarItem(SidebarItem::loved);
    EXPECT_EQ(shown(), u"be"_s);
    EXPECT_EQ(browsing.mode(), LibraryMode::songs);

    const QUuid id = playlists.createPlaylist(u"p"_s);
    playlists.addTrackPaths({u"/m/d"_s, u"/gone"_s, u"/m/a"_s, u"/m/c"_s}, id);
    browsing.setSelectedPlaylistID(id);
    EXPECT_EQ(shown(), u"dac"_s);
    browsing.setSearchText(u"moss"_s);
    EXPECT_EQ(shown(), u"ac"_s);
    playlists.removeTrackPath(u"/m/a"_s, id);
    EXPECT_EQ(shown(), u"c"_s);
    playlists.deletePlaylist(id);
    EXPECT_TRUE(browsing.selectedPlaylistID().isNull());
    browsing.setSearchText({});

    browsing.selectBrowseMode(LibraryMode::artists);
    EXPECT_EQ(shown(), u"abcdef"_s); // no artist focused
    browsing.setFocusedArtist(u"Moss"_s);
    EXPECT_EQ(shown(), u"abc"_s);
    browsing.setFocusedArtist(u"nobody"_s);
    EXPECT_EQ(shown(), QString());
    browsing.goHome();
    EXPECT_EQ(shown(), u"abcdef"_s);
    EXPECT_TRUE(browsing.selectedAlbumID().isEmpty());
    EXPECT_TRUE(browsing.focusedArtist().isEmpty());
}

TEST_F(BrowsingTest, GuestsComeAfterThoseWhoLeadAnAlbum) {
    store.append(
        rowsOf({numbered(trackOf(u"/m/g"_s, u"g"_s, u"Wren"_s, u"Song"_s), u"Lark"_s, 1, 2),
                numbered(trackOf(u"/m/h"_s, u"h"_s, u"Lark"_s, u"Song"_s), {}, 1, 1)}));
    catalog.rebuildImportedAlbums();
    browsing.selectBrowseMode(LibraryMode::artists);
    EXPECT_EQ(artists(), (QStringList{u"Lark"_s, u"Moss"_s, u"moss"_s, u"Wren"_s}));
    const QModelIndex guest = browsing.visibleArtists()->index(3);
    EXPECT_EQ(guest.data(ArtistListModel::SummaryRole), u"Appears on 1 album"_s);
    browsing.setSearchText(u"wren"_s);
    EXPECT_EQ(artists(), QStringList{u"Wren"_s});
    EXPECT_EQ(shown(), u"g"_s);
    browsing.setSearchText({});
    browsing.jumpToArtist(u"Wren"_s);
    EXPECT_EQ(shown(), u"g"_s);
    QueueItem playing = entry(u"Song"_s, u"Wren"_s);
    playing.albumTags.albumArtist = u"Lark"_s;
    browsing.jumpToAlbum(playing);
    EXPECT_EQ(shown(), u"dgh"_s) << "not all are numbered";
    store.replace(rowsOf({numbered(*store.track(u"/m/d"_s), {}, 2, 1)}));
    catalog.rebuildImportedAlbums();
    EXPECT_EQ(shown(), u"hgd"_s);
    browsing.setSearchText(u"lark"_s);
    EXPECT_EQ(shown(), u"hgd"_s);
}

TEST_F(BrowsingTest, EachPlaceIsSortedForItself) {
    browsing.selectBrowseMode(LibraryMode::songs);
    const auto sorted = [&] {
        QString titles;
        for (const TrackPtr& track : browsing.sortedTracks())
            titles += track->title;
        return titles;
    };
    EXPECT_EQ(sorted(), QString());
    order.choose(TrackOrder::artist);
    EXPECT_EQ(shown(), u"decabf"_s);
    order.choose(TrackOrder::title);
    order.choose(TrackOrder::title);
    EXPECT_EQ(shown(), u"fedcba"_s);
    browsing.setSearchText(u"moss"_s);
    EXPECT_EQ(shown(), u"fcba"_s);
    EXPECT_EQ(sorted(), u"fedcba"_s) << "also those that the search leaves out";
    browsing.setSearchText({});
    userData.toggleLoved(u"/m/b"_s);
    userData.toggleLoved(u"/m/e"_s);
    browsing.selectSidebarItem(SidebarItem::loved);
    EXPECT_EQ(shown(), u"be"_s);
    order.choose(TrackOrder::artist);
    EXPECT_EQ(shown(), u"eb"_s);
    store.remove({u"/m/e"_s});
    catalog.rebuildImportedAlbums();
    EXPECT_EQ(shown(), u"b"_s);

    const QUuid id = playlists.createPlaylist(u"p"_s);
    playlists.addTrackPaths({u"/m/d"_s, u"/m/a"_s, u"/m/c"_s}, id);
    browsing.setSelectedPlaylistID(id);
    EXPECT_EQ(shown(), u"dac"_s);
    EXPECT_EQ(sorted(), QString());
    userData.setRating(4, u"/m/c"_s);
    userData.setRating(2, u"/m/a"_s);
    order.choose(TrackOrder::rating);
    EXPECT_EQ(shown(), u"acd"_s);
    EXPECT_EQ(sorted(), u"acd"_s);
    EXPECT_EQ(browsing.sortedPlace(), u"p"_s);
    EXPECT_EQ(playlists.find(id)->trackPaths.front(), u"/m/d"_s) << "it keeps its own order";
    userData.setRating(5, u"/m/a"_s);
    EXPECT_EQ(shown(), u"acd"_s) << "no row leaves the hand that rates it";
    playlists.addTrackPaths({u"/m/b"_s}, id);
    EXPECT_EQ(shown(), u"cadb"_s);
    browsing.jumpToArtist(u"Moss"_s);
    EXPECT_EQ(shown(), u"abc"_s);
    order.choose(TrackOrder::title);
    order.choose(TrackOrder::title);
    EXPECT_EQ(shown(), u"cba"_s);
    EXPECT_EQ(browsing.sortedPlace(), u"Moss"_s);
    browsing.setFocusedArtist(u"Lark"_s);
    EXPECT_TRUE(order.isDescending()) << "all artists are one place";
    browsing.setFocusedArtist({});
    EXPECT_EQ(sorted(), QString()) << "there is no table";

    // The choices are kept, and given up by a third click.
    const QUuid other = playlists.createPlaylist(u"o"_s);
    TableOrder again(preferences);
    const std::pair<QString, TrackSorting> kept[] = {
        {TablePlace::tracks, {TrackOrder::title, true}},
        {TablePlace::loved, {TrackOrder::artist, false}},
        {TablePlace::artist, {TrackOrder::title, true}},
        {TablePlace::album, {}},
        {TablePlace::playlist(id), {TrackOrder::rating, false}},
        {TablePlace::playlist(other), {}},
    };
    again.restore();
    for (const auto& [place, sorting] : kept)
        EXPECT_EQ(again.sortingOf(place), sorting) << place.toStdString();
    browsing.selectBrowseMode(LibraryMode::songs);
    EXPECT_EQ(shown(), u"fdcba"_s);
    order.choose(TrackOrder::title);
    EXPECT_EQ(shown(), u"abcdf"_s);
    again.forget(TablePlace::playlist(id));
    TableOrder later(preferences);
    later.restore();
    EXPECT_EQ(later.sortingOf(TablePlace::tracks), TrackSorting());
    EXPECT_EQ(later.sortingOf(TablePlace::playlist(id)), TrackSorting());
}

// More rows than are sorted at once.
TEST_F(BrowsingTest, LongPlacesAreSortedByAWorker) {
    std::vector<Track> tracks;
    for (int i = 0; i < 3000; ++i)
        tracks.push_back(trackOf(u"/l/%1"_s.arg(i), u"%1"_s.arg(9999 - i), u"Moss"_s, {}));
    store.append(rowsOf(tracks));
    catalog.rebuildImportedAlbums();
    const auto waitFor = [](const auto& condition) {
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    waitFor([&] { return catalog.isCurrent(); });
    const auto first = [&] { return browsing.visibleTracks()->item(0).title; };
    int turns = 0;
    QObject::connect(&browsing, &Browsing::turnedTo, [&] { ++turns; });
    browsing.jumpToArtist(u"Moss"_s);
    order.choose(TrackOrder::title);
    EXPECT_EQ(first(), u"a"_s) << "as it is, until the worker has sorted it";
    waitFor([&] { return first() != u"a"_s; });
    EXPECT_EQ(first(), u"7000"_s);
    const int turned = turns;
    catalog.rebuildImportedAlbums();
    waitFor([&] { return catalog.isCurrent() && first() == u"7000"_s; });
    EXPECT_EQ(turns, turned) << "the rows stay where they are";

    // By plays: in the order that they have by themselves until the place is left.
    browsing.selectBrowseMode(LibraryMode::songs);
    userData.countPlay(u"/l/5"_s);
    order.choose(TrackOrder::plays);
    waitFor([&] { return first() == u"9994"_s; });
    userData.countPlay(u"/l/5"_s);
    userData.countPlay(u"/l/7"_s);
    userData.toggleLoved(u"/l/9"_s);
    EXPECT_EQ(first(), u"9994"_s);
    browsing.selectBrowseMode(LibraryMode::albums);
    browsing.selectBrowseMode(LibraryMode::songs);
    waitFor([&] { return first() == u"9992"_s; });
}

TEST_F(BrowsingTest, NavigationKeepsModeAndSidebarTogether) {
    struct Case {
        std::function<void(Browsing&)> go;
        LibraryMode mode;
        SidebarItem sidebar;
        bool lovedOnly;
    };
    const Case cases[] = {
        {[](Browsing& b) { b.selectBrowseMode(LibraryMode::songs); }, LibraryMode::songs,
         SidebarItem::tracks, false},
        {[](Browsing& b) { b.selectSidebarItem(SidebarItem::loved); }, LibraryMode::songs,
         SidebarItem::loved, true},
        {[](Browsing& b) { b.selectBrowseMode(LibraryMode::albums); }, LibraryMode::albums,
         SidebarItem::albums, false},
        {[](Browsing& b) { b.selectSidebarItem(SidebarItem::artists); }, LibraryMode::artists,
         SidebarItem::artists, false},
        {[](Browsing& b) { b.selectSidebarItem(SidebarItem::tracks); }, LibraryMode::songs,
         SidebarItem::tracks, false},
        {[](Browsing& b) { b.jumpToArtist(u"Lark"_s); }, LibraryMode::artists, SidebarItem::artists,
         false},
        {[](Browsing& b) { b.selectSidebarItem(SidebarItem::library); }, LibraryMode::albums,
         SidebarItem::library, false},
    };
    for (const Case& c : cases) {
        browsing.setSelectedPlaylistID(playlists.createPlaylist(u"p"_s));
        c.go(browsing);
        EXPECT_EQ(browsing.mode(), c.mode);
        EXPECT_EQ(browsing.selectedSidebar(), c.sidebar);
        EXPECT_EQ(browsing.showLovedOnly(), c.lovedOnly);
        EXPECT_TRUE(browsing.selectedPlaylistID().isNull());
    }
    browsing.jumpToAlbum(entry(u"song"_s, u"LARK"_s));
    EXPECT_EQ(browsing.selectedAlbumID(), u"local|lark|song"_s);
    EXPECT_EQ(shown(), u"d"_s);
}

TEST_F(BrowsingTest, SelectionOutlivesARebuildThatKeepsTheAlbum) {
    EXPECT_EQ(browsing.selectedAlbum()->title, u"Song"_s); // the first
    browsing.setSelectedAlbumID(u"local|moss|fern"_s);
    store.remove({u"/m/a"_s});
    catalog.rebuildImportedAlbums();
    EXPECT_EQ(browsing.selectedAlbumID(), u"local|moss|fern"_s);
    EXPECT_EQ(shown(), u"bf"_s);
    store.remove({u"/m/b"_s, u"/m/f"_s});
    catalog.rebuildImportedAlbums();
    EXPECT_TRUE(browsing.selectedAlbumID().isEmpty());
    EXPECT_EQ(shown(), u"cde"_s);
    EXPECT_EQ(browsing.artworkAlbum(entry(u"bark"_s, u"moss"_s))->title, u"Bark"_s);
    EXPECT_EQ(browsing.artworkAlbum(std::nullopt)->title, u"Song"_s);
    EXPECT_EQ(browsing.artworkAlbum(entry(u"none"_s, u"none"_s)), nullptr);
}

TEST_F(BrowsingTest, PlaybackGoesOnWithoutTurningThePage) {
    browsing.selectPlayedAlbum(entry(u"Bark"_s, u"Moss"_s));
    EXPECT_EQ(browsing.selectedAlbum()->title, u"Bark"_s);
    EXPECT_EQ(browsing.focusedAlbum(), nullptr) << "nobody asked for its tracks";
    EXPECT_EQ(shown(), u"abcdef"_s);

    browsing.setSelectedAlbumID(u"local|moss|bark"_s);
    EXPECT_EQ(shown(), u"c"_s) << "the album that plays can be asked for";
    browsing.selectPlayedAlbum(entry(u"Song"_s, u"Lark"_s));
    EXPECT_EQ(browsing.selectedAlbum()->title, u"Song"_s);
    EXPECT_EQ(shown(), u"c"_s);
    store.remove({u"/m/c"_s});
    catalog.rebuildImportedAlbums();
    EXPECT_EQ(browsing.selectedAlbum()->title, u"Song"_s);
    EXPECT_EQ(shown(), u"abdef"_s) << "what was asked for is gone";

    browsing.jumpToAlbum(entry(u"Fern"_s, u"Moss"_s));
    EXPECT_EQ(shown(), u"abf"_s);
    browsing.goHome();
    EXPECT_EQ(shown(), u"abdef"_s);
}

TEST_F(BrowsingTest, OneTracksChangeIsOneRowsChange) {
    Told told(*browsing.visibleTracks());
    userData.toggleLoved(u"/m/c"_s);
    userData.setRating(2, u"/m/d"_s);
    userData.toggleLoved(u"/gone"_s);
    current = u"/m/a"_s;
    browsing.currentChanged(current);
    current = u"/m/b"_s;
    browsing.currentChanged(current);
    EXPECT_EQ(told.changed, (Ranges{{2, 2}, {3, 3}, {0, 0}, {0, 0}, {1, 1}}));
    EXPECT_EQ(told.roles[0], QList<int>{TrackRole::isLoved});
    EXPECT_EQ(told.roles[3], QList<int>{TrackListModel::IsPlayingRole});
    EXPECT_EQ(told.resets, 0);
    const QModelIndex row = browsing.visibleTracks()->index(1);
    EXPECT_TRUE(row.data(TrackListModel::IsPlayingRole).toBool());
    EXPECT_EQ(row.data(TrackRole::availability).value<TrackAvailability>(),
              TrackAvailability::missing);
}

TEST_F(BrowsingTest, ListsKeepTheirPlaceWhenTheLibraryChanges) {
    Told tracks(*browsing.visibleTracks());
    Told albumsTold(*browsing.visibleAlbums());
    Track fresh = trackOf(u"/m/g"_s, u"g"_s, u"Moss"_s, u"Bark"_s);
    Track healed = *store.track(u"/m/b"_s);
    healed.duration = u"3:00"_s;
    store.replace(rowsOf({healed}));
    store.append(rowsOf({fresh}));
    store.remove({u"/m/a"_s, u"/m/d"_s});
    catalog.rebuildImportedAlbums();
    EXPECT_EQ(shown(), u"bcefg"_s);
    EXPECT_EQ(tracks.resets, 0);
    EXPECT_EQ(tracks.removed, (Ranges{{3, 3}, {0, 0}}));
    EXPECT_EQ(tracks.inserted, (Ranges{{4, 4}}));
    EXPECT_EQ(tracks.changed, (Ranges{{0, 0}})); // the healed one
    EXPECT_EQ(albumsTold.resets, 0);
    EXPECT_EQ(albumsTold.removed, (Ranges{{0, 0}})); // Song
    EXPECT_EQ(albumsTold.changed, (Ranges{{1, 2}})); // Bark grew, Fern shrank

    userData.toggleLoved(u"/m/c"_s);
    userData.toggleLoved(u"/m/e"_s);
    browsing.selectSidebarItem(SidebarItem::loved);
    tracks.removed.clear();
    userData.toggleLoved(u"/m/c"_s);
    EXPECT_EQ(tracks.removed, (Ranges{{0, 0}}));
}

TEST_F(BrowsingTest, ListsShowTheOldCatalogWholeUntilTheNewOneIsThere) {
    const QUuid id = playlists.createPlaylist(u"p"_s);
    playlists.addTrackPaths({u"/m/f"_s, u"/m/c"_s}, id);
    store.remove({u"/m/a"_s, u"/m/c"_s}); // row numbers change before the catalog does
    EXPECT_EQ(shown(), u"abcdef"_s);
    browsing.setSelectedPlaylistID(id);
    EXPECT_EQ(shown(), u"fc"_s);
    catalog.rebuildImportedAlbums();
    EXPECT_EQ(shown(), u"f"_s);
}

TEST_F(BrowsingTest, CoversCanBeReadByTheirKeys) {
    Track track = trackOf(u"/m/z"_s, u"z"_s, u"Zebra"_s, u"Z"_s);
    track.coverImageData = Artwork::fromBytes("picture");
    store.append(rowsOf({track}));
    catalog.rebuildImportedAlbums();
    const QModelIndex row = browsing.visibleTracks()->index(6);
    const QString key = row.data(TrackRole::coverKey).toString();
    EXPECT_EQ(covers.read(key), "picture");
    const int albumRow = albums().indexOf(u"Z"_s);
    EXPECT_EQ(browsing.visibleAlbums()->index(albumRow).data(AlbumListModel::CoverKeyRole), key);
    EXPECT_TRUE(browsing.visibleTracks()->index(0).data(TrackRole::coverKey).toString().isEmpty());
    EXPECT_TRUE(covers.read(u"artwork:unknown"_s).isEmpty());
    EXPECT_TRUE(covers.read(u"file:/nowhere"_s).isEmpty());
}

TEST_F(BrowsingTest, TheSidebarCountsWhatThereIs) {
    userData.toggleLoved(u"/m/b"_s);
    const SidebarModel sidebar(catalog);
    const std::pair<SidebarItem, QString> badges[] = {
        {SidebarItem::library, {}},     {SidebarItem::albums, u"5"_s},
        {SidebarItem::artists, u"3"_s}, {SidebarItem::tracks, u"6"_s},
        {SidebarItem::loved, u"1"_s},   {SidebarItem::topRated, {}},
    };
    ASSERT_EQ(sidebar.rowCount(), 9);
    for (const auto& [item, badge] : badges)
        EXPECT_EQ(sidebar.sidebarBadge(item), badge) << static_cast<int>(item);
}

TEST(LibrarySummary, CountsTracksAlbumsAndBytes) {
    EXPECT_EQ(librarySummary(3, 2, 1'200'000'000, ResolvedLanguage::english),
              u"3 tracks - 2 albums - 1.2 GB indexed"_s);
    EXPECT_EQ(librarySummary(3, 2, 8'400'000, ResolvedLanguage::simplifiedChinese),
              u"已索引 3 首歌曲 - 2 张专辑 - 8.4 MB"_s);
}
