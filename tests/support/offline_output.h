// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/sound_output.h"

#include <atomic>
#include <functional>
#include <vector>

namespace halvane::test {

/// A sound output that a test pulls by hand and that can misbehave on purpose. Time stands still
/// between the calls: what is rendered is recorded, and is heard only when hear() says so.
class OfflineOutput final : public SoundOutput {
  public:
    // What a listener's machine does.

    /// Renders frames, if running, and records them. Waits for the decoder first, and for a start
    /// that waits for it, so that what is recorded does not depend on this machine's speed.
    void pull(std::size_t frames);
    /// Renders frames at once, ready or not, as a hurried server does.
    void pullHurried(std::size_t frames);
    /// Lets the ear catch up by this many frames, as far as they have been rendered.
    void hear(std::int64_t frames);
    void hearAll() { hear(framesRendered()); }
    /// pull, then hear all of it.
    void play(std::size_t frames) {
        pull(frames);
        hearAll();
    }

    /// Everything rendered since the last clearRecording, interleaved, over all streams.
    [[nodiscard]] const std::vector<float>& recording() const { return m_recording; }
    void clearRecording() { m_recording.clear(); }
    [[nodiscard]] const StreamFormat& format() const { return m_format; }

    // Misbehaviour, until taken back.

    std::optional<QString> openFailure;             ///< what open() fails with
    std::optional<QString> startFailure;            ///< what start() fails with
    std::optional<QString> deviceFailure;           ///< what setDevice() fails with
    std::optional<std::uint32_t> failOpensOfDevice; ///< a device that can be chosen and not opened
    int deviceRate = 48'000;                        ///< the device's own rate, Hz
    bool takesBack = false;                         ///< has what is not heard rendered again
    std::size_t blockFrames = 512;                  ///< the most that one call of render asks for

    /// The server goes away: the stream is lost, and nothing opens until comeBack.
    void vanish();
    void comeBack();
    /// Reports that the stream must be made anew.
    void changeConfiguration();
    /// Called just before and just after each render, on the thread that pulls.
    std::function<void()> enterRender;
    std::function<void()> leaveRender;

    // What was asked of it.

    int opens = 0;
    int starts = 0;
    int flushes = 0;
    std::vector<std::optional<std::uint32_t>> devices; ///< every one that was chosen, in order

    // SoundOutput
    Result<> open(const StreamFormat& format, RenderSource& source) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return m_source != nullptr; }
    Result<> start() override;
    void pause() override;
    [[nodiscard]] bool isRunning() const override { return m_running; }
    void flush() override;
    void revise() override;
    [[nodiscard]] std::int64_t framesRendered() const override { return m_rendered; }
    [[nodiscard]] std::int64_t framesHeard() const override { return m_heard; }
    [[nodiscard]] int deviceSampleRate() const override { return deviceRate; }
    Result<> setDevice(std::optional<std::uint32_t> id) override;

  private:
    void render(std::size_t frames, bool wait);
    std::size_t takeBack();

    StreamFormat m_format;
    RenderSource* m_source = nullptr;
    bool m_running = false;
    bool m_gone = false;
    std::atomic<std::int64_t> m_rendered{0};
    std::atomic<std::int64_t> m_heard{0};
    std::vector<float> m_block;
    std::vector<float> m_recording;
};

} // namespace halvane::test
