// SPDX-License-Identifier: MIT
// The real main window, worked with mouse and keyboard.
#include "views/window_driver.h"

#include <QDir>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class MainWindowTest : public testing::Test {
  protected:
    void SetUp() override {
        world.furnish();
        QQuickWindow* window = world.open(u"main"_s);
        ASSERT_NE(window, nullptr);
        ui = std::make_unique<WindowDriver>(*window);
    }
    void TearDown() override { EXPECT_EQ(world.warnings(), QStringList()); }
    QString textAt(QAbstractListModel* list, int row, const char* role) {
        return list->index(row, 0).data(list->roleNames().key(role)).toString();
    }
    int currentQueueRow() {
        QAbstractListModel* queue = library.queue();
        for (int row = 0; row < queue->rowCount(); ++row)
            if (queue->index(row, 0).data(queue->roleNames().key("isCurrent")).toBool())
                return row;
        return -1;
    }

    GalleryWorld world{12};
    LibraryViewModel& library = world.library();
    std::unique_ptr<WindowDriver> ui;
};

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

TEST_F(MainWindowTest, TheTrackTableIsWorkedByKeyboard) {
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

TEST_F(MainWindowTest, TheMenuKeyOpensATracksMenu) {
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

TEST_F(MainWindowTest, AClickOnAColumnSortsTheTracks) {
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

TEST_F(MainWindowTest, DiscsAndAlbumsOfOthersHaveHeadings) {
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

TEST_F(MainWindowTest, QueueRowsMoveByDraggingAndByKeyboard) {
    QAbstractListModel* queue = library.queue();
    ASSERT_GE(queue->rowCount(), 6);
    auto* list = ui->find(u"Up Next"_s, QAccessible::List);
    ASSERT_NE(list, nullptr);
    const QRect area = list->rect();
    const auto row = [&](int number) {
        return ui->window().mapFromGlobal(area.topLeft()) + QPoint(120, 44 * number + 22);
    };
    const QString dragged = textAt(queue, 1, "title");
    ui->drag(row(1), row(4));
    EXPECT_EQ(textAt(queue, 4, "title"), dragged);
    EXPECT_EQ(currentQueueRow(), 0);
    const auto ringed = [&] {
        QString name;
        forEachAccessible(ui->find(u"Up Next"_s, QAccessible::List), [&](auto& thing) {
            if (thing.role() == QAccessible::ListItem && thing.state().focused)
                name = thing.text(QAccessible::Name);
        });
        return name;
    };
    EXPECT_TRUE(world.waitFor([&] { return ringed().startsWith(dragged); }))
        << qPrintable(ringed());
    // The press has put the cursor on the dragged entry.
    ui->key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(textAt(queue, 3, "title"), dragged);
    ui->key(Qt::Key_Return);
    EXPECT_EQ(library.player()->currentTrack().title, dragged);
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

TEST_F(MainWindowTest, EveryTracksMenuShowsItsFileInTheFileManager) {
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

TEST_F(MainWindowTest, FilesDraggedOverTheWindowShowTheOverlay) {
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(world.pathOf(0)), QUrl::fromLocalFile(u"/music"_s)});
    QQuickWindow* window = &ui->window();
    const auto enter = [&] {
        QDragEnterEvent event({400, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window, &event);
        QDragMoveEvent move({420, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window, &move);
        EXPECT_TRUE(move.isAccepted());
    };
    enter();
    EXPECT_TRUE(ui->waitsFor(u"Drop to add to the queue"_s));
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(window, &leave);
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Drop to add to the queue"_s); }));
    enter();
    QDropEvent drop({420, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window, &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Drop to add to the queue"_s); }));
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

TEST_F(MainWindowTest, TheCursorMovesByPagesAndOutlivesASearch) {
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

TEST_F(MainWindowTest, TheQueueScrollsUnderADragHeldAtItsEdge) {
    QAbstractListModel* queue = library.queue();
    library.collections()->playArtist(u"林间乐队"_s);
    ASSERT_GT(queue->rowCount(), 20);
    auto* list = ui->find(u"Up Next"_s, QAccessible::List);
    ASSERT_NE(list, nullptr);
    const QPoint corner = ui->window().mapFromGlobal(list->rect().topLeft());
    const QString dragged = textAt(queue, 1, "title");
    const QString id = textAt(queue, 1, "entryId");
    ui->hold(corner + QPoint(120, 66), corner + QPoint(120, list->rect().height() - 4));
    EXPECT_TRUE(
        world.waitFor([&] { return textAt(queue, queue->rowCount() - 1, "entryId") == id; }));
    ui->release(corner + QPoint(120, list->rect().height() - 4));
}

TEST_F(MainWindowTest, HundredsOfFilesAndFoldersAreDroppedAtOnce) {
    QTemporaryDir folder;
    QList<QUrl> urls;
    for (int number = 0; number < 400; ++number) {
        const QString path = folder.filePath(u"%1 %2.wav"_s.arg(number).arg(u"é 歌 🌙 #%20"_s));
        ASSERT_TRUE(QFile::copy(world.pathOf(1), path));
        urls.append(QUrl::fromLocalFile(path));
    }
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"more"_s));
    ASSERT_TRUE(QFile::copy(world.pathOf(1), folder.filePath(u"more/in a folder.wav"_s)));
    urls.append(QUrl::fromLocalFile(folder.filePath(u"more"_s)));
    QMimeData files;
    files.setUrls(urls);
    const int before = library.trackCount();
    QDragEnterEvent enter({400, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&ui->window(), &enter);
    QDropEvent drop({400, 300}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&ui->window(), &drop);
    EXPECT_TRUE(world.waitFor([&] { return library.trackCount() == before + 401; }, 60000));
}

// Counts the frames and the timers of a window's own event loop.
class Activity : public QObject {
  public:
    explicit Activity(QQuickWindow& window) {
        QObject::connect(&window, &QQuickWindow::frameSwapped, this, [this] { ++m_events; });
        qApp->installEventFilter(this);
    }
    // Waits for half a second in which nothing happens.
    bool ceases() {
        QElapsedTimer quiet;
        quiet.start();
        return GalleryWorld::waitFor(
            [&] {
                if (std::exchange(m_events, 0) > 0)
                    quiet.start();
                return quiet.elapsed() > 500;
            },
            20000);
    }
    bool eventFilter(QObject* object, QEvent* event) override {
        m_events += event->type() == QEvent::Timer && object->objectName() != u"waitFor"_s;
        return false;
    }

  private:
    int m_events = 0;
};

TEST_F(MainWindowTest, NothingIsDrawnAndNoTimerRunsWhileNothingPlays) {
    library.transport()->togglePlayback();
    ASSERT_FALSE(library.transport()->isPlaying());
    Activity activity(ui->window());
    EXPECT_TRUE(activity.ceases());
}

TEST_F(MainWindowTest, AHiddenWindowDrawsNothingWhileMusicPlays) {
    ui->window().hide();
    int frames = 0;
    QObject::connect(&ui->window(), &QQuickWindow::afterAnimating, [&] { ++frames; });
    const double heard = library.engine()->elapsedSeconds();
    const double shown = library.progressClock()->elapsedSeconds();
    ASSERT_TRUE(
        world.waitFor([&] { return library.engine()->elapsedSeconds() > heard + 0.5; }, 20000));
    EXPECT_EQ(frames, 0);
    EXPECT_LT(library.progressClock()->elapsedSeconds(), heard + 0.5) << "nor does it look";
    ui->window().show();
    EXPECT_TRUE(
        world.waitFor([&] { return library.progressClock()->elapsedSeconds() > shown + 0.5; }));
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
