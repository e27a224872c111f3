// SPDX-License-Identifier: MIT
#include "library/browsing/browsing_fixture.h"

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {
using LibrarySearchTest = BrowsingTest;
}

TEST_F(LibrarySearchTest, SearchesFiveFieldsInTheSourceOrder) {
    const std::pair<QString, QString> cases[] = {
        {{}, u"abcdef"_s},      {u"  \t"_s, u"abcdef"_s}, {u"C"_s, u"cd"_s}, // title, format
        {u" flac "_s, u"d"_s},  {u"fern"_s, u"abf"_s},    {u"LARK"_s, u"de"_s},
        {u"ambient"_s, u"e"_s}, {u"moss"_s, u"abcf"_s},   {u"nothing"_s, {}},
        {u"unknown"_s, {}}, // texts for unknown names are not searched
    };
    for (const auto& [query, expected] : cases) {
        browsing.setSearchText(query);
        EXPECT_EQ(shown(), expected) << query.toStdString();
    }
    browsing.setSearchText(u"m"_s); // grows and shrinks again
    EXPECT_EQ(shown(), u"abcdef"_s.remove(u'd'));
    browsing.setSearchText(u"mo"_s);
    EXPECT_EQ(shown(), u"abcf"_s);
    browsing.setSearchText(u"mos"_s);
    browsing.setSearchText(u"o"_s);
    EXPECT_EQ(shown(), u"abcdf"_s);
    EXPECT_EQ(albums(),
              (QStringList{u"Song"_s, u"Unknown Album"_s, u"Bark"_s, u"Fern"_s, u"Fern"_s}));
    EXPECT_EQ(artists(), (QStringList{u"Moss"_s, u"moss"_s}));
}

TEST_F(LibrarySearchTest, WordsAreFoundAcrossTheFields) {
    struct Case {
        QString query, tracks;
        QStringList albums, artists;
    };
    const Case cases[] = {
        {u"moss bark"_s, u"c"_s, {u"Bark"_s}, {}},
        {u"Fern  MOSS"_s, u"abf"_s, {u"Fern"_s, u"Fern"_s}, {}},
        {u"flac lark song"_s, u"d"_s, {u"Song"_s}, {}}, // the album of the track that is found
        {u"moss nothing"_s, {}, {}, {}},
        {u"wren tree"_s, u"gh"_s, {}, {u"Tree Wren"_s}}, // the same text
        {u"tree wren"_s, u"g"_s, {}, {u"Tree Wren"_s}},  // as it stands
        {u"e wren x"_s, {}, {}, {}},
    };
    store.append(rowsOf({trackOf(u"/m/g"_s, u"g"_s, u"Tree Wren"_s, {}),
                         trackOf(u"/m/h"_s, u"h"_s, u"Wren"_s, {})}));
    Track named = *store.track(u"/m/h"_s);
    named.genre = u"Tree"_s;
    store.replace(rowsOf({named}));
    catalog.rebuildImportedAlbums();
    for (const Case& c : cases) {
        for (qsizetype length = 0; length <= c.query.size(); ++length) // as it is typed
            browsing.setSearchText(c.query.left(length));
        EXPECT_EQ(shown(), c.tracks) << c.query.toStdString();
        EXPECT_EQ(artists(), c.artists) << c.query.toStdString();
        if (!c.query.contains(u"wren"_s)) { // those have no album title
            EXPECT_EQ(albums(), c.albums) << c.query.toStdString();
        }
        browsing.setSearchText({});
        browsing.setSearchText(c.query); // as it is pasted
        EXPECT_EQ(shown(), c.tracks) << c.query.toStdString();
    }
    // What was found in one text is too little for words that are in several.
    Track both = trackOf(u"/m/i"_s, u"ab c"_s, {}, {});
    Track apart = trackOf(u"/m/j"_s, u"ab"_s, u"cd"_s, {});
    store.append(rowsOf({both, apart}));
    catalog.rebuildImportedAlbums();
    browsing.setSearchText(u"ab c"_s);
    EXPECT_EQ(shown(), u"ab c"_s);
    browsing.setSearchText(u"ab cd"_s);
    EXPECT_EQ(shown(), u"ab"_s);
}

TEST_F(LibrarySearchTest, AlbumsAreFoundByTheirTracksWhereNoTileHoldsTheQuery) {
    store.append(rowsOf({trackOf(u"/m/g"_s, u"Hollow Beyoncé Fern"_s, u"Tree Wren"_s, u"Oak"_s)}));
    catalog.rebuildImportedAlbums();
    browsing.setSearchText(u"HOLLOW beyonce"_s);
    EXPECT_EQ(albums(), QStringList{u"Oak"_s});
    browsing.setSearchText(u"wren hollow"_s);
    EXPECT_EQ(albums(), QStringList{u"Oak"_s});
    // What a tile itself says goes before.
    browsing.setSearchText(u"fern"_s);
    EXPECT_EQ(albums(), (QStringList{u"Fern"_s, u"Fern"_s}));
    // An open album without such a track has nothing to show, and its tile's neighbours have.
    browsing.setSearchText({});
    browsing.setSelectedAlbumID(u"local|moss|fern"_s);
    EXPECT_TRUE(browsing.hasVisibleTracks());
    browsing.setSearchText(u"hollow"_s);
    EXPECT_FALSE(browsing.hasVisibleTracks());
    EXPECT_EQ(albums(), QStringList{u"Oak"_s});
    browsing.setSearchText({});
    EXPECT_TRUE(browsing.hasVisibleTracks());
}

TEST_F(LibrarySearchTest, TermsFindTracksAndTheirAlbumsAndArtists) {
    Track guest = trackOf(u"/m/g"_s, u"g"_s, u"Wren"_s, u"Bark"_s);
    guest.albumTags.albumArtist = u"Moss"_s;
    guest.year = 1994;
    Track early = trackOf(u"/m/h"_s, u"h live"_s, u"Lark"_s, u"Year:<1990"_s);
    early.year = 1959;
    store.append(rowsOf({guest, early}));
    catalog.rebuildImportedAlbums();
    userData.setRating(4, u"/m/a"_s);
    userData.setRating(2, u"/m/d"_s);
    userData.setRating(5, u"/gone"_s);
    userData.countPlay(u"/m/d"_s);

    struct Case {
        QString query, tracks;
        QStringList albums, artists;
    };
    const QStringList both{u"Fern"_s, u"Fern"_s};
    const Case cases[] = {
        {u"artist:moss -album:fern"_s, u"cg"_s, {u"Bark"_s}, {u"Moss"_s}},
        {u"artist:wren"_s, u"g"_s, {u"Bark"_s}, {u"Wren"_s}},
        {u"bark -artist:wren"_s, u"c"_s, {u"Bark"_s}, {u"Moss"_s}},
        {u"year:..1999"_s,
         u"gh live"_s,
         {u"Year:<1990"_s, u"Bark"_s},
         {u"Lark"_s, u"Moss"_s, u"Wren"_s}},
        {u"rating:>=4"_s, u"a"_s, {u"Fern"_s}, {u"Moss"_s}},
        {u"rating:1..3 plays:1"_s, u"d"_s, {u"Song"_s}, {u"Lark"_s}},
        {u"format:flac -rating:0"_s, u"d"_s, {u"Song"_s}, {u"Lark"_s}},
        {u"lark \"h l\""_s, u"h live"_s, {u"Year:<1990"_s}, {u"Lark"_s}},
        {u"genre:ambient"_s, u"e"_s, {u"Unknown Album"_s}, {u"Lark"_s}},
        {u"rating:9"_s, {}, {}, {}},
        // A text that holds what was typed is always found.
        {u"year:<1990"_s, u"h live"_s, {u"Year:<1990"_s}, {u"Lark"_s}},
    };
    for (const Case& c : cases) {
        for (qsizetype length = 0; length <= c.query.size(); ++length) // as it is typed
            browsing.setSearchText(c.query.left(length));
        EXPECT_EQ(shown(), c.tracks) << c.query.toStdString();
        EXPECT_EQ(albums(), c.albums) << c.query.toStdString();
        EXPECT_EQ(artists(), c.artists) << c.query.toStdString();
    }
    // What is rated while its list is shown stays under the hand.
    browsing.setSearchText(u"rating:>=4"_s);
    userData.setRating(1, u"/m/a"_s);
    EXPECT_EQ(shown(), u"a"_s);
    // Another catalog is looked through anew, also while it is not derived yet.
    store.append(rowsOf({trackOf(u"/gone"_s, u"x"_s, u"Wren"_s, {})}));
    catalog.rebuildImportedAlbums();
    EXPECT_EQ(shown(), u"x"_s);
    browsing.selectSidebarItem(SidebarItem::loved);
    EXPECT_EQ(shown(), QString());
}
