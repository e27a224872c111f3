// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/mailbox.h"
#include "platform/sound/heard_clock.h"
#include "platform/sound/pulse_stream.h"
#include "platform/sound/sound_output.h"

#include <deque>
#include <memory>
#include <vector>

namespace halvane {

/// Plays through the sound server. While that is away nothing can be opened, and a stream that was
/// open stands still.
class PulseOutput final : public SoundOutput {
    Q_OBJECT

  public:
    /// Both must outlive it.
    PulseOutput(PulseServer& server, Clock& clock, QObject* parent = nullptr);
    ~PulseOutput() override;

    Result<> open(const StreamFormat& format, RenderSource& source) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return m_stream != nullptr && !m_lost; }
    Result<> start() override;
    void pause() override;
    [[nodiscard]] bool isRunning() const override { return isOpen() && m_running; }
    void flush() override;
    void revise() override;
    [[nodiscard]] std::int64_t framesRendered() const override { return m_heard.rendered(); }
    [[nodiscard]] std::int64_t framesHeard() const override { return m_heard.heard(m_clock.now()); }
    [[nodiscard]] int deviceSampleRate() const override;
    Result<> setDevice(std::optional<std::uint32_t> id) override;
    /// How often the server has run out of sound so far, because the machine was too busy.
    [[nodiscard]] int holes() const { return m_holes; }

  private:
    /// A stream that was closed, while the end of its sound is on its way to the ear. The next one
    /// starts behind that: two sounds at once would be too loud.
    struct Ending {
        std::unique_ptr<PulseStream> stream;
        PulseStream::EndTimes times;
    };

    PulseStream::Events events();
    void dropEnded();
    void streamFailed(int error);
    void streamPlaced(std::uint32_t sink);
    void streamRanDry();
    void checkSampleRate();

    PulseServer& m_server;
    Clock& m_clock;
    HeardClock m_heard;

    Mailbox m_news;                        ///< from the audio thread
    double m_untouchable = 0;              ///< see PulseStream::untouchable
    std::unique_ptr<PulseStream> m_stream; ///< between open and close, also when it has been lost
    std::deque<Ending> m_endings;          ///< of those before, the oldest first
    std::unique_ptr<Timer> m_ended;        ///< the oldest
    std::unique_ptr<Timer> m_startsLater;  ///< behind the newest
    std::uint64_t m_generation = 0;        ///< of the stream; news of an older one is dropped
    bool m_lost = false;
    bool m_running = false;
    std::optional<std::uint32_t> m_streamSink; ///< where the stream plays, once it is known
    QString m_chosenSink; ///< a name, which outlives the server; empty for none
    int m_sampleRate = 0; ///< the device's, as last reported
    int m_holes = 0;
    std::vector<double> m_failures; ///< when streams were lost lately
    QString m_lastFailure;
};

} // namespace halvane
