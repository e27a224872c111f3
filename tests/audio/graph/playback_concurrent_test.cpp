// SPDX-License-Identifier: MIT
#include "audio/graph/engine_test.h"
#include "audio/graph/latest_value.h"

#include <array>
#include <atomic>
#include <mutex>
#include <random>
#include <thread>

namespace halvane::test {
namespace {

TEST(LatestValue, IsSeenWholeAndNeverOlderThanBefore) {
    struct Values {
        std::uint64_t first = 0;
        std::array<std::uint64_t, 30> copies{};
    };
    constexpr std::uint64_t last = 20'000;
    LatestValue<Values> slot;
    EXPECT_EQ(slot.take(), nullptr);
    std::thread writer([&slot] {
        for (std::uint64_t i = 1; i <= last; ++i) {
            Values values{i, {}};
            values.copies.fill(i);
            slot.publish(values);
        }
    });
    std::uint64_t seen = 0;
    bool whole = true, forward = true;
    while (seen < last) {
        const auto* values = slot.take();
        if (!values)
            continue;
        forward = forward && values->first > seen;
        seen = values->first;
        for (const auto copy : values->copies)
            whole = whole && copy == seen;
    }
    writer.join();
    EXPECT_TRUE(whole);
    EXPECT_TRUE(forward);
    EXPECT_EQ(slot.take(), nullptr);
}

/// An output whose audio thread pulls as fast as it can, under a lock as a sound server's client
/// library has it. The ear is a few blocks behind.
class RunningOutput final : public SoundOutput {
  public:
    RunningOutput() = default;
    ~RunningOutput() override {
        m_quit = true;
        m_thread.join();
    }

    Result<> open(const StreamFormat& format, RenderSource& source) override {
        const std::lock_guard lock(mutex);
        m_source = &source;
        m_channels = std::size_t(format.channels);
        flushedAt = 0;
        m_heard = 0;
        m_rendered = 0;
        samples.clear();
        return {};
    }
    void close() override {
        const std::lock_guard lock(mutex);
        m_running = false;
        m_source = nullptr;
    }
    [[nodiscard]] bool isOpen() const override { return m_source != nullptr; }
    Result<> start() override {
        const std::lock_guard lock(mutex);
        m_running = true;
        return {};
    }
    void pause() override {
        const std::lock_guard lock(mutex);
        m_running = false;
    }
    [[nodiscard]] bool isRunning() const override { return m_running; }
    void flush() override {
        const std::lock_guard lock(mutex);
        m_heard = m_rendered.load();
        flushedAt = m_heard;
    }
    [[nodiscard]] std::int64_t framesRendered() const override { return m_rendered; }
    [[nodiscard]] std::int64_t framesHeard() const override { return m_heard; }
    [[nodiscard]] int deviceSampleRate() const override { return 48'000; }
    Result<> setDevice(std::optional<std::uint32_t>) override { return {}; }

    std::mutex mutex;           ///< held while rendering; guards what follows
    std::vector<float> samples; ///< the first channel of the stream
    std::int64_t flushedAt = 0; ///< what lies before this frame was not all heard

  private:
    void run() {
        std::mt19937 random(5);
        std::vector<float> block(512 * 8);
        while (!m_quit) {
            const std::lock_guard lock(mutex);
            if (!m_running) {
                std::this_thread::yield();
                continue;
            }
            const std::size_t frames = 1 + random() % 512;
            m_source->render(block.data(), frames);
            for (std::size_t i = 0; i < frames; ++i)
                samples.push_back(block[i * m_channels]);
            m_rendered += std::int64_t(frames);
            m_heard = std::max<std::int64_t>(m_heard, m_rendered - 700);
        }
    }

    RenderSource* m_source = nullptr;
    std::size_t m_channels = 0;
    bool m_running = false;
    std::atomic<std::int64_t> m_rendered{0};
    std::atomic<std::int64_t> m_heard{0};
    std::atomic<bool> m_quit{false};
    std::thread m_thread{[this] { run(); }};
};

TEST(PlaybackConcurrent, ThePositionIsThatOfTheSampleBeingHeard) {
    const QTemporaryDir folder;
    const auto path = folder.filePath(QStringLiteral("a.wav"));
    writeWave(numbered(4'000'000), path);
    ManualClock clock;
    RunningOutput output;
    AudioPlaybackEngine engine(output, clock);
    engine.setVolume(1);
    ASSERT_TRUE(open(engine, path));
    ASSERT_TRUE(engine.scheduleSegment(0, true));

    std::mt19937 random(11);
    int compared = 0;
    for (int i = 0; i < 4000 || compared < 200; ++i) {
        ASSERT_LT(i, 4'000'000) << "nothing is ever heard";
        switch (random() % 200) {
        case 0:
            ASSERT_TRUE(engine.scheduleSegment(double(random() % 40), true));
            break;
        case 1:
            engine.pause();
            break;
        case 2:
            ASSERT_TRUE(engine.setOutputDevice(random() % 3));
            break;
        case 3:
            engine.setEQ(random() % 2 == 0, {}, 0); // flat
            engine.setTrackGain(0);
            break;
        case 4:
            if (random() % 2 == 0)
                preschedule(engine, path);
            else // dropped while it is being opened
                engine.prescheduleNextIfCompatible(path, 0);
            engine.invalidatePreschedule();
            break;
        default:
            ASSERT_TRUE(engine.resume());
        }
        const std::lock_guard lock(output.mutex); // so that nothing moves between the two
        const auto heard = output.framesHeard();
        const auto position = std::llround(engine.elapsedSeconds() * 44'100);
        // Silence tells nothing, and after a hole or a seek the sound fades in.
        if (heard < output.flushedAt + 300)
            continue;
        const auto sample = output.samples[std::size_t(heard - 1)];
        const auto before = output.samples[std::size_t(heard - 300)];
        if (sample == 0 || frameOf(sample) - frameOf(before) != 299)
            continue;
        ASSERT_EQ(position, frameOf(sample)) << "after " << i << " steps";
        ++compared;
    }
}

} // namespace
} // namespace halvane::test
