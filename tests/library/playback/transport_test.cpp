// SPDX-License-Identifier: MIT
#include "library/playback/sleep_timer.h"
#include "library/playback/transport.h"
#include "library/playback/transport_fixture.h"
#include "library/playback/transport_texts.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct TransportTest : testing::Test, TransportFixture {};

} // namespace

TEST_F(TransportTest, StartsPausesAndResumesWhereItWas) {
    queueOf("abc");
    transport.togglePlayback();
    settle();
    EXPECT_EQ(current(), 'a');
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_EQ(playCounts.value(path('a')), 1); // counted when it starts
    EXPECT_EQ(pending(), 'b');
    EXPECT_EQ(notified, QStringList{u"a"_s});

    engine.position = 50;
    clock.advance(250ms);
    EXPECT_EQ(progress.elapsedTime(), u"0:50"_s);
    EXPECT_DOUBLE_EQ(progress.progress(), 0.25);
    progress.endWatching(); // nobody sees it, and it costs nothing
    engine.position = 60;
    clock.advance(1s);
    EXPECT_EQ(progress.elapsedTime(), u"0:50"_s);
    progress.beginWatching();
    EXPECT_EQ(progress.elapsedTime(), u"1:00"_s);
    engine.position = 50;
    play(0); // a click on the current entry pauses it
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_FALSE(progress.isRunning());
    play(0);
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_EQ(engine.position, 50);
    EXPECT_EQ(engine.opens, 1);
    EXPECT_EQ(playCounts.value(path('a')), 1);
}

TEST_F(TransportTest, EndsWithTheLastEntryStillShown) {
    queueOf("ab");
    play(1);
    endTrack();
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_EQ(current(), 'b');
    EXPECT_EQ(loaded(), '-');
    EXPECT_EQ(progress.progress(), 1);
    EXPECT_EQ(progress.elapsedTime(), u"3:20"_s);
    transport.togglePlayback(); // starts over
    settle();
    EXPECT_EQ(loaded(), 'b');
}

TEST_F(TransportTest, NextNeverPausesTheOnlyEntry) {
    queueOf("a");
    transport.toggleShuffle();
    play(0);
    next();
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_EQ(playCounts.value(path('a')), 2);
}

TEST_F(TransportTest, AfterACycleHasEndedPlayBeginsAnother) {
    queueOf("abc");
    transport.toggleShuffle();
    transport.togglePlayback();
    settle();
    for (int i = 0; i < 3; ++i)
        endTrack();
    EXPECT_FALSE(transport.isPlaying());
    transport.togglePlayback();
    settle();
    endTrack();
    EXPECT_TRUE(transport.isPlaying());
}

TEST_F(TransportTest, CollectionsReplaceTheQueue) {
    Track noFile;
    noFile.title = u"nowhere"_s;
    const TrackRows tracks = rowsOf({noFile, trackAt(path('a')), trackAt(path('b'))});
    transport.playCollection(tracks, path('b'), u"Album"_s);
    settle();
    EXPECT_EQ(queue.size(), 2U);
    EXPECT_EQ(current(), 'b');
    EXPECT_EQ(queue.sourceLabel(), u"Album"_s);

    transport.playCollection(rowsOf({noFile}), {}, u"Nothing"_s);
    EXPECT_EQ(status.text(), u"No playable tracks in the library yet"_s);
    EXPECT_EQ(queue.sourceLabel(), u"Album"_s);
    EXPECT_EQ(current(), 'b');
}

TEST_F(TransportTest, HandsOverWithoutAGap) {
    queueOf("abc");
    setGains({{'a', -5}, {'b', -6.5}});
    play(0);
    EXPECT_EQ(engine.trackGain, -5);
    ASSERT_EQ(pending(), 'b'); // 1.5 dB apart
    endTrack();
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_EQ(current(), 'b');
    EXPECT_EQ(engine.opens, 1);
    EXPECT_EQ(engine.trackGain, -6.5);
    EXPECT_EQ(playCounts.value(path('b')), 1);
    EXPECT_EQ(notified, (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(progress.progress(), 0);
    EXPECT_EQ(pending(), '-'); // c has no gain, 6.5 dB away
    setGains({{'b', -4.5}, {'c', -2}});
    EXPECT_EQ(pending(), '-'); // 2.5 dB
    setGains({{'b', -4.5}, {'c', -2.5}});
    EXPECT_EQ(pending(), 'c'); // 2 dB
    endTrack();
    EXPECT_EQ(current(), 'c');
}

TEST_F(TransportTest, StopsOnceAfterTheCurrentEntry) {
    queueOf("abc");
    play(0);
    EXPECT_EQ(pending(), 'b');
    transport.setStopsAfterCurrent(true);
    EXPECT_EQ(status.text(), u"Stops after this track"_s);
    EXPECT_EQ(pending(), '-') << "the engine would play on by itself";
    endTrack();
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_FALSE(transport.stopsAfterCurrent());
    EXPECT_EQ(current(), 'b');
    EXPECT_EQ(loaded(), '-');
    EXPECT_EQ(progress.progress(), 0);
    EXPECT_EQ(playCounts.value(path('b')), 0);
    EXPECT_EQ(notified, QStringList{u"a"_s});

    transport.togglePlayback();
    settle();
    EXPECT_EQ(loaded(), 'b');
    EXPECT_EQ(playCounts.value(path('b')), 1);
    endTrack();
    EXPECT_EQ(current(), 'c');
    EXPECT_TRUE(transport.isPlaying());

    transport.setStopsAfterCurrent(true); // nothing comes after it
    endTrack();
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_FALSE(transport.stopsAfterCurrent());
    EXPECT_EQ(current(), 'c');

    play(0);
    transport.setStopsAfterCurrent(true);
    transport.setStopsAfterCurrent(false);
    EXPECT_EQ(pending(), 'b');
    endTrack();
    EXPECT_EQ(current(), 'b');
    EXPECT_TRUE(transport.isPlaying());
}

TEST_F(TransportTest, ASleepTimerPausesOnce) {
    SleepTimer sleep(transport, clock, status, language);
    queueOf("ab");
    play(0);
    sleep.setMinutes(30);
    EXPECT_EQ(status.text(), u"Playback pauses in 30 minutes"_s);
    clock.advance(20min);
    sleep.setMinutes(30); // counts from here
    clock.advance(20min);
    EXPECT_TRUE(transport.isPlaying());
    clock.advance(10min);
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_EQ(sleep.minutes(), 0);
    transport.togglePlayback();
    clock.advance(60min);
    EXPECT_TRUE(transport.isPlaying());

    QList<int> steps;
    for (int step = 0; step < 7; ++step) {
        sleep.advance();
        steps.append(sleep.minutes());
    }
    EXPECT_EQ(steps, (QList<int>{15, 30, 45, 60, 90, 0, 15}));
    transport.togglePlayback(); // who has paused before is not woken
    clock.advance(15min);
    EXPECT_FALSE(transport.isPlaying());
}

TEST_F(TransportTest, SoundCheckGainIsClamped) {
    queueOf("abc");
    setGains({{'a', 40}, {'b', -30}});
    play(0);
    EXPECT_EQ(engine.trackGain, 12);
    play(1);
    EXPECT_EQ(engine.trackGain, -18);
    play(2);
    EXPECT_EQ(engine.trackGain, 0);
}

TEST_F(TransportTest, ByLoudnessAnAlbumKeepsItsDynamicsWhileItsTracksFollowEachOther) {
    const auto track = [](char letter, const QString& album, LevelTags levels) {
        Track made = trackAt(path(letter));
        made.album = album;
        made.levelTags = levels;
        return made;
    };
    const TrackRows rows =
        rowsOf({track('a', u"One"_s, {-9, -20, -5, -20}), track('b', u"One"_s, {4, -20, -5, -20}),
                track('c', u"Two"_s, {-2, -20, -1, -20}), track('d', u"One"_s, {2, -20, -5, -20}),
                track('e', u"No Album"_s, {3, -20, 1, -20})});
    store.append(rows);
    queue.assign(rows, std::nullopt);
    setGains({{'a', 0}, {'b', 8}});
    play(0);
    EXPECT_EQ(engine.trackGain, 0);
    EXPECT_EQ(pending(), '-') << "by Sound Check, and too far apart";

    soundCheck.setLevelBy(LevelBy::track);
    settle();
    EXPECT_EQ(engine.trackGain, -9);
    EXPECT_EQ(pending(), 'b') << "however far apart";
    EXPECT_EQ(engine.pendingGain, 4);

    soundCheck.setLevelBy(LevelBy::album);
    settle();
    EXPECT_EQ(engine.trackGain, -5);
    EXPECT_EQ(engine.pendingGain, -5);
    EXPECT_EQ(engine.invalidations, 0) << "what has been decoded stays, only the gains change";
    endTrack();
    EXPECT_EQ(engine.trackGain, -5);
    EXPECT_EQ(engine.pendingGain, -2) << "the next is alone of its album";
    endTrack();
    EXPECT_EQ(engine.pendingGain, 2) << "and so is this one here";

    soundCheck.setPreamp(3);
    EXPECT_EQ(engine.trackGain, 1);
    EXPECT_EQ(engine.pendingGain, 5);
    play(0);
    EXPECT_EQ(engine.trackGain, -2);
    transport.toggleShuffle();
    play(1);
    EXPECT_EQ(engine.trackGain, 7) << "shuffled, what comes next is not known";
    soundCheck.setSoundCheckEnabled(false);
    EXPECT_EQ(engine.trackGain, 0);
}

TEST_F(TransportTest, TheSoundCheckSwitchPlansTheNextFileAgain) {
    queueOf("ab");
    setGains({{'a', 1}, {'b', 9}});
    soundCheck.setSoundCheckEnabled(false);
    play(0);
    EXPECT_EQ(pending(), 'b') << "both sound as they are";
    soundCheck.setSoundCheckEnabled(true);
    settle();
    EXPECT_EQ(engine.trackGain, 1);
    EXPECT_EQ(pending(), '-') << "a jump of 8 dB in the middle of the sound";
    soundCheck.setSoundCheckEnabled(false);
    settle();
    EXPECT_EQ(engine.trackGain, 0);
    EXPECT_EQ(pending(), 'b');

    setGains({{'a', 1}, {'b', 3}});
    EXPECT_EQ(engine.trackGain, 1);
    EXPECT_EQ(engine.pendingGain, 3);
    EXPECT_EQ(engine.invalidations, 1) << "what has been decoded stays, only the gains change";
}

TEST_F(TransportTest, ScrubbingShowsAndSeekingMoves) {
    queueOf("ab");
    play(0);
    std::vector<double> jumps;
    QObject::connect(&transport, &Transport::positionJumped,
                     [&](double seconds) { jumps.push_back(seconds); });
    transport.scrub(0.5);
    EXPECT_EQ(progress.elapsedTime(), u"1:40"_s);
    EXPECT_EQ(engine.position, 0);
    engine.position = 7;
    clock.advance(1s); // the clock does not fight the slider
    EXPECT_DOUBLE_EQ(progress.progress(), 0.5);

    transport.seek(0.25);
    EXPECT_EQ(engine.position, 50);
    EXPECT_TRUE(engine.playing);
    EXPECT_EQ(progress.elapsedTime(), u"0:50"_s);
    EXPECT_EQ(pending(), 'b'); // planned again
    EXPECT_EQ(jumps, std::vector<double>{50});
    clock.advance(250ms);
    EXPECT_DOUBLE_EQ(progress.progress(), 0.25);

    transport.togglePlayback();
    transport.seek(2); // beyond the end, and paused
    EXPECT_EQ(engine.position, 200);
    EXPECT_FALSE(engine.playing);
    transport.seek(std::nan(""));
    EXPECT_EQ(engine.position, 0);

    engine.scheduleFailure = u"device gone"_s;
    transport.seek(0.5);
    EXPECT_EQ(status.text(), u"Can't play \"a\""_s);
    EXPECT_EQ(loaded(), '-');
}

TEST_F(TransportTest, VolumeIsClamped) {
    transport.setVolume(1.7);
    EXPECT_EQ(engine.volume, 1);
    transport.stepVolume(-0.25);
    EXPECT_EQ(engine.volume, 0.75);
    transport.stepVolume(-3);
    EXPECT_EQ(engine.volume, 0);
    transport.setVolume(std::nan(""));
    EXPECT_EQ(transport.volume(), 0);
}

TEST_F(TransportTest, PausesForACallAndGoesOnUnlessTheUserDid) {
    queueOf("ab");
    Q_EMIT engine.pauseRequested(true); // nothing plays
    Q_EMIT engine.pauseRequested(false);
    EXPECT_FALSE(transport.isPlaying());
    play(0);
    Q_EMIT engine.pauseRequested(true);
    EXPECT_FALSE(engine.playing);
    Q_EMIT engine.pauseRequested(false);
    EXPECT_TRUE(engine.playing);
    Q_EMIT engine.pauseRequested(true);
    transport.togglePlayback(); // the user plays nevertheless
    transport.togglePlayback();
    Q_EMIT engine.pauseRequested(false);
    EXPECT_FALSE(engine.playing);
    transport.togglePlayback();
    Q_EMIT engine.pauseRequested(true);
    transport.stopPlayer(true);
    Q_EMIT engine.pauseRequested(false);
    EXPECT_FALSE(engine.playing);
}

TEST_F(TransportTest, InterruptionKeepsTheQueueAndSaysWhy) {
    queueOf("ab");
    play(0);
    engine.playing = false;
    Q_EMIT engine.playbackInterrupted(u"the server went away"_s);
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_FALSE(progress.isRunning());
    EXPECT_EQ(status.text(), u"Can't play \"a\""_s);
    EXPECT_EQ(current(), 'a');
    EXPECT_TRUE(files.missing.isEmpty()); // the file is not to blame
    engine.resumeFailure = u"still away"_s;
    transport.togglePlayback();
    EXPECT_FALSE(transport.isPlaying());
    engine.resumeFailure.reset();
    transport.togglePlayback();
    EXPECT_TRUE(transport.isPlaying());
}

TEST(TransportTexts, SayWherePlaybackStands) {
    EXPECT_EQ(durationDisplay(u"3:20"_s, 200.4, false, 50), u"3:20"_s);
    EXPECT_EQ(durationDisplay(u"3:20"_s, 200.4, true, 50), u"-2:30"_s);
    EXPECT_EQ(durationDisplay(u"3:20"_s, 200.4, true, 300), u"-0:00"_s);
    EXPECT_EQ(durationDisplay(u"--:--"_s, std::nullopt, true, 50), u"--:--"_s);
    EXPECT_EQ(queuePositionText(2, 12), u"3 / 12"_s);
    EXPECT_EQ(queuePositionText(std::nullopt, 12), QString());
    EXPECT_EQ(queueSourceText(std::nullopt, ResolvedLanguage::english), u"Playing from: Library"_s);
    EXPECT_EQ(queueSourceText(u"Night Walk"_s, ResolvedLanguage::simplifiedChinese).right(10),
              u"Night Walk"_s);
}

TEST(StatusLine, EachMessageStaysFourSecondsOfItsOwn) {
    ManualClock clock;
    StatusLine status(clock);
    status.show(u"first"_s, true);
    clock.advance(3s);
    status.show(u"second"_s, false);
    clock.advance(3900ms);
    EXPECT_EQ(status.text(), u"second"_s);
    EXPECT_FALSE(status.isError());
    clock.advance(100ms);
    EXPECT_TRUE(status.text().isEmpty());
    EXPECT_EQ(clock.pendingTimers(), 0U);
}
