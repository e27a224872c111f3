// SPDX-License-Identifier: MIT
#include "platform/sound/heard_frames.h"
#include "platform/sound/system_sound.h"
#include "platform/sound/thread_priority.h"
#include "platform/system_clock.h"
#include "support/private_pulse.h"

#include <QDir>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace halvane::test {

using namespace Qt::StringLiterals;

class PulseOutputTest : public testing::Test {
  protected:
    static constexpr int rate = 44'100;
    /// A null sink shows a whole block on its monitor when it begins to play it.
    static constexpr double block = 0.075 * rate;

    void open(std::int64_t first = 1) {
        source = std::make_unique<NumberedSource>(2, first);
        ASSERT_TRUE(output.open({rate, 2}, *source));
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
        ASSERT_TRUE(output.start());
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
    ASSERT_TRUE(output.start());
    hear(0.5);
    output.pause();
    const auto before = output.framesHeard();
    output.flush();
    const auto flushed = output.framesRendered();
    EXPECT_EQ(output.framesHeard(), flushed);
    EXPECT_GT(flushed, before);
    ASSERT_TRUE(output.start());
    hear(0.5);
    output.pause();
    const auto heard = runs(*recording);
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_LT(heard[0].last(), flushed);
    EXPECT_EQ(heard[1].first, flushed + 1);
    EXPECT_NEAR(double(heard[1].last()), double(output.framesHeard()), block);
}

TEST_F(PulseOutputTest, leavesNoStreamBehindThatWasClosedWhileItWasMade) {
    for (int i = 0; i < 10; ++i)
        open(); // and closes the one before, of which the server has not told yet
    EXPECT_TRUE(waitFor([this] { return server.streams() > 0; }));
    EXPECT_TRUE(waitFor([this] { return server.streams() == 1; })) << server.streams();
    output.close();
    EXPECT_TRUE(waitFor([this] { return server.streams() == 0; }));
}

TEST_F(PulseOutputTest, survivesItsSinkBeingSuspended) {
    const auto recording = server.record(u"null44100"_s, rate);
    open();
    ASSERT_TRUE(output.start());
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

TEST_F(PulseOutputTest, playsOnTheChosenDeviceAtTheFilesRate) {
    std::vector<int> told;
    QObject::connect(&output, &SoundOutput::deviceSampleRateChanged,
                     [&] { told.push_back(output.deviceSampleRate()); });
    const auto recording = server.record(u"null96000"_s, 96'000);
    ASSERT_TRUE(output.setDevice(sound.server().sink(u"null96000"_s)->index));
    open();
    ASSERT_TRUE(output.start());
    hear(1);
    EXPECT_EQ(output.deviceSampleRate(), 96'000);
    EXPECT_EQ(told, std::vector{96'000});
    const auto samples = recording->samples();
    EXPECT_TRUE(std::ranges::any_of(samples, [](float sample) { return sample > 0.001F; }));
}

TEST_F(PulseOutputTest, aDeviceThatIsGoneIsRefusedAndOneThatGoesMeanwhileIsLeft) {
    EXPECT_FALSE(output.setDevice(4711));
    const auto module = server.loadNullSink(u"dac"_s, rate, u"DAC"_s);
    ASSERT_TRUE(waitFor([&] { return sound.server().sink(u"dac"_s) != nullptr; }));
    ASSERT_TRUE(output.setDevice(sound.server().sink(u"dac"_s)->index));
    server.unload(module); // the news of it has not been looked at
    int changes = 0;
    QObject::connect(&output, &SoundOutput::configurationChanged, [&] {
        ++changes;
        open(output.framesHeard() + 1);
        EXPECT_TRUE(output.start());
    });
    open();
    ASSERT_TRUE(output.start());
    hear(0.5);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(output.deviceSampleRate(), rate);
}

TEST_F(PulseOutputTest, saysWhenACallWantsSilence) {
    server.loadRoleCork();
    open();
    ASSERT_TRUE(output.start());
    std::optional<bool> wanted; // the server may ask twice
    QObject::connect(&output, &SoundOutput::pauseRequested, [&](bool pause) { wanted = pause; });
    hear(0.2);
    auto call = server.call();
    EXPECT_TRUE(waitFor([&] { return wanted == true; }));
    output.pause(); // as the player does
    // A call that ends before this has reached the server is one that it says nothing more of.
    EXPECT_TRUE(waitFor([&] { return server.hasPausedStream(); }));
    call.reset();
    EXPECT_TRUE(waitFor([&] { return wanted == false; }));
}

TEST_F(PulseOutputTest, theAudioThreadRunsAheadOfOthersWhereThatIsAllowed) {
    const int ordinary = getpriority(PRIO_PROCESS, 0);
    int allowed = ordinary;
    std::thread([&] {
        preferThisThread();
        allowed = getpriority(PRIO_PROCESS, id_t(gettid()));
    }).join();
    const QString tasks = u"/proc/self/task"_s;
    for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(tasks + u'/' + task + u"/comm"_s);
        ASSERT_TRUE(name.open(QIODevice::ReadOnly));
        const bool isAudio = name.readAll() == "halvane-audio\n";
        EXPECT_EQ(getpriority(PRIO_PROCESS, id_t(task.toInt())), isAudio ? allowed : ordinary);
    }
}

TEST_F(PulseOutputTest, aServerThatHangsHoldsNobodyUp) {
    open();
    ASSERT_TRUE(output.start());
    hear(0.3);
    server.freeze();
    const double begin = clock.now();
    const auto heard = output.framesHeard();
    output.pause();
    output.flush();
    open(heard + 1);
    EXPECT_TRUE(output.start());
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
    QObject::connect(&sound.output(), &SoundOutput::configurationChanged, [&] { ++changes; });
    ASSERT_TRUE(sound.output().open({44100, 2}, source));
    ASSERT_TRUE(sound.output().start());
    EXPECT_TRUE(waitFor([&] { return sound.output().framesHeard() > 1000; }));
    server.start();
    EXPECT_TRUE(waitFor([&] { return changes == 1; }));
    EXPECT_EQ(sound.devices().outputDevices().size(), 3U);
    ASSERT_TRUE(sound.output().open({44100, 2}, source));
    ASSERT_TRUE(sound.output().start());
    EXPECT_TRUE(waitFor([&] { return sound.output().framesHeard() > 1000; }));
    EXPECT_EQ(sound.output().deviceSampleRate(), 44100);
}

} // namespace halvane::test
