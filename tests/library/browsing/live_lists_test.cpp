// SPDX-License-Identifier: MIT
#include "library/browsing/browsing_fixture.h"
#include "model/raw_value.h"

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {
using LiveListsTest = BrowsingTest;
}

TEST_F(LiveListsTest, KeepsListsOfWhatIsAddedPlayedAndRated) {
    Track newer = trackOf(u"/m/g"_s, u"g"_s, u"Wren"_s, {});
    newer.addedDate = 900.75;
    Track older = trackOf(u"/m/h"_s, u"h"_s, u"Wren"_s, {});
    older.addedDate = 100;
    Track together = trackOf(u"/m/i"_s, u"i"_s, u"Lark"_s, {});
    together.addedDate = 900.25;
    store.append(rowsOf({older, newer, together}));
    catalog.rebuildImportedAlbums();
    for (const auto& [path, stars] :
         {std::pair(u"/m/b"_s, 4), std::pair(u"/m/c"_s, 3), std::pair(u"/m/e"_s, 5),
          std::pair(u"/m/a"_s, 4), std::pair(u"/gone"_s, 5)})
        userData.setRating(stars, path);
    userData.countPlay(u"/m/d"_s, 50);
    userData.countPlay(u"/m/f"_s, 70);
    userData.countPlay(u"/m/d"_s, 60);
    userData.countPlay(u"/m/a"_s); // by a version that noted no time

    struct Case {
        SidebarItem item;
        QString tracks, found;
    };
    const Case cases[] = {
        {SidebarItem::recentlyAdded, u"gih"_s, u"i"_s},
        {SidebarItem::recentlyPlayed, u"fd"_s, u"d"_s},
        {SidebarItem::mostPlayed, u"daf"_s, u"d"_s},
        {SidebarItem::topRated, u"eab"_s, u"e"_s},
    };
    for (const Case& c : cases) {
        browsing.selectSidebarItem(c.item);
        const std::string name = rawValue(c.item).toStdString();
        EXPECT_EQ(browsing.mode(), LibraryMode::songs);
        EXPECT_EQ(shown(), c.tracks) << name;
        EXPECT_EQ(browsing.tablePlace().toStdString(), name);
        QString queue;
        for (const TrackPtr& track : browsing.sortedTracks())
            queue += track->title;
        EXPECT_EQ(queue, c.tracks) << "what is shown is what plays next";
        browsing.setSearchText(u"artist:lark"_s);
        EXPECT_EQ(shown(), c.found) << name;
        browsing.setSearchText({});
    }
    EXPECT_EQ(browsing.sortedPlace(), u"Top Rated"_s);
    // A hand that rates or plays a row keeps it where it is, until the list is chosen again.
    userData.setRating(1, u"/m/e"_s);
    userData.setRating(5, u"/m/b"_s);
    EXPECT_EQ(shown(), u"eab"_s);
    browsing.selectSidebarItem(SidebarItem::topRated);
    EXPECT_EQ(shown(), u"ba"_s);
    order.choose(TrackOrder::title);
    EXPECT_EQ(shown(), u"ab"_s);
    order.choose(TrackOrder::title);
    order.choose(TrackOrder::title);
    EXPECT_EQ(shown(), u"ba"_s);

    const QUuid id = playlists.createPlaylist(u"p"_s);
    browsing.setSelectedPlaylistID(id);
    EXPECT_EQ(shown(), QString());
    EXPECT_TRUE(browsing.sortedTracks().empty());
    browsing.selectSidebarItem(SidebarItem::tracks);
    EXPECT_EQ(shown(), u"abcdefhgi"_s);
}

TEST_F(LiveListsTest, FollowTheRulesOfTheUser) {
    userData.setRating(4, u"/m/b"_s);
    userData.setRating(5, u"/m/e"_s);
    userData.countPlay(u"/m/d"_s, 50);
    userData.countPlay(u"/m/d"_s, 60);
    userData.countPlay(u"/m/a"_s, 70);
    struct Case {
        LiveList rule;
        QString tracks;
    };
    const Case cases[] = {
        {{{}, {}, {}, LiveOrder::library, false, 0}, u"abcdef"_s},
        {{{}, {}, {}, LiveOrder::library, true, 2}, u"fe"_s},
        {{{}, {}, u"artist:moss"_s, LiveOrder::rating, false, 2}, u"ba"_s},
        {{{}, {}, u"artist:moss"_s, LiveOrder::rating, true, 0}, u"acfb"_s},
        {{{}, {}, {}, LiveOrder::plays, false, 3}, u"dab"_s},
        {{{}, {}, {}, LiveOrder::played, false, 2}, u"ad"_s},
        {{{}, {}, u"played:>=2001 -rating:5"_s, LiveOrder::played, true, 0}, u"da"_s},
        {{{}, {}, u"nothing has this"_s, LiveOrder::added, false, 0}, QString()},
    };
    QUuid id;
    for (const Case& c : cases) {
        LiveList list = c.rule;
        list.id = id;
        list.name = u" Mine "_s;
        const QUuid saved = liveLists.save(list);
        ASSERT_TRUE(id.isNull() || saved == id);
        id = saved;
        if (browsing.selectedLiveListID() != id)
            browsing.selectLiveList(id);
        EXPECT_EQ(shown(), c.tracks) << c.rule.search.toStdString();
        EXPECT_EQ(browsing.countOf(list), c.tracks.size());
        EXPECT_EQ(browsing.liveListTracks().tracksOf(id).size(),
                  static_cast<std::size_t>(c.tracks.size()));
    }
    EXPECT_EQ(browsing.selectedLiveListName(), u"Mine"_s);
    EXPECT_EQ(browsing.sortedPlace(), u"Mine"_s);
    EXPECT_EQ(liveLists.rowCount(), 1);
    LiveLists restarted{preferences};
    restarted.restore();
    EXPECT_EQ(restarted.list(id), liveLists.list(id));

    // It may go while a playlist is shown, which stays.
    const QUuid playlist = playlists.createPlaylist(u"p"_s);
    browsing.setSelectedPlaylistID(playlist);
    liveLists.remove(id);
    EXPECT_EQ(browsing.selectedPlaylistID(), playlist);
    EXPECT_EQ(browsing.selectedSidebar(), SidebarItem::tracks);
    const QUuid other = liveLists.save({{}, u"o"_s, u"title:c"_s, LiveOrder::library, false, 0});
    browsing.selectLiveList(other);
    EXPECT_TRUE(browsing.selectedPlaylistID().isNull());
    EXPECT_EQ(shown(), u"c"_s);
    browsing.selectLiveList(id); // it is gone
    EXPECT_EQ(shown(), u"c"_s);
    liveLists.remove(other);
    EXPECT_EQ(browsing.selectedSidebar(), SidebarItem::tracks);
    EXPECT_EQ(shown(), u"abcdef"_s);
}

TEST(LiveLists, AreReadBackAndNothingElseIs) {
    const std::vector<LiveList> lists{
        {QUuid::createUuid(), u"周"_s, u"artist:\"a b\" -live"_s, LiveOrder::played, true, 25},
        {QUuid::createUuid(), u"b"_s, {}, LiveOrder::library, false, 0}};
    EXPECT_EQ(decodedLiveLists(encodedLiveLists(lists)), lists);
    for (const char* damaged : {"", "{}", "[1]", "[{\"name\":\"a\"}]", "[{\"id\":\"x\"}]"})
        EXPECT_EQ(decodedLiveLists(damaged), std::nullopt) << damaged;

    MemoryPreferences preferences;
    LiveLists kept{preferences};
    EXPECT_TRUE(kept.save({{}, u"  "_s, {}, LiveOrder::library, false, 0}).isNull());
    EXPECT_TRUE(kept.save({QUuid::createUuid(), u"a"_s, {}, LiveOrder::added, false, 0}).isNull());
    EXPECT_EQ(kept.rowCount(), 0);
}
