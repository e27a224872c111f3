// SPDX-License-Identifier: MIT
#include "audio/graph/engine_test.h"

#include <QFile>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class PlaybackFaults : public EngineTest {
  protected:
    /// The engine plays 20,000 frames into a numbered file; the listener is 5000 behind.
    void playInto() {
        play(wave(numbered(441'000)));
        output.pull(25'000);
        output.hear(20'000);
    }

    void expectGoesOnAt(std::int64_t frame) {
        EXPECT_EQ(elapsedFrames(), frame);
        EXPECT_TRUE(engine.isPlaying());
        output.clearRecording();
        output.play(2000);
        EXPECT_EQ(elapsedFrames(), frame + 2000);
        EXPECT_EQ(frameOf(output.recording().back()), frame + 2000);
    }
};

TEST_F(PlaybackFaults, GoesOnFromThePositionHeardWhenTheStreamMustBeMadeAnew) {
    playInto();
    ASSERT_TRUE(preschedule(wave(numbered(1000))));
    output.changeConfiguration();
    EXPECT_EQ(rebuilds, 1);
    EXPECT_EQ(output.opens, 2);
    EXPECT_EQ(engine.adoptPrescheduledTrack(), std::nullopt);
    expectGoesOnAt(20'000);

    engine.pause();
    output.changeConfiguration();
    EXPECT_EQ(rebuilds, 2);
    EXPECT_FALSE(engine.isPlaying());
    EXPECT_EQ(output.opens, 2) << "nothing plays, so nothing is opened yet";
    EXPECT_TRUE(engine.resume());
    expectGoesOnAt(22'000);

    engine.unload();
    output.changeConfiguration();
    EXPECT_EQ(rebuilds, 2);
    EXPECT_FALSE(output.isOpen());
}

TEST_F(PlaybackFaults, WaitsForAServerThatIsGoneAndTakesItWhenItIsBack) {
    playInto();
    output.vanish();
    output.play(1000);
    pass(20);
    EXPECT_EQ(elapsedFrames(), 20'000);
    output.comeBack();
    expectGoesOnAt(20'000);
    EXPECT_TRUE(interruptions.isEmpty());

    output.vanish();
    engine.pause();
    output.comeBack();
    EXPECT_TRUE(engine.resume());
    expectGoesOnAt(22'000);
}

TEST_F(PlaybackFaults, SaysThatPlaybackCouldNotBeTakenUpAgain) {
    playInto();
    output.vanish();
    output.changeConfiguration();
    EXPECT_EQ(interruptions, QStringList{u"Connection refused"_s});
    EXPECT_FALSE(engine.isPlaying());
    EXPECT_EQ(elapsedFrames(), 20'000);
    EXPECT_EQ(failureOf(engine.resume()), u"Connection refused"_s);
    output.comeBack();
    EXPECT_FALSE(engine.isPlaying());
    EXPECT_TRUE(engine.resume());
    expectGoesOnAt(20'000);
}

TEST_F(PlaybackFaults, MovesToAnotherDevice) {
    playInto();
    ASSERT_TRUE(preschedule(wave(numbered(1000))));
    EXPECT_TRUE(engine.setOutputDevice(7));
    EXPECT_EQ(rebuilds, 0) << "from inside the operation";
    settle();
    EXPECT_EQ(rebuilds, 1);
    EXPECT_EQ(output.opens, 2);
    EXPECT_EQ(engine.adoptPrescheduledTrack(), std::nullopt);
    expectGoesOnAt(20'000);

    engine.pause();
    EXPECT_TRUE(engine.setOutputDevice(std::nullopt));
    EXPECT_FALSE(engine.isPlaying());
    EXPECT_TRUE(engine.resume());
    expectGoesOnAt(22'000);
    EXPECT_EQ(output.devices, (std::vector<std::optional<std::uint32_t>>{7u, std::nullopt}));
    pass(30);
    EXPECT_EQ(trackEnds, 0) << "what was thrown away has no end";
}

TEST_F(PlaybackFaults, GoesOnOnThePreviousDeviceWhenASwitchFails) {
    playInto();
    EXPECT_TRUE(engine.setOutputDevice(7));
    output.pull(5000);
    output.hear(1000);
    output.deviceFailure = u"No such entity"_s;
    EXPECT_EQ(failureOf(engine.setOutputDevice(8)), u"No such entity"_s);
    expectGoesOnAt(21'000);

    // A device that is there and does not open.
    output.deviceFailure.reset();
    output.failOpensOfDevice = 8;
    EXPECT_EQ(failureOf(engine.setOutputDevice(8)), u"No such device"_s);
    expectGoesOnAt(23'000);
    EXPECT_EQ(output.devices.back(), 7u);

    // A server that is gone altogether.
    output.vanish();
    output.deviceFailure = u"Connection refused"_s;
    EXPECT_EQ(failureOf(engine.setOutputDevice(9)), u"Connection refused"_s);
    EXPECT_FALSE(engine.isPlaying());
    EXPECT_EQ(elapsedFrames(), 25'000);
}

TEST_F(PlaybackFaults, WhereADiskIsLateTheSoundEndsAndBeginsSoftly) {
    const Pcm level{44'100, 1, 24, std::vector<std::int32_t>(30 * 44'100, 1 << 22)};
    play(wave(level));
    output.pullHurried(level.samples.size());
    int holes = 0;
    float before = 0.5;
    for (const float sample : output.recording()) {
        ASSERT_LT(std::abs(sample - before), 0.5 / 150) << "a step, which clicks";
        holes += sample == 0 && before != 0;
        before = sample;
    }
    EXPECT_GT(holes, 0) << "the decoder was never too slow";
}

TEST_F(PlaybackFaults, BadTimesNeitherLoseNorRepeatAFrame) {
    struct Case {
        const char* what;
        std::size_t block;
        std::int64_t late; ///< frames that the ear is behind
    };
    for (const auto& [what, block, late] :
         {Case{"short calls", 1, 0}, Case{"late", 512, 40'000}, Case{"long calls", 60'000, 0}}) {
        SCOPED_TRACE(what);
        output.blockFrames = block;
        output.clearRecording();
        trackEnds = 0;
        play(wave(numbered(50'000)));
        for (std::int64_t rendered = 0; rendered < 50'000; rendered += 10'000) {
            output.pull(10'000);
            output.hear(std::max<std::int64_t>(output.framesRendered() - late, 0) -
                        output.framesHeard());
            pass(0.3);
            ASSERT_EQ(elapsedFrames(), std::max<std::int64_t>(rendered + 10'000 - late, 0));
        }
        EXPECT_EQ(trackEnds, late > 0 ? 0 : 1);
        for (std::size_t i = 0; i < 50'000; ++i)
            ASSERT_EQ(frameOf(output.recording()[2 * i]), std::int32_t(i + 1));
        output.hearAll();
        pass(2);
        EXPECT_EQ(trackEnds, 1);
    }
}

} // namespace
} // namespace halvane::test
