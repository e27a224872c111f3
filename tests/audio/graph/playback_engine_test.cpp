// SPDX-License-Identifier: MIT
#include "audio/graph/engine_test.h"

#include <algorithm>
#include <thread>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class PlaybackEngine : public EngineTest {};

TEST_F(PlaybackEngine, PlaysAFileOnceFromAPositionToItsEnd) {
    play(wave(numbered(10'000)), 1000.5 / 44'100);
    EXPECT_EQ(elapsedFrames(), 1000);
    listen(4000);
    EXPECT_EQ(elapsedFrames(), 5000);
    EXPECT_EQ(frameOf(output.recording()[2 * 3999]), 5000);
    EXPECT_TRUE(engine.isPlaying());
    listen(5000);
    EXPECT_EQ(trackEnds, 1);
    EXPECT_FALSE(engine.isPlaying());
    EXPECT_EQ(elapsedFrames(), 10'000);
    EXPECT_FALSE(output.isRunning()) << "nobody had more to play";
    EXPECT_EQ(clock.pendingTimers(), 0u);
}

TEST_F(PlaybackEngine, EndsWhenTheLastFrameHasBeenHeardNotWhenItWasRendered) {
    play(wave(numbered(4410)));
    output.pull(8820);
    pass(0.2);
    EXPECT_EQ(trackEnds, 0);
    output.hear(4409);
    pass(0.2);
    EXPECT_EQ(trackEnds, 0);
    EXPECT_EQ(elapsedFrames(), 4409);
    output.hear(1);
    pass(0.2);
    EXPECT_EQ(trackEnds, 1);
}

// After the equalizer, the gains and the volume, and when it is heard.
TEST_F(PlaybackEngine, SaysWhetherWhatIsHeardPassesFullScale) {
    constexpr std::size_t second = 44'100;
    Pcm loudThenSoft = sine(441, 0.5, 20 * second);
    const Pcm soft = sine(441, 0.1, 2 * second);
    loudThenSoft.samples.insert(loudThenSoft.samples.end(), soft.samples.begin(),
                                soft.samples.end());
    play(wave(loudThenSoft));
    engine.spectrum().beginWatching();
    int results = 0;
    QObject::connect(&engine.spectrum(), &SpectrumModel::changed, [&] { ++results; });
    // Of the results, the first may be older than what has been heard.
    const auto clips = [&] {
        for (const int before = results; results < before + 2;) {
            const int last = results;
            output.hear(64);
            EXPECT_TRUE(waitFor([&] { return results > last; }));
        }
        return engine.spectrum().clips();
    };
    const auto heardUnder = [&](double preamp, double volume, double trackGain) {
        engine.setEQ(true, {}, preamp);
        engine.setVolume(volume);
        engine.setTrackGain(trackGain);
        output.play(second);
        output.pull(1024);
    };
    heardUnder(0, 1, 0);
    EXPECT_FALSE(clips());
    heardUnder(7, 1, 0); // 1.12
    EXPECT_TRUE(clips());
    heardUnder(7, 0.8, 0);
    EXPECT_FALSE(clips());
    heardUnder(7, 0.8, 6);
    EXPECT_TRUE(clips());

    ASSERT_TRUE(engine.scheduleSegment(19, true));
    output.pull(2 * second);
    output.hear(second / 2);
    EXPECT_TRUE(clips()) << "the soft end has been rendered and not been heard";
    output.hear(second);
    EXPECT_FALSE(clips());
}

TEST_F(PlaybackEngine, CutsPositionsToTheFile) {
    const auto path = wave(numbered(1000));
    ASSERT_TRUE(open(path));
    for (const double before : {-5.0, -1e300}) {
        ASSERT_TRUE(engine.scheduleSegment(before, false));
        EXPECT_EQ(elapsedFrames(), 0);
    }
    for (const double after : {1000.0 / 44'100, 3600.0, 1e300}) {
        trackEnds = 0;
        ASSERT_TRUE(engine.scheduleSegment(after, true));
        EXPECT_EQ(trackEnds, 0) << "from inside the operation";
        EXPECT_FALSE(engine.isPlaying());
        settle();
        EXPECT_EQ(trackEnds, 1);
        EXPECT_EQ(elapsedFrames(), 1000);
        ASSERT_TRUE(engine.scheduleSegment(after, false));
        settle();
        EXPECT_EQ(trackEnds, 1) << "nobody asked it to play";
    }
    ASSERT_TRUE(engine.scheduleSegment(1, true));
    engine.unload();
    settle();
    EXPECT_EQ(trackEnds, 1) << "the end of what was unloaded";
    EXPECT_EQ(engine.durationSeconds(), 0);
    EXPECT_TRUE(engine.resume());
    EXPECT_FALSE(engine.isPlaying());
}

TEST_F(PlaybackEngine, IsHeardAtOnceWhenItSeeks) {
    play(wave(numbered(441'000)));
    output.pull(30'000);
    output.hear(10'000);
    ASSERT_TRUE(engine.scheduleSegment(5, true));
    EXPECT_EQ(elapsedFrames(), 220'500);
    output.clearRecording();
    output.play(1000);
    EXPECT_EQ(elapsedFrames(), 221'500);
    // Its beginning is faded in, so that it does not click; what follows is untouched.
    EXPECT_LT(frameOf(output.recording()[0]), 221'500 / 100);
    EXPECT_EQ(frameOf(output.recording()[2 * 999]), 221'500);
    EXPECT_EQ(output.opens, 1);
}

TEST_F(PlaybackEngine, PausesWithoutLosingAFrameAndCostsNothingMeanwhile) {
    play(wave(numbered(441'000)));
    output.pull(30'000);
    output.hear(10'000);
    engine.pause();
    EXPECT_FALSE(engine.isPlaying());
    EXPECT_FALSE(output.isRunning());
    EXPECT_EQ(clock.pendingTimers(), 0u);
    output.play(5000); // renders and hears nothing
    pass(60);
    EXPECT_EQ(elapsedFrames(), 10'000);
    ASSERT_TRUE(engine.resume());
    EXPECT_TRUE(engine.isPlaying());
    output.play(5000);
    EXPECT_EQ(elapsedFrames(), 35'000);
    for (int i = 0; i < 35'000; ++i)
        ASSERT_EQ(frameOf(output.recording()[2 * std::size_t(i)]), i + 1);
    EXPECT_EQ(output.flushes, 0);
}

TEST_F(PlaybackEngine, ReopensTheStreamOnlyForAnotherFormat) {
    struct Case {
        int sampleRate;
        int channels;
        int opens;
    };
    for (const auto& [rate, channels, opens] :
         {Case{44'100, 2, 1}, Case{44'100, 2, 1}, Case{48'000, 2, 2}, Case{48'000, 1, 3}}) {
        play(wave(numbered(2000, rate, channels)));
        EXPECT_EQ(output.opens, opens);
        EXPECT_EQ(output.format().sampleRate, rate);
        EXPECT_EQ(output.format().channels, channels);
        output.clearRecording();
        output.play(2000);
        EXPECT_EQ(output.recording().size(), 2000u * std::size_t(channels));
        EXPECT_EQ(frameOf(output.recording().back()), 2000);
    }
}

// Recordings of anything but sound come as such files, too.
TEST_F(PlaybackEngine, PlaysAtAnyRate) {
    for (const int rate : {1, 1'000, 8'000}) {
        play(wave(numbered(20'000, rate)));
        output.clearRecording();
        output.play(20'000);
        EXPECT_EQ(frameOf(output.recording().back()), 20'000) << rate;
        engine.pause(); // does not wait for the decoder
    }
}

TEST_F(PlaybackEngine, SaysWhatFailed) {
    EXPECT_FALSE(open(u"/no/such/file.flac"_s));
    EXPECT_FALSE(engine.hasFile());
    EXPECT_TRUE(engine.scheduleSegment(0, true));
    EXPECT_FALSE(engine.isPlaying());

    ASSERT_TRUE(open(wave(numbered(44'100))));
    output.openFailure = u"Connection refused"_s;
    EXPECT_EQ(failureOf(engine.scheduleSegment(0.5, true)), u"Connection refused"_s);
    EXPECT_FALSE(engine.isPlaying());
    output.openFailure.reset();
    output.startFailure = u"Timeout"_s;
    // The stream is started at once only if the first sound is there within ten milliseconds.
    const auto timesOut = [](const auto& attempt) {
        int attempts = 0;
        while (failureOf(attempt()) != u"Timeout"_s && ++attempts < 100) {
        }
        return attempts < 100;
    };
    EXPECT_TRUE(timesOut([&] { return engine.scheduleSegment(0.5, true); }));
    EXPECT_FALSE(engine.isPlaying());
    EXPECT_TRUE(timesOut([&] {
        engine.pause();
        return engine.resume();
    }));
    EXPECT_EQ(elapsedFrames(), 22'050);
    output.startFailure.reset();
    EXPECT_TRUE(engine.resume());
    output.play(1000);
    EXPECT_EQ(elapsedFrames(), 23'050);
}

TEST_F(PlaybackEngine, LimitsGainsWhereTheyAreApplied) {
    Pcm level = numbered(44'100);
    std::fill(level.samples.begin(), level.samples.end(), 1 << 20); // 1/8
    play(wave(level));
    const auto settledLevel = [this] {
        output.play(2000);
        return output.recording().back();
    };
    struct Case {
        double volume, trackGain, expected;
    };
    for (const auto& c :
         {Case{1, 0, 0.125}, Case{2, 0, 0.125}, Case{-1, 0, 0}, Case{0.5, 0, 0.0625},
          Case{1, 12, 0.125 * std::pow(10, 0.6)}, Case{0.5, -18, 0.0625 * std::pow(10, -0.9)}}) {
        engine.setVolume(c.volume);
        engine.setTrackGain(c.trackGain);
        EXPECT_NEAR(settledLevel(), c.expected, 1e-6);
    }
    engine.setTrackGain(0);
    engine.setVolume(1);
    engine.setEQ(true, {}, 20);
    EXPECT_NEAR(settledLevel(), 0.125 * std::pow(10, 0.6), 1e-6);
    engine.setEQ(false, {}, 20);
    EXPECT_NEAR(settledLevel(), 0.125, 1e-6);

    // Ten gains at most, none above the limit, and bands that get none keep theirs.
    const auto path = wave(music(20'000));
    const auto rendered = [&](const std::vector<double>& gains) {
        engine.setEQ(true, gains, 0);
        output.clearRecording();
        play(path);
        output.pull(20'000);
        return output.recording();
    };
    const auto tooMany = rendered({20, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    EXPECT_EQ(rendered({12, 2, 3, 4, 5}), tooMany);
    EXPECT_EQ(rendered({12, 2, 3, 4, 5, 6, 7, 8, 9, 10}), tooMany);
}

using PlaybackEngineDeathTest = PlaybackEngine;

TEST_F(PlaybackEngineDeathTest, AnotherThreadMayNotCallIt) {
    EXPECT_DEATH(std::thread([this] { (void)engine.elapsedSeconds(); }).join(),
                 "on a thread that does not own it");
}

} // namespace
} // namespace halvane::test
