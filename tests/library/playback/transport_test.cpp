// SPDX-License-Identifier: MIT
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
    EXPECT_EQ(current(), 'a');
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_EQ(playCounts.value(path('a')), 1); // counted when it starts
    EXPECT_EQ(pending(), 'b');
    EXPECT_EQ(notified, QStringList{u"a"_s});

    engine.position = 50;
    clock.advance(250ms);
    EXPECT_EQ(progress.elapsedTime(), u"0:50"_s);
    EXPECT_DOUBLE_EQ(progress.progress(), 0.25);
    play(0); // a click on the current entry pauses it
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_FALSE(progress.isRunning());
    play(0);
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_EQ(engine.position, 50);
    EXPECT_EQ(engine.loads, 1);
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
    EXPECT_EQ(loaded(), 'b');
}

TEST_F(TransportTest, NextNeverPausesTheOnlyEntry) {
    queueOf("a");
    transport.toggleShuffle();
    play(0);
    transport.playNext(true);
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_EQ(playCounts.value(path('a')), 2);
}

TEST_F(TransportTest, UsersFailureStopsAndAutomaticOneSkips) {
    queueOf("abcd");
    engine.broken = {path('b')};
    files.gone = {path('c')};
    play(1);
    EXPECT_EQ(current(), 'b');
    EXPECT_EQ(loaded(), '-');
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_EQ(status.text(), u"Can't play \"b\""_s);
    EXPECT_TRUE(status.isError());
    EXPECT_EQ(files.missing, QSet<QString>{path('b')});

    play(2); // unreadable, so the current entry stays
    EXPECT_EQ(current(), 'b');
    EXPECT_EQ(files.missing, (QSet<QString>{path('b'), path('c')}));

    files.missing.clear();
    play(0);
    endTrack(); // the engine refused b as a successor, so it is tried and skipped, and so is c
    EXPECT_EQ(current(), 'd');
    EXPECT_TRUE(transport.isPlaying());
}

TEST_F(TransportTest, CloudFilesAreFetchedForTheUserAndSkippedOtherwise) {
    queueOf("abc");
    files.evicted = {path('b')};
    play(1);
    EXPECT_EQ(files.downloading, QSet<QString>{path('b')});
    EXPECT_EQ(status.text(), u"Downloading \"b\" from iCloud"_s);
    EXPECT_FALSE(status.isError());
    EXPECT_EQ(current(), '-');

    files.inCloud.clear();
    files.downloading.clear();
    play(0);
    engine.invalidatePreschedule();
    endTrack();
    EXPECT_EQ(current(), 'c');
    EXPECT_EQ(files.inCloud, QSet<QString>{path('b')});
    EXPECT_TRUE(files.downloading.isEmpty());
}

// Nothing plays on a drive that went away. The event loop must get turns while that is found out.
TEST_F(TransportTest, LongRunOfUnreadableFilesEndsAndLetsTheLoopTurn) {
    TrackRows rows;
    for (int i = 0; i < 500; ++i) {
        const QString path = u"/gone/%1"_s.arg(i);
        rows.push_back(makeRow(trackAt(path)));
        files.gone.insert(path);
    }
    rows.push_back(makeRow(trackAt(path('z'))));
    queue.assign(rows, std::nullopt);
    transport.playNext(false);
    EXPECT_LT(files.missing.size(), 100);
    for (int turns = 0; turns < 100 && !transport.isPlaying(); ++turns)
        clock.advance(0ms);
    EXPECT_EQ(current(), 'z');
    EXPECT_EQ(files.missing.size(), 500);
}

TEST_F(TransportTest, CollectionsReplaceTheQueue) {
    Track noFile;
    noFile.title = u"nowhere"_s;
    const TrackRows tracks = rowsOf({noFile, trackAt(path('a')), trackAt(path('b'))});
    transport.playCollection(tracks, path('b'), u"Album"_s);
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
    gains[path('b')] = -6.5;
    gains[path('a')] = -5;
    play(0);
    EXPECT_EQ(engine.trackGain, -5);
    ASSERT_EQ(pending(), 'b'); // 1.5 dB apart
    endTrack();
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_EQ(current(), 'b');
    EXPECT_EQ(engine.loads, 1);
    EXPECT_EQ(engine.trackGain, -6.5);
    EXPECT_EQ(playCounts.value(path('b')), 1);
    EXPECT_EQ(notified, (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(progress.progress(), 0);
    EXPECT_EQ(pending(), '-'); // c has no gain, 6.5 dB away
    gains[path('b')] = -4.5;
    gains[path('c')] = -2;
    transport.replanSuccessor();
    EXPECT_EQ(pending(), '-'); // 2.5 dB
    gains[path('c')] = -2.5;
    transport.replanSuccessor();
    EXPECT_EQ(pending(), 'c'); // 2 dB
    endTrack();
    EXPECT_EQ(current(), 'c');
}

TEST_F(TransportTest, SoundCheckGainIsClamped) {
    queueOf("abc");
    gains = {{path('a'), 40}, {path('b'), -30}};
    play(0);
    EXPECT_EQ(engine.trackGain, 12);
    play(1);
    EXPECT_EQ(engine.trackGain, -18);
    play(2);
    EXPECT_EQ(engine.trackGain, 0);
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
    transport.pauseRequested(true); // nothing plays
    transport.pauseRequested(false);
    EXPECT_FALSE(transport.isPlaying());
    play(0);
    transport.pauseRequested(true);
    EXPECT_FALSE(engine.playing);
    transport.pauseRequested(false);
    EXPECT_TRUE(engine.playing);
    transport.pauseRequested(true);
    transport.togglePlayback(); // the user plays nevertheless
    transport.togglePlayback();
    transport.pauseRequested(false);
    EXPECT_FALSE(engine.playing);
    transport.togglePlayback();
    transport.pauseRequested(true);
    transport.stopPlayer(true);
    transport.pauseRequested(false);
    EXPECT_FALSE(engine.playing);
}

TEST_F(TransportTest, InterruptionKeepsTheQueueAndSaysWhy) {
    queueOf("ab");
    play(0);
    engine.playing = false;
    transport.interrupted(u"the server went away"_s);
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
