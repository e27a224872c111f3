// SPDX-License-Identifier: MIT
// Starting where the last run left off, over restarts of the whole library.
#include "library/running_library.h"
#include "library/user/settings_keys.h"
#include "support/audio_material.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace halvane::test {
namespace {

class QueueMemoryTest : public testing::Test, public RunningLibrary {
  protected:
    void SetUp() override {
        start();
        for (const char* name : {"a", "b", "c"}) {
            paths.append(music.filePath(QString::fromUtf8(name) + u".wav"_s));
            // Copies of one sound would share what is said of them.
            const double frequency = 440 * static_cast<double>(paths.size());
            writeWave(sine(frequency, 0.5, 32000, 8000, 1), paths.last());
        }
        import(paths);
        saveIndex();
    }
    void quitAndStart() {
        library->queueMemory()->save();
        start();
    }
    // The queue is c, a, b of a collection, and b stands at 3 of its 4 seconds.
    void leave() {
        const TrackRows rows{library->store()->track(paths[2]), library->store()->track(paths[0]),
                             library->store()->track(paths[1])};
        library->transport()->playCollection(rows, paths[1], u"Night Walk"_s);
        until([&] { return environment.output.starts > 0; });
        library->transport()->seek(0.75);
        library->transport()->togglePlayback();
    }

    QStringList paths;
};

TEST_F(QueueMemoryTest, TheWholeLibraryComesBackUnlessOtherwiseChosen) {
    leave();
    quitAndStart();
    EXPECT_EQ(queued(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(current(), QString());
    EXPECT_FALSE(library->transport()->hasLoadedFile());
}

TEST_F(QueueMemoryTest, QueueEntryAndPlaceComeBackPaused) {
    library->queueMemory()->setStartsWhereLeftOff(true);
    leave();
    const auto plays = environment.preferences.integerMap(SettingsKey::playCounts);
    const int opens = environment.output.opens;
    quitAndStart();
    EXPECT_TRUE(library->queueMemory()->startsWhereLeftOff());
    EXPECT_EQ(queued(), (QStringList{u"c"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(library->queue()->sourceLabel(), u"Night Walk"_s);
    EXPECT_EQ(current(), u"b"_s);
    EXPECT_FALSE(library->transport()->isPlaying());
    EXPECT_EQ(environment.mediaControls.state, MediaPlaybackState::paused);
    EXPECT_EQ(library->progressClock()->elapsedTime(), u"0:03"_s);
    EXPECT_NEAR(library->transport()->elapsedSeconds(), 3, 0.01);
    EXPECT_EQ(environment.output.opens, opens) << "nothing is opened before it is needed";

    // It plays on from there, and has not been played once more.
    bool isOpened = false;
    QObject::connect(library->transport(), &Transport::trackChanged, [&] { isOpened = true; });
    library->transport()->togglePlayback();
    EXPECT_TRUE(library->transport()->isPlaying());
    until([&] { return isOpened; });
    EXPECT_NEAR(library->transport()->elapsedSeconds(), 3, 0.01);
    EXPECT_EQ(environment.preferences.integerMap(SettingsKey::playCounts), plays);
}

TEST_F(QueueMemoryTest, ThePlaceCanBeMovedAndLeftBeforeAnythingPlays) {
    library->queueMemory()->setStartsWhereLeftOff(true);
    leave();
    quitAndStart();
    library->transport()->seek(0.25);
    EXPECT_NEAR(library->transport()->elapsedSeconds(), 1, 0.01);
    quitAndStart();
    EXPECT_EQ(current(), u"b"_s);
    EXPECT_NEAR(library->transport()->elapsedSeconds(), 1, 0.01);
    library->transport()->playPrevious();
    EXPECT_EQ(current(), u"a"_s);
    EXPECT_TRUE(library->transport()->isPlaying());
}

TEST_F(QueueMemoryTest, ACrashCostsSecondsAtMost) {
    library->queueMemory()->setStartsWhereLeftOff(true);
    leave();
    environment.clock.advance(3s);
    library->queue()->move(library->queue()->idAt(0), library->queue()->idAt(1));
    start(); // the last change was not written yet
    EXPECT_EQ(queued(), (QStringList{u"c"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(current(), u"b"_s);
}

TEST_F(QueueMemoryTest, AFileOpenedDuringTheStartIsKeptToo) {
    library->queueMemory()->setStartsWhereLeftOff(true);
    library->queueMemory()->save();
    const QString opened = music.filePath(u"d.wav"_s);
    writeWave(sine(440, 0.5, 32000, 8000, 1), opened);
    build();
    library->queueMemory()->restore();
    library->persistence()->hold();
    library->importedPaths()->restore();
    import({opened});
    library->restoration()->restoreImportedAudio();
    until([&] { return !library->restoration()->isRunning(); });
    ASSERT_EQ(current(), u"d"_s);
    saveIndex();
    quitAndStart();
    EXPECT_EQ(queued().first(), u"d"_s);
    EXPECT_EQ(current(), u"d"_s);
}

TEST_F(QueueMemoryTest, APlaceWaitsForItsDisk) {
    library->queueMemory()->setStartsWhereLeftOff(true);
    leave();
    library->queueMemory()->save();
    ASSERT_TRUE(QFile::rename(paths[1], paths[1] + u".away"_s));
    start();
    library->transport()->togglePlayback();
    until([&] { return !library->transport()->isPlaying(); });
    EXPECT_TRUE(library->status()->isError());
    ASSERT_TRUE(QFile::rename(paths[1] + u".away"_s, paths[1]));
    quitAndStart();
    EXPECT_EQ(current(), u"b"_s);
    EXPECT_NEAR(library->transport()->elapsedSeconds(), 3, 0.01);
}

TEST_F(QueueMemoryTest, WhatLeftTheLibraryLeavesTheQueue) {
    library->queueMemory()->setStartsWhereLeftOff(true);
    leave();
    library->queueMemory()->save();
    environment.preferences.removeEntries({SettingsKey::importedAudioPaths}, {paths[2]});
    start();
    EXPECT_EQ(queued(), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(current(), u"b"_s); // it stood in the third row
}

TEST_F(QueueMemoryTest, NonsenseBringsTheWholeLibrary) {
    library->queueMemory()->setStartsWhereLeftOff(true);
    for (const char* text : {"", "[]", "{\"version\":1,\"paths\":7}", "{\"version\":2}",
                             "{\"version\":1,\"paths\":[1,null,\"/nowhere\"]}"}) {
        library->queueMemory()->save();
        QFile file(environment.folder.filePath(u"data/queue.json"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << file.fileName().toStdString();
        file.write(text);
        file.close();
        environment.preferences.setStrings(SettingsKey::queuePlace,
                                           {u"/nowhere"_s, u"x"_s, u"nan"_s});
        start();
        EXPECT_EQ(library->queue()->size(), 3U) << text;
        EXPECT_EQ(current(), QString()) << text;
    }
}

TEST_F(QueueMemoryTest, IsForgottenWhenItIsNoLongerWanted) {
    library->queueMemory()->setStartsWhereLeftOff(true);
    leave();
    library->queueMemory()->save();
    EXPECT_TRUE(QFile::exists(environment.folder.filePath(u"data/queue.json"_s)));
    library->queueMemory()->setStartsWhereLeftOff(false);
    quitAndStart();
    EXPECT_FALSE(QFile::exists(environment.folder.filePath(u"data/queue.json"_s)));
    EXPECT_FALSE(environment.preferences.strings(SettingsKey::queuePlace));
    EXPECT_EQ(queued(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
}

} // namespace
} // namespace halvane::test
