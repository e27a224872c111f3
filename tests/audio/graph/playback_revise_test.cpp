// SPDX-License-Identifier: MIT
// What the server has queued is rendered again when the listener changes something: the change is
// heard at once, nothing is lost or heard twice by it, and no edge is heard.
#include "audio/graph/engine_test.h"

#include <algorithm>
#include <array>
#include <random>

namespace halvane::test {
namespace {

constexpr int rate = 44'100;
constexpr std::size_t queued = 10'000; // frames that are rendered and not heard
constexpr std::size_t change = rate / 100;

/// 331 Hz at half of full scale: its steps are small.
Pcm tone(std::size_t frames) {
    Pcm pcm{rate, 1, 24, {}};
    for (std::size_t i = 0; i < frames; ++i)
        pcm.samples.push_back(
            std::int32_t(4'194'304 * std::sin(2 * M_PI * 331 * double(i) / rate)));
    return pcm;
}

class Revised : public EngineTest {
  protected:
    Revised() { output.takesBack = true; }

    /// Renders ahead of the ear, as a server does.
    void playAhead(std::size_t frames) { playAhead(output, frames); }
    static void playAhead(OfflineOutput& output, std::size_t frames) {
        const auto heard = std::size_t(output.framesHeard()) + frames;
        output.pull(heard + queued - std::size_t(output.framesRendered()));
        output.hear(std::int64_t(frames));
    }
    [[nodiscard]] float largestStep() const {
        float largest = 0;
        const auto& all = output.recording();
        for (std::size_t i = 1; i < all.size(); ++i)
            largest = std::max(largest, std::abs(all[i] - all[i - 1]));
        return largest;
    }
    const float naturalStep = float(0.5 * 2 * M_PI * 331 / rate);
};

TEST_F(Revised, LeavesTheSoundAsItIsWhereNothingHasChanged) {
    const QString path = wave(music(3 * rate, rate, 2));
    OfflineOutput plain;
    AudioPlaybackEngine other{plain, clock};
    for (AudioPlaybackEngine* each : {&engine, &other}) {
        each->setEQ(true, {6, -6, 3, 0, 0, 1, -12, 3, 4, 5}, -3);
        each->setVolume(0.5);
        ASSERT_TRUE(test::open(*each, path));
        ASSERT_TRUE(each->scheduleSegment(0.5, true));
    }
    for (int i = 0; i < 8; ++i) {
        playAhead(5000);
        playAhead(plain, 5000);
        output.revise();
    }
    const auto& once = plain.recording();
    ASSERT_EQ(output.recording().size(), once.size());
    float difference = 0;
    for (std::size_t i = 0; i < once.size(); ++i)
        difference = std::max(difference, std::abs(output.recording()[i] - once[i]));
    EXPECT_LT(difference, 3e-5F) << "the filters have been run up: 90 dB below full scale";
}

TEST_F(Revised, LeavesEverySampleAloneWhereNothingIsSet) {
    const QString count = wave(numbered(100'000, rate, 1));
    play(count);
    for (int i = 0; i < 8; ++i) {
        playAhead(3000);
        output.revise();
    }
    for (std::size_t i = 0; i < output.recording().size(); ++i)
        ASSERT_EQ(frameOf(output.recording()[i]), std::int32_t(i + 1)) << "bit for bit";
}

TEST_F(Revised, LetsAChangeOfVolumeOrGainBeHeardAtOnce) {
    play(wave(tone(3 * rate)));
    playAhead(rate / 2);
    const auto at = std::size_t(output.framesHeard());
    const auto before = output.recording();
    engine.setVolume(0.25);
    const auto& now = output.recording();
    ASSERT_EQ(now.size(), before.size());
    for (std::size_t i = 0; i < at; ++i)
        ASSERT_EQ(now[i], before[i]);
    for (std::size_t i = at + change; i < now.size(); ++i)
        ASSERT_NEAR(now[i], 0.25F * before[i], 1e-6F) << i - at;
    engine.setTrackGain(-6);
    EXPECT_NEAR(output.recording().back(), 0.25 * before.back() * std::pow(10, -6 / 20.0), 1e-4);
    EXPECT_LT(largestStep(), 2 * naturalStep);
}

TEST_F(Revised, EndsTheSoundSoftlyAndGoesOnWhereItEnded) {
    play(wave(tone(3 * rate)));
    playAhead(rate / 2);
    const auto end = std::size_t(output.framesHeard());
    engine.pause();
    EXPECT_EQ(elapsedFrames(), std::int64_t(end));
    const auto& heard = output.recording();
    EXPECT_LT(largestStep(), 2 * naturalStep);
    EXPECT_TRUE(std::all_of(heard.begin() + std::ptrdiff_t(end + change), heard.end(),
                            [](float sample) { return sample == 0; }));
    output.hearAll();
    EXPECT_EQ(elapsedFrames(), std::int64_t(end)) << "silence is no sound";
    ASSERT_TRUE(engine.resume());
    output.clearRecording();
    playAhead(rate / 2);
    for (std::size_t i = change; i < output.recording().size(); ++i) {
        const double phase = 2 * M_PI * 331 * double(end + i) / rate;
        ASSERT_NEAR(output.recording()[i], 0.5 * std::sin(phase), 1e-3) << i;
    }
    output.hearAll();
    EXPECT_EQ(elapsedFrames(), std::int64_t(end + output.recording().size()));
}

// All of the sound has been rendered, and silence behind it.
TEST_F(Revised, TakesBackTheEndOfAFile) {
    play(wave(tone(rate)));
    playAhead(rate - 3000);
    const auto end = std::size_t(output.framesHeard());
    ASSERT_EQ(output.recording().back(), 0);
    engine.setVolume(0.5);
    EXPECT_NEAR(output.recording()[end + change + 500],
                0.25 * std::sin(2 * M_PI * 331 * double(end + change + 500) / rate), 1e-3);
    engine.pause();
    const auto& heard = output.recording();
    EXPECT_LT(largestStep(), 2 * naturalStep);
    EXPECT_TRUE(std::all_of(heard.begin() + std::ptrdiff_t(end + change), heard.end(),
                            [](float sample) { return sample == 0; }));
    ASSERT_TRUE(engine.resume());
    output.hearAll();
    EXPECT_EQ(elapsedFrames(), std::int64_t(end)) << "silence is no sound";
    output.clearRecording();
    playAhead(2000);
    EXPECT_EQ(elapsedFrames(), rate - 1000);
    for (std::size_t i = change; i < 3000; ++i) {
        const double phase = 2 * M_PI * 331 * double(end + i) / rate;
        ASSERT_NEAR(output.recording()[i], 0.25 * std::sin(phase), 1e-3) << i;
    }
    EXPECT_EQ(output.recording()[3000], 0);
    EXPECT_EQ(trackEnds, 0);
    playAhead(2000);
    pass(0.1);
    EXPECT_EQ(trackEnds, 1);
}

TEST_F(Revised, JumpsWithoutAnEdge) {
    play(wave(tone(20 * rate)));
    for (const double to : {15.003, 2.5, 9.0011}) {
        playAhead(rate / 3);
        ASSERT_TRUE(engine.scheduleSegment(to, true));
        output.revise(); // as a server does when the sound begins again
        EXPECT_NEAR(engine.elapsedSeconds(), to, 1e-4);
    }
    playAhead(rate / 3);
    EXPECT_NEAR(engine.elapsedSeconds(), 9.0011 + 1 / 3.0, 1e-3);
    engine.unload();
    EXPECT_LT(largestStep(), 2 * naturalStep);
}

TEST_F(Revised, KeepsEachTrackUnderItsOwnGain) {
    const std::size_t joint = rate / 2;
    engine.setTrackGain(-6);
    play(wave(numbered(joint, rate, 1, 4'000'000)));
    ASSERT_TRUE(preschedule(wave(numbered(2 * rate, rate, 1, 4'000'000)), -3));
    const double quiet = std::pow(10, -6 / 20.0), loud = std::pow(10, -3 / 20.0);
    // What is taken back ends, holds, and begins with the joint.
    for (std::size_t heard = 0; heard < joint + queued; heard += 2'500) {
        playAhead(2'500);
        output.revise();
    }
    const auto& all = output.recording();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto frame = double(4'000'000 + (i < joint ? i : i - joint)) / 8'388'608;
        ASSERT_NEAR(all[i], frame * (i < joint ? quiet : loud), 1e-6) << i;
    }
}

// Two tracks in turn, a decibel apart, while the listener turns the evening out on and off.
TEST_F(Revised, PutsNoTrackUnderAnothersGainWhenTheSwitchIsTurned) {
    const auto level = [this](std::int32_t value) {
        return wave({rate, 1, 24, std::vector<std::int32_t>(std::size_t(rate), value)});
    };
    const QStringList tracks{level(1 << 20), level(1 << 22)}; // an eighth and a half
    const std::array<double, 2> gains{-6, -7};
    bool isOn = true;
    const auto playing = [&] { return std::size_t(adopted.size()) % 2; };
    const auto plan = [&] {
        const auto& next = tracks[qsizetype(1 - playing())];
        const double gain = isOn ? gains[1 - playing()] : 0;
        engine.setTrackGain(isOn ? gains[playing()] : 0);
        EXPECT_TRUE(engine.setNextGain(next, gain) || preschedule(next, gain));
    };
    adoptAtEnd = true;
    play(tracks[0]);
    plan();
    std::mt19937 random(11);
    while (adopted.size() < 8) {
        const auto before = adopted.size();
        const auto frames = 500 + random() % 4000;
        playAhead(frames);
        pass(double(frames) / rate);
        const bool isTurned = random() % 4 == 0;
        isOn = isOn != isTurned;
        if (isTurned || adopted.size() != before)
            plan();
    }
    EXPECT_EQ(output.flushes, 0);
    EXPECT_EQ(std::count(output.recording().cbegin(), output.recording().cend(), 0.0f), 0)
        << "no hole where something of the next track had been decoded at a turn";
    int together = 0; // samples in a row; a ramp passes any value, but does not stay there
    int most = 0;
    for (const float sample : output.recording()) {
        const auto is = [sample](double full, double dB) {
            return std::abs(sample - full * std::pow(10, dB / 20)) < 1e-5;
        };
        together = is(0.125, gains[1]) || is(0.5, gains[0]) ? together + 1 : 0;
        most = std::max(most, together);
    }
    EXPECT_LT(most, 3);
}

} // namespace
} // namespace halvane::test
