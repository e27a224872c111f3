// SPDX-License-Identifier: MIT
#include "audio/analysis/spectrum_tap.h"

#include "audio/analysis/peak_buffer.h"
#include "audio/analysis/spectrum_analyzer.h"
#include "audio/analysis/spectrum_model.h"
#include "audio/analysis/tap_buffer.h"
#include "platform/mailbox.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <pthread.h>
#include <thread>

namespace halvane {

using SteadyClock = std::chrono::steady_clock;

class SpectrumTap::Impl {
  public:
    Impl(SpectrumModel& model, const SoundOutput& output)
        : m_model(model)
        , m_output(output)
        , m_thread([this] { run(); }) {
        m_watching = QObject::connect(&model, &SpectrumModel::watchedChanged, &model,
                                      [this] { changeState([] {}); });
    }

    ~Impl() {
        QObject::disconnect(m_watching);
        changeState([this] { m_quit = true; });
        m_thread.join();
    }

    void beginStream(const StreamFormat& format);
    void discard() {
        if (m_buffer)
            m_buffer->discardBefore(m_output.framesHeard());
    }
    void setActive(bool active) {
        changeState([&] { m_active = active; });
    }
    void push(const float* interleaved, std::size_t frames, std::int64_t streamFrame) noexcept {
        if (!m_buffer)
            return;
        const auto channels = std::size_t(m_format.channels);
        m_buffer->push(interleaved, frames, channels, streamFrame);
        m_peaks->push(interleaved, frames, channels, streamFrame);
    }

  private:
    /// Changes what the analysis thread goes by, and wakes it if it has to know.
    template<typename Change>
    void changeState(Change change) {
        const std::scoped_lock lock(m_mutex);
        const bool wasRunning = m_running;
        change();
        m_running = m_active && m_model.isWatched();
        if (m_quit || m_running != wasRunning)
            m_wake.notify_one();
    }

    void run();
    void analyse(SteadyClock::time_point now);

    SpectrumModel& m_model;
    const SoundOutput& m_output;
    QMetaObject::Connection m_watching;

    // Change only while the output does not render, under m_mutex: the audio thread reads them
    // without it.
    StreamFormat m_format;
    std::unique_ptr<TapBuffer> m_buffer;
    std::unique_ptr<PeakBuffer> m_peaks; ///< there if m_buffer is

    Mailbox m_results;
    std::atomic<bool> m_isShowing = false; ///< a result is on its way to the main thread

    std::mutex m_mutex; ///< guards what follows, between the main and the analysis thread
    std::condition_variable m_wake;
    bool m_active = false;
    bool m_running = false;
    bool m_quit = false;

    // The analysis thread's.
    SpectrumAnalyzer m_analyzer;
    std::array<float, SpectrumAnalyzer::blockFrames> m_block{};
    std::thread m_thread; ///< last, so that it finds the rest made
};

void SpectrumTap::Impl::beginStream(const StreamFormat& format) {
    // Covers the longest way from here to the ear that a sound server is likely to have.
    constexpr int keptSeconds = 2;
    const std::size_t frames = std::size_t(format.sampleRate) * keptSeconds;
    auto buffer = std::make_unique<TapBuffer>(frames);
    auto peaks = std::make_unique<PeakBuffer>(frames);
    const std::scoped_lock lock(m_mutex);
    m_format = format;
    m_buffer = std::move(buffer);
    m_peaks = std::move(peaks);
}

void SpectrumTap::Impl::run() {
    pthread_setname_np(pthread_self(), "halvane-tap");
    // A little more than the interval, so that no result is refused for coming early.
    constexpr auto period = std::chrono::microseconds(33'400);
    std::unique_lock lock(m_mutex);
    // Kept over pauses: a block taken early is refused by the analyzer and never seen.
    auto due = SteadyClock::now();
    while (!m_quit) {
        if (!m_running) {
            m_wake.wait(lock);
            continue;
        }
        const auto now = SteadyClock::now();
        if (now < due) {
            m_wake.wait_until(lock, due);
            continue;
        }
        analyse(now);
        due = now + period;
    }
}

void SpectrumTap::Impl::analyse(SteadyClock::time_point now) {
    if (!m_buffer || m_isShowing.load(std::memory_order_acquire))
        return;
    const std::int64_t heard = m_output.framesHeard();
    const auto samples = m_buffer->newest(heard, m_block);
    const double seconds = std::chrono::duration<double>(now.time_since_epoch()).count();
    auto result = m_analyzer.processIfDue(samples, m_format.sampleRate, seconds);
    if (!result)
        return;
    result->clips = m_peaks->loudest(heard - m_format.sampleRate / 2, heard) > 1;
    m_isShowing.store(true, std::memory_order_release);
    m_results.address().post([this, result = *result] {
        m_isShowing.store(false, std::memory_order_release);
        m_model.publish(result);
    });
}

SpectrumTap::SpectrumTap(SpectrumModel& model, const SoundOutput& output)
    : m_impl(std::make_unique<Impl>(model, output)) {
}

SpectrumTap::~SpectrumTap() = default;

void SpectrumTap::beginStream(const StreamFormat& format) {
    m_impl->beginStream(format);
}

void SpectrumTap::discard() {
    m_impl->discard();
}

void SpectrumTap::setActive(bool active) {
    m_impl->setActive(active);
}

void SpectrumTap::push(const float* interleaved, std::size_t frames,
                       std::int64_t streamFrame) noexcept {
    m_impl->push(interleaved, frames, streamFrame);
}

} // namespace halvane
