// SPDX-License-Identifier: MIT
#include "audio/graph/engine_test.h"
#include "platform/sound/heard_frames.h"
#include "platform/sound/system_sound.h"
#include "platform/system_clock.h"
#include "support/audio_material.h"
#include "support/private_pulse.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace halvane::test {

using namespace Qt::StringLiterals;

/// The whole engine with a real file on a real server; what a sink plays is recorded.
class OnServer : public testing::Test {
  protected:
    static constexpr int rate = 44'100;

    /// Connects to the server and makes the file; before anything else.
    void use(PrivateSoundServer& server) {
        m_server = &server;
        Pcm pcm{rate, 2, 24, {}};
        for (std::int32_t frame = 1; frame <= 60 * rate; ++frame)
            pcm.samples.insert(pcm.samples.end(), 2, frame);
        path = folder.filePath(u"numbered.wav"_s);
        writeWave(pcm, path);
        sound = std::make_unique<SystemSound>(clock, server.address());
        ASSERT_TRUE(waitFor([&] { return sound->server().isReady(); }));
        engine = std::make_unique<AudioPlaybackEngine>(sound->output(), clock);
        engine->setVolume(1);
        QObject::connect(engine.get(), &AudioPlaybackEngine::graphRebuilt, [this] { ++rebuilds; });
        QObject::connect(engine.get(), &AudioPlaybackEngine::playbackInterrupted,
                         [this](const QString& why) { interruptions << why; });
    }
    void play() {
        ASSERT_TRUE(open(*engine, path));
        ASSERT_TRUE(engine->scheduleSegment(0, true));
        hear(1);
    }
    void hear(double seconds) {
        const double goal = engine->elapsedSeconds() + seconds;
        ASSERT_TRUE(waitFor([&] { return engine->elapsedSeconds() >= goal; }))
            << engine->elapsedSeconds() << " of " << goal;
    }
    [[nodiscard]] std::int64_t position() const {
        return std::llround(engine->elapsedSeconds() * rate);
    }
    std::uint32_t sinkNamed(const QString& name) {
        EXPECT_TRUE(waitFor([&] { return sound->server().sink(name) != nullptr; }));
        return sound->server().sink(name)->index;
    }
    std::unique_ptr<MonitorRecording> record(const QString& sink) {
        return m_server->record(sink, rate);
    }
    /// The stretches heard, without the few milliseconds in which playback fades in.
    std::vector<HeardRun> runs(const MonitorRecording& recording) {
        std::vector<HeardRun> whole;
        std::int64_t before = 0;
        for (const HeardRun& run : heardRuns(recording.samples(), 2)) {
            if (run.first <= 0 || run.frames < rate / 20) { // faded
                before += run.silenceBefore + run.frames;
                continue;
            }
            whole.push_back(run);
            whole.back().silenceBefore += std::exchange(before, 0);
        }
        return whole;
    }
    std::vector<HeardRun> runsToTheEnd(const MonitorRecording& recording) {
        EXPECT_TRUE(recording.waitForFrames(rate));
        return runs(recording);
    }
    /// Frames of silence, or left out, between what was heard.
    static std::int64_t largestGap(const std::vector<HeardRun>& heard) {
        std::int64_t gap = heard.empty() ? std::numeric_limits<std::int64_t>::max() : 0;
        for (std::size_t i = 1; i < heard.size(); ++i)
            gap = std::max({gap, heard[i].silenceBefore, heard[i].first - heard[i - 1].last() - 1});
        return gap;
    }
    void restart() {
        m_server->kill();
        ASSERT_TRUE(waitFor([&] { return !sound->output().isOpen(); }));
        m_server->start();
    }
    void playsAndSurvivesRestarts();

    QTemporaryDir folder;
    QString path;
    SystemClock clock;
    std::unique_ptr<SystemSound> sound;
    std::unique_ptr<AudioPlaybackEngine> engine;
    int rebuilds = 0;
    QStringList interruptions;

    static constexpr int pauses = 7;
    /// Each a second after the one before, which is time enough for what is queued to be heard.
    void pauseAgainAndAgain() {
        ASSERT_TRUE(open(*engine, path));
        ASSERT_TRUE(engine->scheduleSegment(40, true));
        for (int turn = 0; turn < pauses; ++turn) {
            if (turn > 0) {
                ASSERT_TRUE(engine->resume());
            }
            hear(0.5);
            engine->pause();
            ASSERT_FALSE(waitFor([&] { return engine->isPlaying(); }, 1000));
        }
    }
    /// How long the sound takes from three quarters of what it was to silence, before each long
    /// one; in ms, the shortest first.
    static std::vector<double> lengthsOfEnds(const std::vector<float>& samples) {
        std::vector<double> ends;
        std::size_t silence = 0;
        for (std::size_t i = 0; i < samples.size(); i += 2) {
            silence = std::abs(samples[i]) < 0.002F ? silence + 1 : 0;
            if (silence != rate / 5)
                continue;
            const std::size_t last = i / 2 - silence;
            std::size_t loud = last;
            while (loud > 0 && std::abs(samples[2 * loud]) < 0.18F)
                --loud;
            if (loud > 0)
                ends.push_back(double(last - loud) * 1000 / rate);
        }
        std::sort(ends.begin(), ends.end());
        if (!ends.empty())
            std::printf("%zu ends, in the middle %.1f ms, the shortest %.1f ms\n", ends.size(),
                        ends[ends.size() / 2], ends.front());
        return ends;
    }

    /// As somebody does who holds a key down, at these intervals in ms.
    void seekAgainAndAgain(std::initializer_list<int> intervals) {
        ASSERT_TRUE(open(*engine, path));
        ASSERT_TRUE(engine->scheduleSegment(40, true));
        hear(0.5);
        for (const int interval : intervals) {
            for (int turn = 0; turn < 10; ++turn) {
                ASSERT_TRUE(engine->scheduleSegment(turn % 2 == 0 ? 45 : 40, true));
                ASSERT_FALSE(waitFor([&] { return !engine->isPlaying(); }, interval));
            }
        }
        ASSERT_FALSE(waitFor([&] { return !engine->isPlaying(); }, 1000));
    }
    /// The same from file to file, each of another rate than the one before and so on a stream of
    /// its own.
    void skipAgainAndAgain(int interval) {
        const QString other = folder.filePath(u"other.wav"_s);
        writeWave(Pcm{48'000, 2, 24, std::vector<std::int32_t>(20 * 48'000, 1 << 21)}, other);
        for (int turn = 0; turn < 12; ++turn) {
            const bool isOther = turn % 2 == 1;
            ASSERT_TRUE(open(*engine, isOther ? other : path));
            ASSERT_TRUE(engine->scheduleSegment(isOther ? 0.1 : 40, true));
            ASSERT_FALSE(waitFor([&] { return !engine->isPlaying(); }, interval));
        }
        engine->unload();
        ASSERT_FALSE(waitFor([&] { return engine->isPlaying(); }, 1000));
    }
    /// No step that no fade makes: the shortest takes 5 ms to the quarter of full scale that the
    /// numbers are there.
    static void expectNoEdges(const std::vector<float>& samples) {
        int edges = 0;
        int loud = 0;
        for (std::size_t i = 2; i < samples.size(); i += 2) {
            edges += std::abs(samples[i] - samples[i - 2]) > 0.25 / 100;
            loud += std::abs(samples[i]) > 0.15;
        }
        EXPECT_EQ(edges, 0);
        EXPECT_GT(loud, 2 * rate);
        std::printf("%d edges in %.1f s of sound\n", edges, double(loud) / rate);
    }

  private:
    PrivateSoundServer* m_server = nullptr;
};

void OnServer::playsAndSurvivesRestarts() {
    auto recording = record(u"null44100"_s);
    play();
    EXPECT_EQ(engine->outputSampleRate(), rate);

    // In the middle of the sound: it goes on by itself.
    restart();
    const double back = clock.now();
    const auto lost = position();
    EXPECT_TRUE(engine->isPlaying());
    ASSERT_TRUE(waitFor([&] { return rebuilds > 0; }));
    const double silence = clock.now() - back;
    EXPECT_LT(silence, 1);
    EXPECT_NEAR(double(position()), double(lost), 0.02 * rate);
    recording = record(u"null44100"_s);
    hear(1.5);
    engine->pause();
    const auto after = runsToTheEnd(*recording);
    const auto gap = largestGap(after);
    EXPECT_LT(gap, 0.1 * rate) << "of a busy machine at most";

    // While it is paused, so that the recorder hears where it goes on.
    const auto paused = position();
    restart();
    recording = record(u"null44100"_s);
    ASSERT_TRUE(waitFor([&] { return static_cast<bool>(engine->resume()); }));
    hear(1);
    engine->pause();
    const auto resumed = runsToTheEnd(*recording);
    ASSERT_FALSE(resumed.empty());
    const auto wanted = paused + 1 + rate / 200; // behind the fade
    EXPECT_NEAR(double(resumed[0].first), double(wanted), 0.002 * rate);
    EXPECT_NEAR(double(resumed.back().last()), double(position()), 0.1 * rate);
    EXPECT_TRUE(interruptions.isEmpty());
    std::printf(
        "back after %.0f ms; largest gap once it plays %lld; %lld frames off the position\n",
        silence * 1000, static_cast<long long>(gap),
        static_cast<long long>(resumed[0].first - wanted));
}

class OnPulseAudio : public OnServer {
  protected:
    OnPulseAudio() { use(server); }
    /// Plays, for a second to begin with, on a sink that takes back what is not heard yet. The
    /// recording is close to the ear.
    std::unique_ptr<MonitorRecording> playOnACard() {
        server.loadRevisingSink(u"card"_s, rate);
        EXPECT_TRUE(engine->setOutputDevice(sinkNamed(u"card"_s)));
        auto recording = server.record(u"card"_s, rate, 2, 5);
        EXPECT_TRUE(open(*engine, path));
        EXPECT_TRUE(
            engine->scheduleSegment(40, true)); // the numbers are a fifth of full scale there
        hear(1);
        return recording;
    }
    PrivatePulse server;
};

TEST_F(OnPulseAudio, GoesOnFromTheHeardPositionAfterRestarts) {
    playsAndSurvivesRestarts();
}

TEST_F(OnPulseAudio, EndsSoftlyWithTheProgram) {
    const auto recording = playOnACard();
    engine.reset();
    sound.reset();
    ASSERT_TRUE(recording->waitForFrames(rate / 2));
    const auto samples = recording->samples();
    const auto isSound = [](float sample) { return sample != 0; };
    const auto end = std::find_if(samples.rbegin(), samples.rend(), isSound);
    ASSERT_GT(samples.rend() - end, rate);
    const auto loudest = [&](int from, int to) { // ms before the end
        const auto first = end + 2 * from * rate / 1000;
        return std::abs(*std::max_element(first, end + 2 * to * rate / 1000, [](float a, float b) {
            return std::abs(a) < std::abs(b);
        }));
    };
    EXPECT_LT(loudest(0, 2), 0.5F * loudest(20, 30)) << "cut off";
}

class OnPipeWire : public OnServer {
  protected:
    OnPipeWire() { use(server); }
    PrivatePipeWire server;
};

TEST_F(OnPulseAudio, HearsChangesAtOnceAndWithoutAnEdge) {
    const auto recording = playOnACard();
    std::vector<std::int64_t> at; // positions when something was asked for
    const auto when = [&] { at.push_back(position()); };
    const auto rest = [&] { ASSERT_TRUE(recording->waitForFrames(rate / 2)); };
    when();
    engine->setVolume(0);
    hear(0.5);
    when();
    engine->setVolume(1);
    hear(0.5);
    when();
    engine->pause();
    rest();
    when();
    ASSERT_TRUE(engine->resume());
    hear(0.5);
    when();
    ASSERT_TRUE(engine->scheduleSegment(50, true));
    when();
    hear(0.5);
    when();
    engine->unload();
    const auto heard = runsToTheEnd(*recording);
    ASSERT_EQ(heard.size(), 4U);
    // Each stretch ends or begins where it was asked to.
    const std::int64_t late[] = {heard[0].last() - at[0], heard[1].first - at[1],
                                 heard[1].last() - at[2], heard[2].first - at[3],
                                 heard[2].last() - at[4], heard[3].first - at[5],
                                 heard[3].last() - at[6]};
    std::printf("mute, loud again, pause, resume, seek away, seek to, stop: heard after");
    for (const auto frames : late) {
        EXPECT_GT(frames, -0.02 * rate);
        EXPECT_LT(frames, 0.15 * rate);
        std::printf(" %.0f", double(frames) * 1000 / rate);
    }
    // From silence to a quarter of full scale takes 5 ms, and 10 ms back. The recorder misses the
    // first milliseconds after a pause.
    const auto samples = recording->samples();
    int edges = 0;
    for (auto i = std::size_t(2 * (heard[0].silenceBefore + rate / 10)); i < samples.size(); i += 2)
        edges += std::abs(samples[i] - samples[i - 2]) > 0.25 / 100;
    EXPECT_LE(edges, 1);
    std::printf(" ms\n");
}

TEST_F(OnPipeWire, GoesOnFromTheHeardPositionAfterRestarts) {
    playsAndSurvivesRestarts();
}

TEST_F(OnPipeWire, PlaysOnThroughChangesOfTheSinksRate) {
    const auto recording = record(u"null44100"_s);
    play();
    for (const int forced : {96'000, 48'000}) {
        server.forceRate(forced);
        hear(0.7);
    }
    engine->pause();
    EXPECT_TRUE(interruptions.isEmpty());
    // This server drops one of its own blocks while it changes.
    const auto heard = runsToTheEnd(*recording);
    ASSERT_FALSE(heard.empty());
    for (std::size_t i = 1; i < heard.size(); ++i) {
        const auto left = heard[i].first - heard[i - 1].last() - 1;
        EXPECT_LT(heard[i].silenceBefore, 0.1 * rate);
        EXPECT_GT(left, 0) << "heard twice";
        EXPECT_LT(left, 0.1 * rate);
        std::printf("a sink that changes its rate: %.0f ms of silence, %.0f ms left out\n",
                    double(heard[i].silenceBefore) * 1000 / rate, double(left) * 1000 / rate);
    }
    EXPECT_NEAR(double(heard.back().last()), double(position()), 0.1 * rate);
}

// A server that keeps the blocks it has taken lets the others be written again. It leaves out a
// block of its own now and then, where it has no real-time priority.
TEST_F(OnPipeWire, FadesOutBeforeAPause) {
    const auto recording = record(u"null44100"_s);
    pauseAgainAndAgain();
    const auto ends = lengthsOfEnds(recording->samples());
    ASSERT_GE(ends.size(), std::size_t(pauses - 1));
    EXPECT_GT(ends[ends.size() / 2], 2) << "cut off";
}

// What the pipe holds is lost to the program, and what is behind that is written again. At last the
// program quits while it plays.
TEST_F(OnPulseAudio, FadesOutBeforeAPauseWhereTheSinkKeepsWhatItHas) {
    const auto listener = server.loadPipeSink(u"pipe"_s, rate);
    ASSERT_TRUE(engine->setOutputDevice(sinkNamed(u"pipe"_s)));
    pauseAgainAndAgain();
    ASSERT_TRUE(engine->resume());
    hear(0.5);
    engine.reset();
    sound.reset();
    ASSERT_FALSE(waitFor([] { return false; }, 1000));
    const auto ends = lengthsOfEnds(listener->samples());
    ASSERT_GE(ends.size(), std::size_t(pauses));
    EXPECT_GT(ends.front(), 2) << "cut off";
}

TEST_F(OnPulseAudio, EndsSoftlyBeforeEachOfManyQuickSeeks) {
    const auto listener = server.loadPipeSink(u"pipe"_s, rate);
    ASSERT_TRUE(engine->setOutputDevice(sinkNamed(u"pipe"_s)));
    seekAgainAndAgain({130, 100, 50, 20});
    expectNoEdges(listener->samples());
}

TEST_F(OnPulseAudio, EndsSoftlyBetweenFilesOfDifferentRates) {
    const auto listener = server.loadPipeSink(u"pipe"_s, rate);
    ASSERT_TRUE(engine->setOutputDevice(sinkNamed(u"pipe"_s)));
    for (const int interval : {600, 300, 50, 20})
        skipAgainAndAgain(interval);
    const auto heard = listener->samples();
    expectNoEdges(heard);
    EXPECT_LT(*std::max_element(heard.begin(), heard.end()), 0.3) << "two sounds at once";
    EXPECT_TRUE(waitFor([this] { return server.streams() <= 1; })) << "the present one";
}

TEST_F(OnPipeWire, EndsSoftlyBeforeEachOfManyQuickSeeks) {
    const auto recording = record(u"null44100"_s);
    seekAgainAndAgain({130, 100, 50, 20});
    expectNoEdges(recording->samples());
}

TEST_F(OnPipeWire, EndsSoftlyBetweenFilesOfDifferentRates) {
    const auto recording = record(u"null44100"_s);
    for (const int interval : {600, 300, 100, 50, 20})
        skipAgainAndAgain(interval);
    expectNoEdges(recording->samples());
    EXPECT_TRUE(waitFor([this] { return server.streams() <= 1; })) << "the present one";
}

TEST_F(OnPulseAudio, GainsSwitchAtTheJointsOwnSample) {
    const auto level = [this](const QString& name) {
        const QString file = folder.filePath(name);
        writeWave(Pcm{rate, 2, 24, std::vector<std::int32_t>(2 * rate, 1 << 20)}, file); // 1/8
        return file;
    };
    QObject::connect(engine.get(), &AudioPlaybackEngine::trackEnded,
                     [this] { engine->adoptPrescheduledTrack(); });
    const auto recording = record(u"null44100"_s);
    engine->setTrackGain(-6);
    ASSERT_TRUE(open(*engine, level(u"a.wav"_s)));
    ASSERT_TRUE(engine->scheduleSegment(0, true));
    ASSERT_TRUE(preschedule(*engine, level(u"b.wav"_s), 4));
    ASSERT_TRUE(waitFor([&] { return !engine->isPlaying(); }));
    ASSERT_TRUE(recording->waitForFrames(2 * rate));
    std::array<int, 2> frames{};
    int elsewhere = 0;
    const auto samples = recording->samples();
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        const float sample = samples[i];
        const auto is = [sample](double dB) {
            return std::abs(sample - 0.125 * std::pow(10, dB / 20)) < 1e-4;
        };
        frames[0] += is(-6);
        frames[1] += is(4);
        elsewhere += sample != 0 && !is(-6) && !is(4);
    }
    EXPECT_EQ(frames[1], rate) << "all of the second file under its own gain";
    EXPECT_GT(frames[0], rate - rate / 20) << "and the first, whose beginning a recorder misses";
    EXPECT_EQ(elsewhere, 0);
}

TEST_F(OnPulseAudio, SwitchesDevicesWithAShortSilence) {
    // Both ways, so that the recorder of one sink sees the sound leave and come back.
    const auto recording = record(u"null44100"_s);
    play();
    const auto other = sinkNamed(u"null48000"_s);
    const auto home = sinkNamed(u"null44100"_s);
    const double before = engine->elapsedSeconds();
    ASSERT_TRUE(engine->setOutputDevice(home)); // a whole switch: a new stream from the position
    EXPECT_NEAR(engine->elapsedSeconds(), before, 0.02);
    hear(1);
    int rateChanges = 0;
    QObject::connect(engine.get(), &AudioPlaybackEngine::outputSampleRateChanged,
                     [&] { ++rateChanges; });
    ASSERT_TRUE(engine->setOutputDevice(other));
    hear(0.5);
    EXPECT_TRUE(waitFor([&] { return engine->outputSampleRate() == 48'000; }));
    EXPECT_EQ(rateChanges, 1);
    ASSERT_TRUE(engine->setOutputDevice(home));
    hear(1);
    engine->pause();
    const auto heard = runsToTheEnd(*recording);
    ASSERT_GE(heard.size(), 3U); // a hole of a busy machine adds one
    // The sink plays out its block after the old stream has ended, and the new one begins at the
    // position that had been heard.
    EXPECT_LT(heard[1].silenceBefore, 0.3 * rate);
    EXPECT_LE(heard[1].first, heard[0].last() + 0.05 * rate);
    EXPECT_GE(heard[1].first, heard[0].last() - 0.15 * rate);
    std::printf("silence of a switch %.0f ms, sound heard twice %.0f ms\n",
                heard[1].silenceBefore * 1000.0 / rate,
                double(heard[0].last() + 1 - heard[1].first) * 1000 / rate);
}

TEST_F(OnPulseAudio, ASinkThatGoesAwayAndComesBackAtAnotherRate) {
    const auto module = server.loadNullSink(u"dac"_s, rate, u"DAC"_s);
    ASSERT_TRUE(engine->setOutputDevice(sinkNamed(u"dac"_s)));
    const auto onDevice = record(u"dac"_s);
    const auto onDefault = record(u"null44100"_s);
    play();
    server.unload(module);
    hear(1);
    EXPECT_TRUE(waitFor([&] { return engine->outputSampleRate() == rate; }));
    const auto left = runs(*onDevice); // whose recorder is moved to the default's monitor, too
    ASSERT_FALSE(left.empty());

    server.loadNullSink(u"dac"_s, 96'000, u"DAC"_s); // as a profile change does
    const auto back = position();
    ASSERT_TRUE(engine->setOutputDevice(sinkNamed(u"dac"_s)));
    EXPECT_TRUE(waitFor([&] { return engine->outputSampleRate() == 96'000; }));
    EXPECT_NEAR(double(position()), double(back), 0.3 * rate);
    hear(0.5);
    EXPECT_TRUE(engine->isPlaying());
    EXPECT_TRUE(interruptions.isEmpty());
    const auto went = runs(*onDefault);
    ASSERT_FALSE(went.empty());
    EXPECT_LT(largestGap(went), 0.1 * rate);
    EXPECT_NEAR(double(went[0].first), double(left[0].last() + 1), 0.3 * rate);
    std::printf("a sink that goes away: %.0f ms of sound %s\n",
                std::abs(double(went[0].first - 1 - left[0].last())) * 1000 / rate,
                went[0].first > left[0].last() ? "lost" : "heard twice");
}

} // namespace halvane::test
