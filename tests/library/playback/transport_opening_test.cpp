// SPDX-License-Identifier: MIT
#include "library/playback/transport.h"
#include "library/playback/transport_fixture.h"

#include <gtest/gtest.h>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct TransportOpeningTest : testing::Test, TransportFixture {};

} // namespace

TEST_F(TransportOpeningTest, UsersFailureStopsAndAutomaticOneSkips) {
    queueOf("abcd");
    engine.broken = {path('b'), path('c')};
    play(1);
    EXPECT_EQ(current(), 'b');
    EXPECT_EQ(loaded(), '-');
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_EQ(status.text(), u"Can't play \"b\""_s);
    EXPECT_TRUE(status.isError());
    EXPECT_EQ(files.missing, QSet<QString>{path('b')});

    play(0);
    files.missing.clear();
    endTrack(); // the engine refused b as a successor, so it is tried and skipped, and so is c
    EXPECT_EQ(current(), 'd');
    EXPECT_TRUE(transport.isPlaying());
}

TEST_F(TransportOpeningTest, CloudFilesAreFetchedForTheUserAndSkippedOtherwise) {
    queueOf("abc");
    engine.evicted = {path('b')};
    play(1);
    EXPECT_EQ(files.downloading, QSet<QString>{path('b')});
    EXPECT_EQ(status.text(), u"Downloading \"b\" from iCloud"_s);
    EXPECT_FALSE(status.isError());
    EXPECT_FALSE(transport.isPlaying());

    files.downloading.clear();
    play(0);
    play(1); // known to be in the cloud: what plays goes on
    EXPECT_EQ(files.downloading, QSet<QString>{path('b')});
    EXPECT_EQ(current(), 'a');
    EXPECT_TRUE(transport.isPlaying());
    files.inCloud.clear();
    files.downloading.clear();
    transport.replanSuccessor();
    endTrack();
    EXPECT_EQ(current(), 'c');
    EXPECT_EQ(files.inCloud, QSet<QString>{path('b')});
    EXPECT_TRUE(files.downloading.isEmpty());
}

// Nothing plays on a drive that went away. The event loop must get turns while that is found out.
TEST_F(TransportOpeningTest, LongRunOfBrokenFilesEndsAndLetsTheLoopTurn) {
    TrackRows rows;
    for (int i = 0; i < 500; ++i) {
        const QString path = u"/gone/%1"_s.arg(i);
        rows.push_back(makeRow(trackAt(path)));
        engine.broken.insert(path);
    }
    rows.push_back(makeRow(trackAt(path('z'))));
    queue.assign(rows, std::nullopt);
    transport.playNext(false);
    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(files.missing.size(), i) << "one at a time";
        engine.answer();
    }
    settle();
    EXPECT_EQ(current(), 'z');
    EXPECT_EQ(files.missing.size(), 500);
}

// The disk has not answered: what is asked for shows at once, and the answer decides.
TEST_F(TransportOpeningTest, AnEntryIsCurrentAndPlaysWhileItsFileIsBeingOpened) {
    queueOf("abc");
    play(0);
    int changes = 0;
    QObject::connect(&transport, &Transport::isPlayingChanged, [&] { ++changes; });
    endTrack(); // to b, without a gap
    engine.invalidatePreschedule();
    engine.reachEnd();
    EXPECT_EQ(current(), 'c');
    EXPECT_EQ(loaded(), '-');
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_TRUE(transport.hasLoadedFile());
    EXPECT_EQ(changes, 0) << "between two tracks, whether they join or not";
    EXPECT_EQ(playCounts.value(path('c')), 0);

    transport.togglePlayback(); // pauses what does not sound yet
    EXPECT_FALSE(transport.isPlaying());
    transport.seek(0.25);
    EXPECT_EQ(progress.elapsedTime(), u"0:50"_s);
    EXPECT_EQ(transport.elapsedSeconds(), 50);
    transport.seek(0.5);
    settle();
    EXPECT_EQ(loaded(), 'c');
    EXPECT_FALSE(engine.playing);
    EXPECT_EQ(engine.position, 100);
    transport.togglePlayback();
    EXPECT_TRUE(engine.playing);

    // Another click, another press of Next, a stop: the answer to the first no longer counts.
    transport.playItem(id(0), true);
    transport.playNext(true);
    EXPECT_EQ(engine.opening, path('b'));
    EXPECT_EQ(current(), 'b');
    transport.playItem(id(1), true); // the current entry is only paused
    EXPECT_EQ(engine.opening, path('b'));
    EXPECT_FALSE(transport.isPlaying());
    transport.stopPlayer(true);
    EXPECT_FALSE(engine.answer());
    EXPECT_FALSE(transport.hasLoadedFile());
    EXPECT_EQ(playCounts.value(path('b')), 1);
}

TEST_F(TransportOpeningTest, OpeningWhatPlaysNeverPausesIt) {
    queueOf("ab");
    transport.playOn(id(0));
    transport.playOn(id(0)); // while it is being opened, too
    settle();
    EXPECT_TRUE(engine.playing);
    transport.playOn(id(0));
    EXPECT_TRUE(engine.playing);
    transport.togglePlayback();
    transport.playOn(id(0));
    EXPECT_TRUE(engine.playing);
    EXPECT_EQ(engine.opens, 1);
    transport.playOn(id(1));
    settle();
    EXPECT_EQ(loaded(), 'b');
}

TEST_F(TransportOpeningTest, ACollectionBeginsWithItsFirstEntryThatPlays) {
    queueOf("z");
    play(0);
    const TrackRows tracks = rowsOf({trackAt(path('a')), trackAt(path('b')), trackAt(path('c'))});
    engine.broken = {path('a'), path('c')};
    transport.playCollection(tracks, path('c'), u"Album"_s);
    settle();
    EXPECT_EQ(loaded(), 'b');
    EXPECT_EQ(current(), 'b');
    EXPECT_TRUE(transport.isPlaying());

    engine.broken.insert(path('b'));
    files.missing.clear();
    transport.playCollection(tracks, path('a'), u"Album"_s);
    settle();
    EXPECT_EQ(loaded(), '-') << "nothing plays that the queue does not hold";
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_TRUE(status.isError());
    transport.playCollection(tracks, path('a'), u"Album"_s); // all known to be missing
    EXPECT_EQ(status.text(), u"No playable tracks in the library yet"_s);
    EXPECT_EQ(current(), '-');
}

// The disk of b and c has gone to sleep for good. Nobody looks, so it must not end in silence.
TEST_F(TransportOpeningTest, WhatADiskHoldsUpIsToldAndThenPassedOver) {
    queueOf("abd");
    engine.formatOf[path('b')] = 1; // it follows with a gap
    play(0);
    engine.reachEnd();
    clock.advance(9s);
    EXPECT_EQ(current(), 'b');
    EXPECT_TRUE(status.text().isEmpty()) << "a disk may need some seconds to wake up";
    clock.advance(2s);
    EXPECT_EQ(status.text(), u"Waiting for the disk that holds \"b\"..."_s);
    EXPECT_FALSE(status.isError());
    clock.advance(5s);
    EXPECT_EQ(current(), 'd');
    EXPECT_EQ(status.text(), u"The disk that holds \"b\" does not answer"_s);
    EXPECT_TRUE(status.isError());
    EXPECT_TRUE(transport.isPlaying());
    EXPECT_TRUE(files.missing.isEmpty()) << "nobody knows that";
    settle();
    EXPECT_EQ(loaded(), 'd');
    EXPECT_EQ(playCounts.value(path('b')), 0);
}

TEST_F(TransportOpeningTest, APauseAndAnotherChoiceEndTheWaiting) {
    queueOf("ab");
    transport.playItem(id(0), true);
    clock.advance(29s);
    transport.togglePlayback();
    clock.advance(60s);
    EXPECT_TRUE(transport.hasLoadedFile()) << "nobody waits to hear it";
    transport.togglePlayback();
    clock.advance(29s);
    transport.playItem(id(1), true);
    clock.advance(29s);
    EXPECT_EQ(current(), 'b');
    EXPECT_TRUE(transport.isPlaying());
    settle();
    clock.advance(60s);
    EXPECT_TRUE(transport.isPlaying());
}

// What the user asked for is not replaced by something else.
TEST_F(TransportOpeningTest, WhatTheUserChoseIsWaitedForAndThenKeepsItsPlace) {
    queueOf("ab");
    transport.playItem(id(0), true);
    clock.advance(29s);
    EXPECT_TRUE(transport.isPlaying());
    clock.advance(2s);
    EXPECT_EQ(current(), 'a');
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_EQ(status.text(), u"The disk that holds \"a\" does not answer"_s);

    play(0);
    engine.position = 120;
    engine.isStalled = true;
    clock.advance(31s);
    EXPECT_FALSE(transport.isPlaying());
    EXPECT_EQ(transport.elapsedSeconds(), 120);
    engine.isStalled = false;
    transport.togglePlayback();
    settle();
    EXPECT_EQ(engine.position, 120);
    EXPECT_TRUE(engine.playing);
    EXPECT_EQ(playCounts.value(path('a')), 1) << "it is the same play";
}

TEST_F(TransportOpeningTest, ADiskThatHoldsUpOneFileAfterTheOtherEndsPlayback) {
    queueOf("abcdefghi");
    int format = 0;
    for (const char letter : {'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i'})
        engine.formatOf[path(letter)] = ++format;
    play(0);
    engine.reachEnd();
    clock.advance(46s);
    EXPECT_EQ(current(), 'd') << "not a thread left behind for each of thousands";
    EXPECT_FALSE(transport.isPlaying());

    play(3);
    engine.reachEnd();
    clock.advance(16s);
    settle(); // f is heard in between
    clock.advance(5s);
    engine.reachEnd();
    clock.advance(31s);
    EXPECT_TRUE(transport.isPlaying());
}
