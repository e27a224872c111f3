// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/sound/heard_clock.h"
#include "platform/sound/sound_output.h"

#include <memory>
#include <vector>

namespace halvane {

/// Plays to nobody at the clock's pace: for a machine on which no sound server answers. Renders on
/// the main thread, a tenth of a second at a time.
class SilentOutput final : public SoundOutput {
    Q_OBJECT

  public:
    /// The clock must outlive it.
    explicit SilentOutput(Clock& clock)
        : m_clock(clock) {}

    Result<> open(const StreamFormat& format, RenderSource& source) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return m_source != nullptr; }
    Result<> start() override;
    void pause() override;
    [[nodiscard]] bool isRunning() const override { return m_timer != nullptr; }
    void flush() override;
    [[nodiscard]] std::int64_t framesRendered() const override { return m_heard.rendered(); }
    [[nodiscard]] std::int64_t framesHeard() const override { return m_heard.heard(m_clock.now()); }
    /// No device, no rate.
    [[nodiscard]] int deviceSampleRate() const override { return 0; }
    /// There is no device to choose but the default.
    Result<> setDevice(std::optional<std::uint32_t> id) override;

  private:
    void pull();

    Clock& m_clock;
    RenderSource* m_source = nullptr; ///< while open
    std::size_t m_blockFrames = 0;
    std::vector<float> m_block; ///< what nobody hears
    HeardClock m_heard;
    std::unique_ptr<Timer> m_timer; ///< while running
};

} // namespace halvane
