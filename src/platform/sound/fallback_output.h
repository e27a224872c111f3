// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/sound/silent_output.h"
#include "platform/sound/sound_output.h"

#include <atomic>
#include <functional>
#include <memory>

namespace halvane {

/// Plays through the sound server where one answers, and silently against the clock where none
/// does. A server that goes away gets a while to come back, in which the sound stands still where
/// it was last heard; then it goes on silently, and through the server again when that appears.
class FallbackOutput final : public SoundOutput {
    Q_OBJECT

  public:
    /// All must outlive it. `serverIsThere` is asked on the main thread.
    FallbackOutput(SoundOutput& server, std::function<bool()> serverIsThere, Clock& clock);

    /// To be called when the answer of `serverIsThere` has changed.
    void serverCameOrWent();

    Result<> open(const StreamFormat& format, RenderSource& source) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return current().isOpen(); }
    Result<> start() override;
    void pause() override;
    [[nodiscard]] bool isRunning() const override {
        return m_waitsToStart || current().isRunning();
    }
    void flush() override { current().flush(); }
    void revise() override { current().revise(); }
    [[nodiscard]] std::int64_t framesRendered() const override {
        return current().framesRendered();
    }
    [[nodiscard]] std::int64_t framesHeard() const override { return current().framesHeard(); }
    [[nodiscard]] int deviceSampleRate() const override;
    Result<> setDevice(std::optional<std::uint32_t> id) override;

  private:
    [[nodiscard]] SoundOutput& current() const {
        return *m_current.load(std::memory_order_acquire);
    }
    void giveUpWaiting();

    SoundOutput& m_server;
    std::function<bool()> m_serverIsThere;
    Clock& m_clock;
    SilentOutput m_silent;
    std::atomic<SoundOutput*> m_current; ///< the one of the two that streams are opened on
    bool m_hasStream = false;            ///< between open and close, also when it has been lost
    bool m_waitsToStart = false;         ///< started while waiting for the server to come back
    std::unique_ptr<Timer> m_waiting;    ///< while a server that went away may come back
};

} // namespace halvane
