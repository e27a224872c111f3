// SPDX-License-Identifier: MIT
// The real main window, worked with mouse and keyboard.
#include "views/main_window_fixture.h"

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

using MainWindowTest = MainWindowFixture;

TEST_F(MainWindowTest, TransportButtonsPlayPauseAndSkip) {
    ASSERT_TRUE(library.transport()->isPlaying());
    ASSERT_TRUE(ui->click(u"Pause"_s, QAccessible::Button));
    EXPECT_FALSE(library.transport()->isPlaying());
    ASSERT_TRUE(ui->click(u"Play"_s, QAccessible::Button));
    EXPECT_TRUE(library.transport()->isPlaying());
    ASSERT_TRUE(ui->click(u"Next track"_s, QAccessible::Button));
    EXPECT_EQ(library.player()->currentTrack().title, u"Half the Way Home"_s);
    ASSERT_TRUE(ui->click(u"Previous track"_s, QAccessible::Button));
    EXPECT_EQ(library.player()->currentTrack().title, u"Lamplight"_s);
    ASSERT_TRUE(ui->click(u"Shuffle off"_s));
    EXPECT_TRUE(library.transport()->isShuffleEnabled());
    EXPECT_TRUE(ui->shows(u"Shuffle on"_s));
    ASSERT_TRUE(ui->click(u"Repeat off"_s));
    EXPECT_EQ(library.transport()->repeatMode(), PlaybackRepeatMode::all);
    EXPECT_TRUE(ui->shows(u"Repeat playlist"_s));
}

TEST_F(MainWindowTest, OnASmallScreenTheSidebarGivesWayToThePanel) {
    ui->window().setMinimumSize({});
    ui->window().resize(800, 600);
    const auto shows = [this](bool sidebar, bool panel) {
        return world.waitFor([=, this] {
            return (ui->find(u"Loved"_s, QAccessible::ListItem) != nullptr) == sidebar &&
                   ui->shows(u"Up Next"_s) == panel;
        });
    };
    const QString toggle = u"Toggle Now Playing Panel"_s;
    ASSERT_TRUE(shows(false, true));
    EXPECT_TRUE(ui->click(toggle, QAccessible::Button)) << "nothing covers it";
    EXPECT_TRUE(shows(true, false));
    EXPECT_TRUE(ui->click(toggle, QAccessible::Button));
    EXPECT_TRUE(shows(false, true));
}

TEST_F(MainWindowTest, TheSidebarAndTheTabsLeadThroughTheLibrary) {
    struct Step {
        QString name;
        QAccessible::Role role;
        LibraryMode mode;
        SidebarItem place;
    };
    const std::array steps{
        Step{u"Tracks"_s, QAccessible::PageTab, LibraryMode::songs, SidebarItem::tracks},
        Step{u"Artists"_s, QAccessible::PageTab, LibraryMode::artists, SidebarItem::artists},
        Step{u"Albums"_s, QAccessible::PageTab, LibraryMode::albums, SidebarItem::albums},
        Step{u"Loved"_s, QAccessible::ListItem, LibraryMode::songs, SidebarItem::loved},
        Step{u"Library"_s, QAccessible::ListItem, LibraryMode::albums, SidebarItem::library},
    };
    for (const Step& step : steps) {
        ASSERT_TRUE(ui->click(step.name, step.role)) << qPrintable(step.name);
        EXPECT_EQ(library.browsing()->mode(), step.mode) << qPrintable(step.name);
        EXPECT_EQ(library.browsing()->selectedSidebar(), step.place) << qPrintable(step.name);
    }
}

TEST_F(MainWindowTest, LanguagesChangeAtOnceAndTheMenusStayEnglish) {
    library.language()->setLanguageSetting(AppLanguage::simplifiedChinese);
    for (const QString& text : {u"浏览"_s, u"资料库"_s, u"专辑"_s, u"艺人"_s, u"歌曲"_s, u"喜欢"_s,
                                u"播放列表"_s, u"待播队列"_s, u"下一首"_s})
        EXPECT_TRUE(ui->waitsFor(text)) << qPrintable(text);
    EXPECT_TRUE(ui->shows(u"Playback"_s));
    library.language()->setLanguageSetting(AppLanguage::english);
    EXPECT_TRUE(ui->waitsFor(u"Up Next"_s));
}

TEST_F(MainWindowTest, AMenuThatWasSlidToLeavesNoTitleLit) {
    const auto isOpen = [&](const QString& title) {
        auto* thing = ui->find(title, QAccessible::MenuItem);
        return thing && thing->state().expanded;
    };
    ASSERT_TRUE(ui->click(u"File"_s, QAccessible::MenuItem));
    ASSERT_TRUE(world.waitFor([&] { return isOpen(u"File"_s); }));
    ui->pointAt(ui->centreOf(u"Edit"_s, QAccessible::MenuItem));
    ASSERT_TRUE(world.waitFor([&] { return isOpen(u"Edit"_s) && !isOpen(u"File"_s); }));
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !isOpen(u"Edit"_s); }));
    ui->pointAt(ui->centreOf(u"View"_s, QAccessible::MenuItem));
    EXPECT_FALSE(world.waitFor([&] { return isOpen(u"View"_s); }, 200)) << "by hovering alone";
    ui->pointAt({});
}

TEST_F(MainWindowTest, OnlyTheKeyboardDrawsARing) {
    const auto rings = [&] {
        int count = 0;
        forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
            count += QByteArray(item->metaObject()->className()).startsWith("FocusRing") ? 1 : 0;
        });
        return count;
    };
    ASSERT_TRUE(ui->click(u"Tracks"_s, QAccessible::PageTab));
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    ASSERT_TRUE(ui->click(u"Sodium, The Lanterns"_s));
    EXPECT_EQ(rings(), 0);
    ui->key(Qt::Key_Down);
    EXPECT_EQ(rings(), 1);
    ui->key(Qt::Key_Tab);
    EXPECT_EQ(rings(), 1);
    ui->key(Qt::Key_Backtab);
    EXPECT_EQ(rings(), 1) << "where the keyboard was";
}

TEST_F(MainWindowTest, TypingInTheSearchFieldFiltersAndEscClearsIt) {
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    ui->key(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(world.waitFor([&] { return library.views()->isSearchFieldFocused(); }));
    const bool playing = library.transport()->isPlaying();
    ui->type(u"nina vale"_s);
    EXPECT_EQ(library.browsing()->searchText(), u"nina vale"_s);
    EXPECT_EQ(library.transport()->isPlaying(), playing);
    EXPECT_TRUE(world.waitFor([&] {
        return textAt(library.browsing()->visibleTracks(), 0, "artist") == u"Nina Vale"_s;
    }));
    ui->key(Qt::Key_Escape);
    EXPECT_EQ(library.browsing()->searchText(), QString());
    ui->find(u"Search title, artist, album, format"_s)->setText(QAccessible::Value, u"salt"_s);
    EXPECT_EQ(library.browsing()->searchText(), u"salt"_s) << "as assistive technology sets it";
    ui->key(Qt::Key_Escape);
    ui->type(u"zzzz"_s);
    EXPECT_TRUE(ui->waitsFor(u"No matches for your search"_s));
    ASSERT_TRUE(ui->click(u"Clear search"_s));
    EXPECT_EQ(library.browsing()->searchText(), QString());
    ui->key(Qt::Key_Escape);
    EXPECT_FALSE(library.views()->isSearchFieldFocused());
    ui->key(Qt::Key_Space);
    EXPECT_NE(library.transport()->isPlaying(), playing) << "Space is the player's again";
}

TEST_F(MainWindowTest, AnAlbumIsChosenByAClickAndPlayedByTwo) {
    ASSERT_TRUE(ui->click(u"Kelp & Salt, Mira Holt"_s));
    EXPECT_TRUE(world.waitFor(
        [&] { return library.browsing()->selectedAlbum()->title == u"Kelp & Salt"_s; }));
    EXPECT_TRUE(ui->waitsFor(u"Show All Tracks"_s));
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.player()->currentTrack().album, u"Kelp & Salt"_s);
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Show All Tracks"_s); }));
}

TEST_F(MainWindowTest, TheOpenAlbumsPaneSaysWhichItIsAndPlaysIt) {
    ASSERT_TRUE(ui->click(u"Kelp & Salt, Mira Holt"_s));
    ASSERT_TRUE(ui->waitsFor(u"2018 · 13 tracks · "_s)) << "with its length and quality";
    EXPECT_NE(ui->find(u"Kelp & Salt"_s, QAccessible::Heading), nullptr);
    ASSERT_TRUE(ui->click(u"Shuffle"_s, QAccessible::Button));
    EXPECT_EQ(library.queue()->sourceLabel(), u"Kelp & Salt"_s);
    EXPECT_TRUE(library.transport()->isShuffleEnabled());
    EXPECT_TRUE(ui->shows(u"2018 · 13 tracks · "_s));
    library.transport()->toggleShuffle();
    ASSERT_TRUE(ui->tabTo(u"Mira Holt"_s));
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.browsing()->focusedArtist(), u"Mira Holt"_s);
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"2018 · 13 tracks · "_s); }))
        << "an artist's pane has none";
    library.browsing()->selectBrowseMode(LibraryMode::albums);
    ASSERT_TRUE(ui->waitsFor(u"2018 · 13 tracks · "_s));
    ASSERT_TRUE(ui->tabTo(u"Show All Tracks"_s));
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.browsing()->mode(), LibraryMode::songs);
}

TEST_F(MainWindowTest, PlaylistsAreMadeRenamedFilledAndDeleted) {
    QAbstractListModel* playlists = library.playlists();
    const int before = playlists->rowCount();
    ASSERT_TRUE(ui->click(u"New Playlist..."_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Playlist name"_s));
    ui->type(u"Sunday"_s);
    ui->key(Qt::Key_Return);
    ASSERT_EQ(playlists->rowCount(), before + 1);
    ASSERT_TRUE(ui->waitsFor(u"Sunday"_s));
    // A prompt that is fading out still takes the clicks.
    ASSERT_TRUE(GalleryWorld::waitFor([&] { return !ui->shows(u"Playlist name"_s); }));
    ASSERT_TRUE(ui->click(u"Sunday"_s, QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->click(u"Rename..."_s, QAccessible::MenuItem));
    ASSERT_TRUE(ui->waitsFor(u"Playlist name"_s));
    ui->type(u"Monday"_s);
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(GalleryWorld::waitFor([&] { return !ui->shows(u"Playlist name"_s); }));
    EXPECT_TRUE(ui->shows(u"Sunday"_s));

    library.browsing()->selectBrowseMode(LibraryMode::songs);
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));
    const QString playing = library.player()->currentTrack().title;
    ui->drag(ui->centreOf(u"Sodium, The Lanterns"_s), ui->centreOf(u"Sunday"_s));
    EXPECT_EQ(textAt(playlists, before, "trackCount"), u"1"_s);
    EXPECT_EQ(library.player()->currentTrack().title, playing);

    ASSERT_TRUE(ui->click(u"Sunday"_s, QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->click(u"Delete"_s, QAccessible::MenuItem));
    EXPECT_EQ(playlists->rowCount(), before);
}

TEST_F(MainWindowTest, ASearchIsSavedAsALiveListWhichCanBeChangedAndDeleted) {
    QAbstractListModel* lists = library.liveLists();
    library.browsing()->setSearchText(u"artist:lanterns"_s);
    ASSERT_TRUE(ui->click(u"Save Search as Live List..."_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Name of the list"_s));
    ui->type(u"Sunday"_s); // instead of the search, which is offered as its name
    ui->key(Qt::Key_Return);
    ASSERT_EQ(lists->rowCount(), 1);
    ASSERT_TRUE(ui->waitsFor(u"Sunday"_s));
    EXPECT_TRUE(library.browsing()->searchText().isEmpty());
    EXPECT_EQ(library.browsing()->selectedLiveListName(), u"Sunday"_s);
    const std::size_t found = library.browsing()->visibleTracks()->size();
    EXPECT_GT(found, 2U);
    EXPECT_LT(found, library.store()->rows().size());
    ASSERT_TRUE(GalleryWorld::waitFor([&] { return !ui->shows(u"Name of the list"_s); }));

    ASSERT_TRUE(ui->click(u"Sunday"_s, QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->click(u"Edit..."_s, QAccessible::MenuItem));
    ASSERT_TRUE(ui->waitsFor(u"At most"_s));
    ASSERT_TRUE(ui->tabTo(u"At most"_s));
    ui->type(u"2"_s);
    ui->key(Qt::Key_Return);
    EXPECT_EQ(lists->rowCount(), 1);
    EXPECT_EQ(library.browsing()->visibleTracks()->size(), 2U);
    ASSERT_TRUE(GalleryWorld::waitFor([&] { return !ui->shows(u"At most"_s); }));

    ASSERT_TRUE(ui->click(u"Sunday"_s, QAccessible::ListItem, Qt::RightButton));
    ASSERT_TRUE(ui->click(u"Delete"_s, QAccessible::MenuItem));
    EXPECT_EQ(lists->rowCount(), 0);
    EXPECT_EQ(library.browsing()->selectedSidebar(), SidebarItem::tracks);
}

TEST_F(MainWindowTest, TheEqualizerPopoverSetsBandsAndClosesOnEsc) {
    ASSERT_TRUE(ui->click(u"Equalizer"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Preamp"_s));
    auto* band = ui->find(u"1K"_s, QAccessible::Slider);
    ASSERT_NE(band, nullptr);
    band->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    const double before = library.equalizer()->eqGains()[5];
    ui->key(Qt::Key_Up);
    EXPECT_DOUBLE_EQ(library.equalizer()->eqGains()[5], before + 0.5);
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Preamp"_s); }));
}

TEST_F(MainWindowTest, TheEqualizerShowsClippingWhileMusicPlays) {
    world.environment().output.freeze(); // nothing but what is published here
    ui->window().resize(1000, 640);      // without the spectrum
    const auto isWatched = [&] { return library.spectrum()->isWatched(); };
    ASSERT_TRUE(world.waitFor([&] { return !isWatched(); }));
    ASSERT_TRUE(ui->click(u"Equalizer"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Not clipping"_s));
    EXPECT_TRUE(isWatched());
    library.spectrum()->publish({.clips = true});
    EXPECT_TRUE(ui->waitsFor(u"Clipping"_s));
    library.transport()->togglePlayback();
    EXPECT_TRUE(ui->waitsFor(u"Not clipping"_s)) << "nobody tells of a silence";
    library.transport()->togglePlayback();
    EXPECT_TRUE(ui->waitsFor(u"Clipping"_s));
    library.spectrum()->publish({});
    EXPECT_TRUE(ui->waitsFor(u"Not clipping"_s));
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !isWatched(); })) << "a closed equalizer asks nothing";
}

TEST_F(MainWindowTest, WhatIsEmptySaysSoAndOffersWhatFillsIt) {
    library.browsing()->setSearchText(u"zzzz"_s);
    ASSERT_TRUE(ui->click(u"Clear search"_s, QAccessible::Button));
    EXPECT_EQ(library.browsing()->searchText(), QString());

    library.browsing()->setSelectedPlaylistID(library.playlists()->createPlaylist(u"Sunday"_s));
    ASSERT_TRUE(ui->waitsFor(u"Nothing in this playlist yet"_s));
    ASSERT_TRUE(ui->click(u"Browse Tracks"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Sodium, The Lanterns"_s));

    for (int row = 0; row < library.browsing()->visibleTracks()->rowCount(); ++row) {
        const QString path = textAt(library.browsing()->visibleTracks(), row, "path");
        if (library.userData()->isLoved(path))
            library.userData()->toggleLoved(path);
    }
    library.browsing()->selectSidebarItem(SidebarItem::loved);
    ASSERT_TRUE(ui->waitsFor(u"No loved tracks yet"_s));
    const QString title = library.player()->currentTrack().title;
    ASSERT_TRUE(ui->click(u"Love “"_s + title, QAccessible::Button));
    EXPECT_TRUE(library.player()->isCurrentTrackLoved());
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"No loved tracks yet"_s); }));

    EXPECT_FALSE(ui->shows(u"Nothing up next"_s));
    library.transport()->stopPlayer(false);
    library.queueEditing()->clear();
    EXPECT_TRUE(ui->waitsFor(u"Nothing up next"_s));
    EXPECT_TRUE(ui->shows(u"Browse Tracks"_s));
}

TEST_F(MainWindowTest, TabGoesRoundEverythingAsTheEyeDoes) {
    const auto focused = [&] {
        QAccessibleInterface* thing =
            QAccessible::queryAccessibleInterface(&ui->window())->focusChild();
        return thing ? thing->text(QAccessible::Name) : QString();
    };
    QStringList names;
    for (int step = 0; step < 120 && names.count(u"New Playlist..."_s) < 2; ++step) {
        ui->key(Qt::Key_Tab);
        EXPECT_TRUE(world.waitFor([&] { return !focused().isEmpty(); }))
            << "without a name, after " << qPrintable(names.join(u'|'));
        names.append(focused());
    }
    int last = -1;
    const qsizetype first = names.indexOf(u"New Playlist..."_s);
    ASSERT_GE(first, 0) << qPrintable(names.join(u'|'));
    std::rotate(names.begin(), names.begin() + first, names.end());
    for (const QString& name :
         {u"New Playlist..."_s, u"Late evenings, 42"_s, u"Search title, artist, album, format"_s,
          u"Import Music Folder"_s, u"Toggle Now Playing Panel"_s, u"Night Walk"_s, u"Artists"_s,
          u"Play Album"_s, u"Albums"_s, u"Up Next"_s, u"Previous track"_s, u"Next track"_s,
          u"Volume"_s, u"Equalizer"_s, u"Mini Player"_s}) {
        const int at = static_cast<int>(names.indexOf(name, last + 1));
        EXPECT_GT(at, last) << qPrintable(name) << " in " << qPrintable(names.join(u'|'));
        last = std::max(at, last);
    }
}

TEST_F(MainWindowTest, ThePanelHidesAndComesBack) {
    ASSERT_TRUE(ui->click(u"Toggle Now Playing Panel"_s));
    EXPECT_FALSE(library.views()->showNowPlayingPanel());
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Up Next"_s); }));
    ui->key(Qt::Key_N, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(library.views()->showNowPlayingPanel());
}

} // namespace
} // namespace halvane::test
