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
