// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/heard_clock.h"
#include "platform/sound/pulse_server.h"
#include "platform/sound/sound_output.h"

#include <functional>
#include <memory>
#include <optional>

struct pa_defer_event;
struct pa_mainloop_api;
struct pa_operation;
struct pa_stream;
struct pa_time_event;

namespace halvane {

/// One playback stream on the server, from its making to its end. Operations on the main thread;
/// the source is pulled, and the clock of what is heard kept, on the audio thread.
class PulseStream {
  public:
    /// Called on the audio thread.
    struct Events {
        std::function<void(int error)> failed;          ///< libpulse's code; nothing more comes
        std::function<void(std::uint32_t sink)> placed; ///< made on, or moved to, this sink
        std::function<void(bool silence)> asked; ///< to be silent for another's sake, or no longer
        std::function<void()> ranDry;            ///< the sound has a hole: it came too late
    };

    /// Asks for a stream on a sink (empty: where the server sees fit), standing still at first.
    /// `untouchable` is what the stream before has found, until this one finds it out. Everything
    /// handed in must outlive it.
    static Result<std::unique_ptr<PulseStream>>
    open(PulseServer& server, const Clock& clock, const StreamFormat& format, const QString& sink,
         RenderSource& source, HeardClock& heard, double untouchable, Events events);
    /// After it nothing is called any more.
    ~PulseStream();

    /// It plays on this sink now.
    void placedOn(const PulseSink& sink);

    void start();
    void pause();
    void flush();
    void revise();
    /// The times of an end that is still on its way to the ear.
    struct EndTimes {
        double heard = 0;  ///< about then
        double surely = 0; ///< heard by then, however late the server is
    };
    [[nodiscard]] std::optional<EndTimes> ending() const;
    /// How much of what is queued the server won't take back, in seconds, as far as is known.
    [[nodiscard]] double untouchable() const;
    /// Calls and counts nothing any more; what is queued is heard as long as this lives.
    void leave();

  private:
    /// The sound ends at a frame that is on its way to the ear; behind it there is silence.
    struct Ending {
        std::int64_t frame = 0;
        EndTimes times;
    };

    PulseStream(PulseServer& server, const Clock& clock, const StreamFormat& format,
                RenderSource& source, HeardClock& heard, double untouchable, Events events);
    bool connect(const StreamFormat& format, const QString& sink);
    std::size_t takeBack();
    using Fill = void (RenderSource::*)(float* interleaved, std::size_t frames) noexcept;
    void write(std::size_t frames, Fill fill, std::size_t takenBack);
    void uncork();
    bool endSound();
    void forgetEnding();

    // Audio thread
    void stateChanged();
    void pull();
    void requestTiming();
    void restHeard();
    void timingTold();
    void suspendedChanged();
    void soonAgain();

    PulseServer& m_server;
    const Clock& m_clock;
    RenderSource& m_source;
    HeardClock& m_heard;
    const Events m_events;
    const std::size_t m_frameBytes;
    const double m_sampleRate;
    const bool m_takesBlocks;

    // Under the server's lock
    pa_stream* m_stream = nullptr;
    bool m_sinkKeeps = false; ///< what it has taken
    bool m_running = false;
    bool m_revises = false; ///< what is queued is to be rendered again
    std::optional<Ending> m_ending;
    pa_time_event* m_endingHeard = nullptr; ///< stands still then
    double m_block = 0;                     ///< frames that the server last asked for
    double m_untouchable;                   ///< s; what the server has taken and won't take back
    double m_uncorkedAt = 0;
    pa_mainloop_api* m_api = nullptr;
    pa_defer_event* m_wake = nullptr; ///< has the audio thread pull
    pa_operation* m_timing = nullptr; ///< a question for the timing that is under way
    double m_nextTiming = 0;          ///< when to ask next
    int m_reports = 0;                ///< since the sound last began or moved
};

} // namespace halvane
