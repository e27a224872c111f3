// SPDX-License-Identifier: MIT
#include "audio/playback_engine.h"
#include "platform/heard_frames.h"
#include "platform/system_clock.h"
#include "platform/system_sound.h"
#include "support/audio_material.h"
#include "support/private_pulse.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

namespace halvane::test {

using namespace Qt::StringLiterals;

/// The whole engine with a real file on a real server; what a sink plays is recorded.
class PlaybackServerTest : public testing::Test {
  protected:
    static constexpr int rate = 44'100;

    PlaybackServerTest() {
        Pcm pcm{rate, 2, 24, {}};
        for (std::int32_t frame = 1; frame <= 60 * rate; ++frame)
            pcm.samples.insert(pcm.samples.end(), 2, frame);
        path = folder.filePath(u"numbered.wav"_s);
        writeWave(pcm, path);
        engine.setVolume(1);
        engine.onGraphRebuilt = [this] { ++rebuilds; };
        engine.onPlaybackInterrupted = [this](const QString& reason) { interruptions << reason; };
    }
    void play() {
        ASSERT_FALSE(engine.load(path));
        ASSERT_FALSE(engine.scheduleSegment(0, true));
        hear(1);
    }
    void hear(double seconds) {
        const double goal = engine.elapsedSeconds() + seconds;
        ASSERT_TRUE(waitFor([&] { return engine.elapsedSeconds() >= goal; }))
            << engine.elapsedSeconds() << " of " << goal;
    }
    /// The stretches heard, without the few milliseconds in which playback fades in.
    std::vector<HeardRun> runs(const MonitorRecording& recording) {
        EXPECT_TRUE(recording.waitForFrames(rate));
        std::vector<HeardRun> whole;
        std::int64_t before = 0;
        for (const HeardRun& run : heardRuns(recording.samples(), 2)) {
            if (run.frames < rate / 20) { // faded
                before += run.silenceBefore + run.frames;
                continue;
            }
            whole.push_back(run);
            whole.back().silenceBefore += std::exchange(before, 0);
        }
        return whole;
    }

    PrivatePulse server;
    QTemporaryDir folder;
    QString path;
    SystemClock clock;
    SystemSound sound{clock, server.address()};
    AudioPlaybackEngine engine{sound.output(), clock};
    int rebuilds = 0;
    QStringList interruptions;
};

TEST_F(PlaybackServerTest, goesOnFromTheHeardPositionAfterTheServerIsRestarted) {
    auto recording = server.record(u"null44100"_s, rate);
    play();
    server.kill();
    ASSERT_TRUE(waitFor([&] { return !sound.output().isOpen(); }));
    const auto lost = std::llround(engine.elapsedSeconds() * rate);
    EXPECT_TRUE(engine.isPlaying());
    server.start();
    const double back = clock.now();
    ASSERT_TRUE(waitFor([&] { return rebuilds > 0; }));
    const double rebuilt = clock.now();
    const auto from = std::llround(engine.elapsedSeconds() * rate);
    recording = server.record(u"null44100"_s, rate);
    hear(2);
    engine.pause();
    const auto heard = runs(*recording);
    ASSERT_EQ(heard.size(), 1U) << "no gap once it plays";
    EXPECT_LT(rebuilt - back, 1);
    EXPECT_NEAR(double(from), double(lost), 0.02 * rate);
    EXPECT_TRUE(interruptions.isEmpty());
    std::printf("back after %.0f ms at frame %lld, lost at %lld; largest gap afterwards 0\n",
                (rebuilt - back) * 1000, static_cast<long long>(from),
                static_cast<long long>(lost));
}

TEST_F(PlaybackServerTest, switchesDevicesWithAShortSilence) {
    // Both ways, so that the recorder of one sink sees the sound leave and come back.
    const auto recording = server.record(u"null44100"_s, rate);
    play();
    const auto other = sound.server().sink(u"null48000"_s)->index;
    const auto home = sound.server().sink(u"null44100"_s)->index;
    const double before = engine.elapsedSeconds();
    ASSERT_FALSE(engine.setOutputDevice(home)); // a whole switch: a new stream from the position
    EXPECT_NEAR(engine.elapsedSeconds(), before, 0.02);
    hear(1);
    int rateChanges = 0;
    QObject::connect(&engine, &AudioPlaybackEngine::outputSampleRateChanged,
                     [&] { ++rateChanges; });
    ASSERT_FALSE(engine.setOutputDevice(other));
    hear(0.5);
    EXPECT_TRUE(waitFor([&] { return engine.outputSampleRate() == 48'000; }));
    EXPECT_EQ(rateChanges, 1);
    ASSERT_FALSE(engine.setOutputDevice(home));
    hear(1);
    engine.pause();
    const auto heard = runs(*recording);
    ASSERT_EQ(heard.size(), 3U);
    // The sink plays out its block after the old stream has ended, and the new one begins at the
    // position that had been heard.
    EXPECT_LT(heard[1].silenceBefore, 0.3 * rate);
    EXPECT_LE(heard[1].first, heard[0].last() + 0.05 * rate);
    EXPECT_GE(heard[1].first, heard[0].last() - 0.15 * rate);
    std::printf("silence of a switch %.0f ms, sound heard twice %.0f ms\n",
                heard[1].silenceBefore * 1000.0 / rate,
                double(heard[0].last() + 1 - heard[1].first) * 1000 / rate);
}

TEST_F(PlaybackServerTest, aSinkThatGoesAwayChangesNothingForTheListener) {
    const auto module = server.loadNullSink(u"dac"_s, 48'000, u"DAC"_s);
    ASSERT_TRUE(waitFor([&] { return sound.server().sink(u"dac"_s) != nullptr; }));
    ASSERT_FALSE(engine.setOutputDevice(sound.server().sink(u"dac"_s)->index));
    play();
    const double before = engine.elapsedSeconds();
    server.unload(module);
    hear(1);
    EXPECT_LT(engine.elapsedSeconds(), before + 10);
    EXPECT_TRUE(engine.isPlaying());
    EXPECT_TRUE(interruptions.isEmpty());
}

} // namespace halvane::test
