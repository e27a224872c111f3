// SPDX-License-Identifier: MIT
// The whole controller with real files, the real engine and an output that the test pulls.
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "library/playback/play_queue.h"
#include "library/tracks.h"
#include "library/user/settings_keys.h"
#include "support/audio_material.h"
#include "support/child_process.h"
#include "support/fake_environment.h"

#include <QCoreApplication>
#include <QDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <cmath>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(LibraryViewModel, AFreshInstallationIsSilentAndEmpty) {
    FakeEnvironment environment;
    LibraryViewModel library{environment};
    library.start();
    EXPECT_EQ(library.transport()->volume(), 0.72);
    EXPECT_EQ(library.transport()->repeatMode(), PlaybackRepeatMode::off);
    EXPECT_FALSE(library.transport()->isShuffleEnabled());
    EXPECT_FALSE(library.transport()->isPlaying());
    EXPECT_FALSE(library.player()->hasCurrentTrack());
    EXPECT_EQ(library.progressClock()->elapsedTime(), u"0:00"_s);
    EXPECT_EQ(library.player()->durationDisplay(), u"--:--"_s);
    EXPECT_EQ(library.player()->queueSourceText(), u"Playing from: Library"_s);
    EXPECT_EQ(library.trackCount(), 0);
    EXPECT_TRUE(library.views()->showNowPlayingPanel());
    EXPECT_EQ(library.appearance()->themeAccentMode(), SpectrumTintMode::mint);
    EXPECT_EQ(environment.notifications.requests, 1);
    EXPECT_EQ(environment.clock.pendingTimers(), 0U);
    EXPECT_EQ(environment.output.opens, 0);
}

TEST(LibraryViewModel, RestoresWhatMakesSenseAndWritesItBack) {
    FakeEnvironment environment;
    environment.preferences.setNumber(SettingsKey::volume, 1.7);
    environment.preferences.setString(SettingsKey::repeatMode, u"ALL"_s);
    environment.preferences.setBoolean(SettingsKey::shuffleEnabled, true);
    environment.preferences.setBoolean(SettingsKey::showNowPlayingPanel, false);
    environment.preferences.setString(SettingsKey::language, u"simplifiedChinese"_s);
    LibraryViewModel library{environment};
    library.start();
    EXPECT_EQ(library.transport()->volume(), 1);
    EXPECT_EQ(*environment.preferences.number(SettingsKey::volume), 1);
    EXPECT_EQ(library.transport()->repeatMode(), PlaybackRepeatMode::off);
    EXPECT_EQ(*environment.preferences.string(SettingsKey::repeatMode), u"ALL"_s);
    EXPECT_TRUE(library.transport()->isShuffleEnabled());
    EXPECT_FALSE(library.views()->showNowPlayingPanel());
    EXPECT_EQ(library.language()->resolvedLanguage(), ResolvedLanguage::simplifiedChinese);

    library.transport()->advanceRepeatMode();
    library.transport()->stepVolume(-0.5);
    library.transport()->toggleShuffle();
    library.views()->setShowRemainingTime(true);
    library.views()->setTileSize(7);
    library.views()->setArtistOrder(ArtistOrder::readers);
    LibraryViewModel again{environment};
    again.start();
    EXPECT_EQ(again.transport()->repeatMode(), PlaybackRepeatMode::all);
    EXPECT_EQ(again.transport()->volume(), 0.5);
    EXPECT_FALSE(again.transport()->isShuffleEnabled());
    EXPECT_TRUE(again.views()->showRemainingTime());
    EXPECT_EQ(again.views()->tileSize(), ViewState::greatestTileSize);
    EXPECT_EQ(again.views()->artistOrder(), ArtistOrder::readers);
}

namespace {

// Runs the event loop until a condition holds.
void waitUntil(const std::function<bool()>& reached) {
    while (!reached())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

// A library of two tracks of one album and one track with another sample rate.
struct PlayingTest : testing::Test {
    static constexpr int rate = 44'100;
    FakeEnvironment environment;
    QTemporaryDir music;
    LibraryViewModel library{environment};

    void SetUp() override {
        library.start();
        const Pcm whole = test::music(2 * rate, rate);
        writeWave(whole.cut(0, rate), path("1"));
        writeWave(whole.cut(rate, 2 * rate), path("2"));
        writeWave(test::music(48'000, 48'000), path("3"));
        std::vector<Track> tracks;
        for (const char* name : {"1", "2", "3"}) {
            tracks.push_back(trackOf(path(name), QLatin1StringView(name), u"Moss"_s,
                                     *name == '3' ? u"Bark"_s : u"Fern"_s));
            tracks.back().durationSeconds = 1;
        }
        library.store()->append(rowsOf(tracks));
        library.catalog()->rebuildImportedAlbums();
    }
    [[nodiscard]] QString path(const char* name) const {
        return music.filePath(QLatin1StringView(name) + u".wav"_s);
    }
    /// Until the file of the current entry has been opened.
    void untilOpened() {
        ASSERT_TRUE(waitFor([&] { return library.engine()->hasFile(); }));
    }
    [[nodiscard]] QString title() const {
        return library.queue()->currentItem().value_or(QueueItem()).title;
    }
    // Plays until the test's condition holds.
    void playUntil(const std::function<bool()>& reached) {
        for (int i = 0; i < 2000 && !reached(); ++i) {
            environment.output.play(441);
            environment.clock.advance(10ms);
            QCoreApplication::processEvents();
            if (library.transport()->hasLoadedFile())
                untilOpened();
        }
        ASSERT_TRUE(reached());
    }
};

} // namespace

TEST_F(PlayingTest, PlaysAnAlbumThroughWithoutAGapAndStopsAtItsEnd) {
    library.collections()->playAlbum(u"local|moss|fern"_s);
    EXPECT_EQ(title(), u"1"_s);
    EXPECT_TRUE(library.transport()->isPlaying());
    EXPECT_TRUE(environment.sleepInhibitor.inhibited);
    EXPECT_EQ(environment.mediaControls.state, MediaPlaybackState::playing);
    EXPECT_EQ(environment.mediaControls.info->title, u"1"_s);
    untilOpened();
    EXPECT_EQ(environment.mediaControls.state, MediaPlaybackState::playing);
    EXPECT_EQ(library.userData()->playCount(path("1")), 1);
    playUntil([&] { return library.progressClock()->progress() > 0.4; });
    playUntil([&] { return title() == u"2"_s; });
    EXPECT_EQ(environment.output.opens, 1); // in one stream
    playUntil([&] { return !library.transport()->isPlaying(); });
    EXPECT_EQ(title(), u"2"_s);
    EXPECT_EQ(library.progressClock()->progress(), 1);
    EXPECT_EQ(environment.mediaControls.state, MediaPlaybackState::stopped);
    EXPECT_FALSE(environment.sleepInhibitor.inhibited);
    EXPECT_EQ(environment.clock.pendingTimers(), 0U); // a silent player costs nothing
}

TEST_F(PlayingTest, PlaysANumberedAlbumInItsOrder) {
    TrackRows rows;
    for (const char* name : {"1", "2"}) {
        const Track& track = *library.store()->track(path(name));
        rows.push_back(makeRow(numbered(track, u"Various Artists"_s, name[0] == '1' ? 2 : 1, 1)));
    }
    library.store()->replace(rows);
    library.catalog()->rebuildImportedAlbums();
    library.collections()->playAlbum(u"local|various artists|fern"_s);
    EXPECT_EQ(title(), u"2"_s);
    EXPECT_EQ(environment.mediaControls.info->albumArtist, u"Various Artists"_s);
    EXPECT_EQ(environment.mediaControls.info->trackNumber, 1);
    EXPECT_EQ(library.browsing()->artworkAlbum(library.queue()->currentItem())->discCount, 2);
    playUntil([&] { return title() == u"1"_s; });
    EXPECT_EQ(environment.mediaControls.info->discNumber, 2);
    playUntil([&] { return !library.transport()->isPlaying(); });
}

TEST_F(PlayingTest, PausesSeeksAndGoesOnToAnotherRate) {
    library.collections()->playArtist(u"Moss"_s);
    playUntil([&] { return library.engine()->elapsedSeconds() > 0.2; });
    library.transport()->togglePlayback();
    const double paused = library.engine()->elapsedSeconds();
    EXPECT_EQ(environment.clock.pendingTimers(), 0U);
    library.transport()->seek(0.75);
    EXPECT_NEAR(library.engine()->elapsedSeconds(), 0.75, 1e-4);
    EXPECT_NE(paused, library.engine()->elapsedSeconds());
    EXPECT_EQ(environment.mediaControls.jumps, std::vector<double>{0.75});
    library.transport()->togglePlayback();
    playUntil([&] { return title() == u"2"_s; });
    library.transport()->playNext(true);
    EXPECT_EQ(title(), u"3"_s);
    untilOpened();
    EXPECT_EQ(library.engine()->fileSampleRate(), 48'000);
    playUntil([&] { return library.engine()->elapsedSeconds() > 0.1; });
    environment.mediaControls.handlers.previousTrack();
    EXPECT_EQ(title(), u"2"_s);
}

// The first frames of these files say nothing of how long the rest is, and there is no header.
TEST_F(PlayingTest, PlayingCorrectsALengthThatCouldOnlyBeGuessed) {
    constexpr double seconds = 6;
    Pcm sound = sine(441, 0.0001, rate);
    const Pcm loud = test::music(5 * rate, rate);
    sound.samples.insert(sound.samples.end(), loud.samples.begin(), loud.samples.end());
    const QString mp3 = encoded(sound, u"mp3"_s, u"lame --quiet -t -V4 \"$IN\" \"$OUT\""_s);
    const QString first = music.filePath(u"4.mp3"_s);
    const QString second = music.filePath(u"5.mp3"_s);
    QFile::copy(mp3, first);
    QFile::copy(mp3, second);
    const auto recorded = [&](const QString& path) {
        return library.store()->track(path)->durationSeconds.value_or(0);
    };
    library.importing()->importDroppedURLs(
        {QUrl::fromLocalFile(first), QUrl::fromLocalFile(second)});
    const auto isCounted = [&](const QString& path) {
        return library.store()->track(path) && std::abs(recorded(path) - seconds) < 0.1;
    };
    ASSERT_TRUE(waitFor([&] { return isCounted(first) && isCounted(second); }));
    // Who plays them at once is ahead of the counting.
    library.transport()->stopPlayer(false);
    TrackRows guesses;
    for (const QString& path : {first, second}) {
        Track track = *library.store()->track(path);
        track.title = u"Guessed"_s;
        track.duration = u"0:30"_s;
        track.durationSeconds = 30;
        guesses.push_back(makeRow(std::move(track)));
    }
    library.store()->replace(guesses);
    library.catalog()->rebuildImportedAlbums();
    const TrackPtr guessed = library.store()->track(second);
    library.userData()->toggleLoved(second);
    library.transport()->playCollection(guesses, first, u"Guesses"_s);
    untilOpened();
    EXPECT_NEAR(recorded(first), seconds, 0.1);
    EXPECT_NEAR(*environment.mediaControls.info->durationSeconds, seconds, 0.1);
    EXPECT_EQ(library.player()->durationDisplay(), u"0:06"_s);
    EXPECT_EQ(library.store()->track(second), guessed) << "not played yet";

    ASSERT_EQ(environment.mediaControls.handlers.changePlaybackPosition(seconds - 0.5),
              CommandResult::success);
    EXPECT_NEAR(library.engine()->elapsedSeconds(), seconds - 0.5, 0.01);
    const int opens = environment.output.opens;
    playUntil([&] { return library.queue()->currentRow() == 1; });
    EXPECT_EQ(environment.output.opens, opens) << "without a gap";
    EXPECT_NEAR(recorded(second), seconds, 0.1);
    EXPECT_NEAR(*environment.mediaControls.info->durationSeconds, seconds, 0.1);
    Track expected = *guessed;
    expected.duration = u"0:06"_s;
    expected.durationSeconds = recorded(second);
    EXPECT_EQ(*library.store()->track(second), expected) << "all else stays";
    EXPECT_EQ(library.queue()->record(*library.queue()->currentRow()), expected);
    EXPECT_EQ(library.catalog()->published()->rows->back()->duration, u"0:06"_s);

    // The counting's own record, which may still be there, has another title.
    ASSERT_TRUE(waitFor([&] {
        const MetadataIndex index = library.cache()->loadIndex();
        const CachedTrackMetadata* record = index.find(second);
        return record && record->title == u"Guessed"_s && record->duration == u"0:06"_s;
    }));
    library.transport()->stopPlayer(true);
    LibraryViewModel again{environment};
    again.start();
    ASSERT_TRUE(waitFor([&] { return again.store()->track(second) != nullptr; }));
    EXPECT_NEAR(again.store()->track(second)->durationSeconds.value_or(0), seconds, 0.1);
    EXPECT_TRUE(again.userData()->isLoved(second));
}

TEST_F(PlayingTest, ALengthThatIsNearlyRightIsLeftAlone) {
    Track almost = *library.store()->track(path("1"));
    almost.durationSeconds = 1.08;
    library.store()->replace({makeRow(almost)});
    const TrackPtr known = library.store()->track(path("1"));
    library.collections()->playAlbum(u"local|moss|fern"_s);
    untilOpened();
    EXPECT_EQ(library.store()->track(path("1")), known);
    // A record that is read while the file plays may bring the guess back.
    almost.durationSeconds = 200;
    const TrackRows read{makeRow(almost)};
    library.store()->replace(read);
    PlayQueue::Places places;
    library.queue()->replace(read, places);
    EXPECT_EQ(library.store()->track(path("1"))->durationSeconds, 1.0);
    EXPECT_EQ(library.player()->durationDisplay(), u"0:01"_s);
}

TEST_F(PlayingTest, WhatIsPlayedIsSelectedAndShown) {
    library.collections()->playTrack(library.store()->track(path("3"))->id);
    EXPECT_EQ(library.queue()->size(), 1U);
    EXPECT_EQ(library.browsing()->selectedAlbumID(), u"local|moss|bark"_s);
    library.collections()->playTrack(library.store()->track(path("1"))->id);
    EXPECT_EQ(library.queue()->size(), 2U); // appended
    library.collections()->playTrack(library.store()->track(path("3"))->id);
    EXPECT_EQ(library.queue()->size(), 2U); // found
    EXPECT_EQ(title(), u"3"_s);
    library.userData()->toggleLoved(path("3"));
    EXPECT_TRUE(library.queue()->index(0).data(TrackRole::isLoved).toBool());
    EXPECT_EQ(library.sidebar()->sidebarBadge(SidebarItem::loved), u"1"_s);

    // A playlist whose first track is missing starts at the next one, with the whole list queued.
    const QUuid id = library.playlists()->createPlaylist(u"Mix"_s);
    library.playlists()->addTrackPaths({path("2"), u"/gone"_s, path("1")}, id);
    library.availability()->markMissing(path("2"));
    library.collections()->playPlaylist(id);
    EXPECT_EQ(title(), u"1"_s);
    EXPECT_EQ(library.queue()->size(), 2U);
    EXPECT_EQ(library.queue()->sourceLabel(), u"Mix"_s);

    library.availability()->markMissing(path("1"));
    library.collections()->playAlbum(u"local|moss|fern"_s);
    EXPECT_EQ(library.status()->text(), u"No playable tracks in the library yet"_s);
    EXPECT_EQ(library.queue()->sourceLabel(), u"Mix"_s);
}

TEST_F(PlayingTest, ASortedTableIsPlayedInItsOrder) {
    const auto play = [&](const char* name) {
        library.collections()->playInTable(library.store()->track(path(name))->id);
    };
    const auto queue = [&] {
        QString titles;
        for (std::size_t row = 0; row < library.queue()->size(); ++row)
            titles += library.queue()->record(row).title;
        return titles;
    };
    library.browsing()->selectBrowseMode(LibraryMode::songs);
    play("2");
    EXPECT_EQ(queue(), u"2"_s) << "unsorted, the queue stays as it is";
    library.tableOrder()->choose(TrackOrder::title);
    library.tableOrder()->choose(TrackOrder::title);
    play("3");
    EXPECT_EQ(queue(), u"321"_s);
    EXPECT_EQ(title(), u"3"_s);
    EXPECT_EQ(library.queue()->sourceLabel(), u"Tracks"_s);
    const QUuid first = library.queue()->idAt(0);
    library.transport()->playNext(true);
    EXPECT_EQ(title(), u"2"_s);
    play("3");
    EXPECT_EQ(library.queue()->idAt(0), first) << "the same queue";
    play("3");
    EXPECT_FALSE(library.transport()->isPlaying()) << "the one that plays is paused";
    library.tableOrder()->choose(TrackOrder::artist);
    library.availability()->markMissing(path("1"));
    play("1");
    EXPECT_EQ(queue(), u"321"_s) << "what can't be played takes no queue away";
    library.browsing()->selectBrowseMode(LibraryMode::albums);
    play("2");
    EXPECT_EQ(library.queue()->idAt(0), first);
}

TEST_F(PlayingTest, AnAlbumIsShuffledFromAnyOfItsPlayableTracks) {
    library.availability()->markMissing(path("1"));
    for (int round = 0; round < 20; ++round) {
        library.collections()->shuffleAlbum(u"local|moss|fern"_s);
        EXPECT_EQ(title(), u"2"_s) << "the other one is missing";
    }
    EXPECT_TRUE(library.transport()->isShuffleEnabled());
    EXPECT_EQ(library.queue()->size(), 2U);
    EXPECT_EQ(library.queue()->sourceLabel(), u"Fern"_s);
    library.transport()->stopPlayer(false);
    library.availability()->markMissing(path("2"));
    library.collections()->shuffleAlbum(u"local|moss|fern"_s);
    EXPECT_FALSE(library.transport()->isPlaying());
    EXPECT_EQ(library.status()->text(), u"No playable tracks in the library yet"_s);
}

TEST_F(PlayingTest, PlayingTheAlbumThatPlaysOnlyResumes) {
    library.collections()->playAlbum(u"local|moss|fern"_s);
    const QUuid entry = library.queue()->idAt(0);
    library.collections()->playAlbum(u"local|moss|fern"_s);
    EXPECT_TRUE(library.transport()->isPlaying());
    library.transport()->togglePlayback();
    library.collections()->playAlbum(u"local|moss|fern"_s);
    EXPECT_TRUE(library.transport()->isPlaying());
    EXPECT_EQ(library.queue()->idAt(0), entry); // the queue is the same one
}

TEST_F(PlayingTest, AFileThatIsNoSoundIsSaidAndSkipped) {
    QFile broken(path("1"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("no sound at all");
    broken.close();
    library.collections()->playTrack(library.store()->track(path("1"))->id);
    waitUntil([&] { return !library.transport()->isPlaying(); });
    EXPECT_EQ(library.status()->text(), u"Can't play \"1\""_s);
    EXPECT_EQ(library.availability()->state(path("1")), TrackAvailability::missing);
    library.availability()->markAvailable(path("1"));
    library.transport()->stopPlayer(false);
    library.collections()->playAlbum(u"local|moss|fern"_s);
    untilOpened();
    EXPECT_EQ(title(), u"2"_s);
    EXPECT_TRUE(library.transport()->isPlaying());
}

TEST_F(PlayingTest, ALostServerIsSaidAndPlaybackGoesOnWhenItIsBack) {
    library.collections()->playAlbum(u"local|moss|fern"_s);
    playUntil([&] { return library.engine()->elapsedSeconds() > 0.3; });
    environment.output.vanish();
    QCoreApplication::processEvents();
    environment.output.comeBack();
    QCoreApplication::processEvents();
    if (!library.transport()->isPlaying())
        library.transport()->togglePlayback();
    playUntil([&] { return title() == u"2"_s; });
}

namespace {

QStringList titlesIn(QAbstractListModel& list, int role) {
    QStringList titles;
    for (int row = 0; row < list.rowCount(); ++row)
        titles.append(list.index(row, 0).data(role).toString());
    return titles;
}

} // namespace

TEST(LibraryViewModel, ImportsAFolderPlaysItAndFindsItAgainAtTheNextStart) {
    FakeEnvironment environment;
    QTemporaryDir music;
    QDir(music.path()).mkpath(u"Moss/Fern"_s);
    const QString folder = music.filePath(u"Moss/Fern"_s);
    double pitch = 220;
    for (const char* name : {"First", "Second", "Third"})
        writeWave(test::sine(pitch += 110, 0.2, 4'410),
                  folder + u'/' + QLatin1StringView(name) + u".wav"_s);
    {
        LibraryViewModel library{environment};
        library.start();
        library.importing()->importDroppedURLs({QUrl::fromLocalFile(music.path())});
        waitUntil([&] { return library.status()->text() == u"Added 3 to playlist"_s; });
        waitUntil([&] { return library.trackCount() == 3; });
        EXPECT_TRUE(library.transport()->isPlaying()); // the first imported track
        EXPECT_EQ(library.player()->queuePositionText(), u"1 / 3"_s);
        EXPECT_EQ(library.player()->currentTrack().title, u"First"_s);
        EXPECT_EQ(library.player()->currentArtworkAlbum().title, u"Fern"_s);
        EXPECT_FALSE(library.status()->isError());
        library.userData()->toggleLoved(folder + u"/Second.wav"_s);
        library.transport()->playNext(true);
        EXPECT_TRUE(library.player()->isCurrentTrackLoved());
        // No save begins before the library is restored.
        const QString index = environment.folder.filePath(u"data/library-cache.json"_s);
        waitUntil([&] { return QFile::exists(index); });
    }
    QFile::remove(folder + u"/Third.wav"_s);
    LibraryViewModel library{environment};
    library.start();
    waitUntil([&] { return library.trackCount() == 3; });
    EXPECT_FALSE(library.transport()->isPlaying());
    EXPECT_FALSE(library.player()->hasCurrentTrack());
    EXPECT_EQ(library.queue()->rowCount(), 3);
    waitUntil([&] { return library.tidyingLists()->missingTracks()->rowCount() == 1; });
    EXPECT_EQ(library.tidying()->maintenanceActionCount(), 1);
    // Two of the three files are left. Each has a header of 44 bytes and 4,410 stereo frames of 16
    // bits.
    waitUntil([&] { return library.librarySummary() == u"3 tracks - 1 albums - 35 KB indexed"_s; });
    library.tidying()->removeTracks(QStringList{folder + u"/Third.wav"_s});
    EXPECT_EQ(library.trackCount(), 2);
    EXPECT_EQ(library.queue()->rowCount(), 2);
    EXPECT_EQ(titlesIn(*library.browsing()->visibleTracks(), Qt::DisplayRole),
              (QStringList{u"First"_s, u"Second"_s}));
    library.browsing()->selectSidebarItem(SidebarItem::loved);
    EXPECT_EQ(titlesIn(*library.browsing()->visibleTracks(), Qt::DisplayRole),
              QStringList{u"Second"_s});
    waitUntil([&] { return library.tidying()->maintenanceActionCount() == 0; });
}
