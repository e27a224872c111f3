// SPDX-License-Identifier: MIT
#include "platform/heard_frames.h"
#include "platform/system_clock.h"
#include "platform/system_sound.h"
#include "support/private_pulse.h"

#include <gtest/gtest.h>

namespace halvane::test {

using namespace Qt::StringLiterals;

class PulseOutputTest : public testing::Test {
  protected:
    static constexpr int rate = 44'100;
    /// A null sink shows a whole block on its monitor when it begins to play it.
    static constexpr double block = 0.075 * rate;

    void open(std::int64_t first = 1) {
        source = std::make_unique<NumberedSource>(2, first);
        ASSERT_FALSE(output.open({rate, 2}, *source));
    }
    /// Runs the event loop until so much more has been heard.
    void hear(double seconds) {
        const auto goal = output.framesHeard() + std::int64_t(seconds * rate);
        ASSERT_TRUE(waitFor([&] { return output.framesHeard() >= goal; }))
            << output.framesHeard() << " of " << goal;
    }
    std::vector<HeardRun> runs(const MonitorRecording& recording) {
        EXPECT_TRUE(recording.waitForFrames(rate));
        auto found = heardRuns(recording.samples(), 2);
        std::erase_if(found, [](const HeardRun& run) { return run.first <= 0; });
        return found;
    }

    PrivatePulse server;
    SystemClock clock;
    std::unique_ptr<NumberedSource> source;
    SystemSound sound{clock, server.address()};
    SoundOutput& output = sound.output();
};

TEST_F(PulseOutputTest, isHeardWithoutAGapOverPauses) {
    const auto recording = server.record(u"null44100"_s, rate);
    open();
    hear(0); // standing still
    EXPECT_EQ(source->renders, 0);
    EXPECT_EQ(output.deviceSampleRate(), rate);
    std::vector<std::int64_t> paused;
    for (int i = 0; i < 3; ++i) {
        ASSERT_FALSE(output.start());
        hear(0.7);
        output.pause();
        paused.push_back(output.framesHeard());
        const int renders = source->renders;
        ASSERT_TRUE(recording->waitForFrames(rate / 2));
        EXPECT_EQ(output.framesHeard(), paused.back());
        EXPECT_EQ(source->renders, renders);
    }
    const auto heard = runs(*recording);
    ASSERT_EQ(heard.size(), 3U);
    for (std::size_t i = 0; i < heard.size(); ++i) {
        EXPECT_EQ(heard[i].first, i > 0 ? heard[i - 1].last() + 1 : 1) << "over pause " << i;
        EXPECT_NEAR(double(heard[i].last()), double(paused[i]), block) << "position at pause " << i;
    }
}

TEST_F(PulseOutputTest, flushDropsWhatIsNotHeard) {
    const auto recording = server.record(u"null44100"_s, rate);
    open();
    ASSERT_FALSE(output.start());
    hear(0.5);
    output.pause();
    const auto before = output.framesHeard();
    output.flush();
    const auto flushed = output.framesRendered();
    EXPECT_EQ(output.framesHeard(), flushed);
    EXPECT_GT(flushed, before);
    ASSERT_FALSE(output.start());
    hear(0.5);
    output.pause();
    const auto heard = runs(*recording);
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_LT(heard[0].last(), flushed);
    EXPECT_EQ(heard[1].first, flushed + 1);
    EXPECT_NEAR(double(heard[1].last()), double(output.framesHeard()), block);
}

TEST_F(PulseOutputTest, goesOnFromTheHeardFrameAfterTheServerIsRestarted) {
    auto recording = server.record(u"null44100"_s, rate);
    open();
    ASSERT_FALSE(output.start());
    int changes = 0;
    double changed = 0;
    output.onConfigurationChange = [&] {
        ++changes;
        changed = clock.now();
        open(output.framesHeard() + 1);
        EXPECT_FALSE(output.start());
    };
    hear(1);
    server.kill();
    ASSERT_TRUE(waitFor([&] { return !output.isOpen(); }));
    const auto atLoss = output.framesHeard();
    const auto before = heardRuns(recording->samples(), 2);
    EXPECT_EQ(output.deviceSampleRate(), 0);
    EXPECT_TRUE(sound.devices().outputDevices().empty());
    EXPECT_FALSE(waitFor([&] { return output.framesHeard() > atLoss; }, 500)) << "stands still";

    server.start();
    const double back = clock.now();
    recording = server.record(u"null44100"_s, rate);
    ASSERT_TRUE(waitFor([&] { return changes > 0; }));
    EXPECT_LT(changed - back, 1);
    hear(1);
    EXPECT_EQ(changes, 1);
    output.pause();
    const auto after = runs(*recording);
    ASSERT_EQ(after.size(), 1U) << "no gap";
    // What was in the recorder's pipe when the server died is lost to the recording.
    EXPECT_NEAR(double(atLoss), double(before.back().last()), 0.25 * rate);
    EXPECT_GE(after[0].first, atLoss + 1);
    EXPECT_LE(after[0].first, atLoss + 1 + rate) << "the recorder may have begun later";
}

TEST_F(PulseOutputTest, survivesItsSinkBeingSuspended) {
    const auto recording = server.record(u"null44100"_s, rate);
    open();
    ASSERT_FALSE(output.start());
    hear(0.5);
    server.suspendSink(u"null44100"_s, true);
    std::int64_t still = -1;
    ASSERT_TRUE(waitFor([&] { return std::exchange(still, output.framesHeard()) == still; }));
    server.suspendSink(u"null44100"_s, false);
    hear(0.5);
    output.pause();
    const auto heard = runs(*recording);
    ASSERT_FALSE(heard.empty());
    for (std::size_t i = 1; i < heard.size(); ++i) {
        EXPECT_GT(heard[i].first, heard[i - 1].last()) << "nothing twice";
        EXPECT_LE(heard[i].first, heard[i - 1].last() + 1 + block)
            << "the sink's own block at most";
    }
    EXPECT_NEAR(double(heard.back().last()), double(output.framesHeard()), block);
}

TEST_F(PulseOutputTest, movesToTheDefaultWhenItsSinkGoesAway) {
    const auto module = server.loadNullSink(u"dac"_s, rate, u"DAC"_s);
    ASSERT_TRUE(waitFor([&] { return sound.server().sink(u"dac"_s) != nullptr; }));
    ASSERT_FALSE(output.setDevice(sound.server().sink(u"dac"_s)->index));
    const auto recording = server.record(u"null44100"_s, rate);
    int changes = 0;
    output.onConfigurationChange = [&] {
        ++changes;
        open(output.framesHeard() + 1);
        EXPECT_FALSE(output.start());
    };
    open();
    ASSERT_FALSE(output.start());
    hear(0.5);
    const auto before = output.framesHeard();
    server.unload(module);
    hear(0.7);
    output.pause();
    const auto heard = runs(*recording);
    ASSERT_FALSE(heard.empty());
    EXPECT_NEAR(double(heard.front().first), double(before), 0.3 * rate) << "went on from there";
    EXPECT_NEAR(double(heard.back().last()), double(output.framesHeard()), block);
}

TEST_F(PulseOutputTest, playsOnTheChosenDeviceAtTheFilesRate) {
    std::vector<int> told;
    output.onDeviceSampleRateChange = [&] { told.push_back(output.deviceSampleRate()); };
    const auto recording = server.record(u"null96000"_s, 96'000);
    ASSERT_FALSE(output.setDevice(sound.server().sink(u"null96000"_s)->index));
    open();
    ASSERT_FALSE(output.start());
    hear(1);
    EXPECT_EQ(output.deviceSampleRate(), 96'000);
    EXPECT_EQ(told, std::vector{96'000});
    const auto samples = recording->samples();
    EXPECT_TRUE(std::ranges::any_of(samples, [](float sample) { return sample > 0.001F; }));
}

TEST_F(PulseOutputTest, aDeviceThatIsGoneIsRefusedAndOneThatGoesMeanwhileIsLeft) {
    EXPECT_TRUE(output.setDevice(4711));
    const auto module = server.loadNullSink(u"dac"_s, rate, u"DAC"_s);
    ASSERT_TRUE(waitFor([&] { return sound.server().sink(u"dac"_s) != nullptr; }));
    ASSERT_FALSE(output.setDevice(sound.server().sink(u"dac"_s)->index));
    server.unload(module); // the news of it has not been looked at
    int changes = 0;
    output.onConfigurationChange = [&] {
        ++changes;
        open(output.framesHeard() + 1);
        EXPECT_FALSE(output.start());
    };
    open();
    ASSERT_FALSE(output.start());
    hear(0.5);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(output.deviceSampleRate(), rate);
}

TEST_F(PulseOutputTest, aServerThatHangsHoldsNobodyUp) {
    open();
    ASSERT_FALSE(output.start());
    hear(0.3);
    server.freeze();
    const double begin = clock.now();
    const auto heard = output.framesHeard();
    output.pause();
    output.flush();
    open(heard + 1);
    EXPECT_FALSE(output.start());
    (void)output.setDevice({});
    EXPECT_LT(clock.now() - begin, 1) << "waited for the server";
    server.thaw();
    hear(0.3);
}

TEST(SystemSoundTest, takesTheServerThatAppears) {
    PrivatePulse server;
    server.kill();
    SystemClock clock;
    testing::internal::CaptureStderr();
    SystemSound sound(clock, server.address());
    EXPECT_NE(testing::internal::GetCapturedStderr().find("no sound server answers"),
              std::string::npos);
    NumberedSource source(2);
    int changes = 0;
    sound.output().onConfigurationChange = [&] { ++changes; };
    ASSERT_FALSE(sound.output().open({44100, 2}, source));
    ASSERT_FALSE(sound.output().start());
    EXPECT_TRUE(waitFor([&] { return sound.output().framesHeard() > 1000; }));
    server.start();
    EXPECT_TRUE(waitFor([&] { return changes == 1; }));
    EXPECT_EQ(sound.devices().outputDevices().size(), 3U);
    ASSERT_FALSE(sound.output().open({44100, 2}, source));
    ASSERT_FALSE(sound.output().start());
    EXPECT_TRUE(waitFor([&] { return sound.output().framesHeard() > 1000; }));
    EXPECT_EQ(sound.output().deviceSampleRate(), 44100);
}

TEST(PipeWireOutput, isHeardOverAPauseAndARestart) {
    const auto server = PrivatePipeWire::create();
    if (!server)
        GTEST_SKIP() << "PipeWire can't be started here";
    SystemClock clock;
    SystemSound sound(clock, server->address());
    SoundOutput& output = sound.output();
    NumberedSource source(2);
    const auto play = [&] {
        EXPECT_FALSE(output.open({44100, 2}, source));
        EXPECT_FALSE(output.start());
    };
    const auto hear = [&](std::int64_t frames) {
        const auto goal = output.framesHeard() + frames;
        return waitFor([&] { return output.framesHeard() >= goal; });
    };
    const auto recording = server->record(u"null44100"_s, 44100);
    play();
    ASSERT_TRUE(hear(44100));
    output.pause();
    const auto paused = output.framesHeard();
    EXPECT_LE(paused, output.framesRendered());
    ASSERT_TRUE(recording->waitForFrames(44100));
    EXPECT_EQ(output.framesHeard(), paused);
    const auto heard = heardRuns(recording->samples(), 2);
    ASSERT_FALSE(heard.empty());
    const auto longest = std::ranges::max(heard, {}, &HeardRun::frames);
    EXPECT_NEAR(double(longest.last()), double(paused), 0.1 * 44100);
    ASSERT_FALSE(output.start());
    ASSERT_TRUE(hear(22050));
    int changes = 0;
    output.onConfigurationChange = [&] {
        ++changes;
        play();
    };
    server->kill();
    ASSERT_TRUE(waitFor([&] { return !output.isOpen(); }));
    server->start();
    ASSERT_TRUE(waitFor([&] { return changes > 0; }));
    EXPECT_TRUE(hear(22050));
}

} // namespace halvane::test
