// SPDX-License-Identifier: MIT
#include "platform/sound/pulse_stream.h"

#include "platform/sound/pulse_format.h"

#include <pulse/context.h>
#include <pulse/def.h>
#include <pulse/error.h>
#include <pulse/mainloop-api.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/rtclock.h>
#include <pulse/stream.h>
#include <pulse/thread-mainloop.h>

#include <algorithm>
#include <string_view>

namespace halvane {

namespace {

// From the render to the ear. The server spends what the request size leaves of it on few, long
// blocks: four or five wake-ups a second. What is queued is rendered again when something changes;
// a server that takes blocks takes nothing of them back, and has less on its way for that. It keeps
// a good half of what is asked for in the stream, which is room for a block and what replaces
// others.
constexpr double latencySeconds = 0.48;
constexpr double blockLatencySeconds = 0.32;
static_assert(latencySeconds * 1000 <= RenderSource::queueMilliseconds);
constexpr double requestSeconds = 0.02;

// What is closer to the ear than this can't be replaced in time: the server has to be told, and the
// device's buffer to be written again.
constexpr double replaceableFrom = 0.04;

// How often to ask what has been heard. The sound card's clock strays from the computer's by less
// than a tenth of a millisecond in a second, but is not known at first.
constexpr int earlyReports = 5;
constexpr double earlyInterval = 0.05;
constexpr double interval = 4;

PulseStream* self(void* data) {
    return static_cast<PulseStream*>(data);
}

void release(pa_operation* operation) {
    if (operation)
        pa_operation_unref(operation);
}

pa_stream* newStream(pa_context* context, const StreamFormat& format) {
    const pa_sample_spec spec = sampleSpec(format);
    const pa_channel_map map = channelMap(format);
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "music");
    pa_stream* stream = pa_stream_new_with_proplist(context, "Playback", &spec, &map, properties);
    pa_proplist_free(properties);
    return stream;
}

// A stream that the server is still making can't be disconnected, and would stay for good. Its
// context keeps it until it is there.
void disconnect(pa_stream* stream) {
    if (pa_stream_get_state(stream) != PA_STREAM_CREATING) {
        pa_stream_disconnect(stream);
        return;
    }
    pa_stream_set_state_callback(
        stream,
        [](pa_stream* made, void*) {
            if (pa_stream_get_state(made) == PA_STREAM_READY)
                pa_stream_disconnect(made);
        },
        nullptr);
}

} // namespace

Result<std::unique_ptr<PulseStream>> PulseStream::open(PulseServer& server, const Clock& clock,
                                                       const StreamFormat& format,
                                                       const QString& sink, RenderSource& source,
                                                       HeardClock& heard, double untouchable,
                                                       Events events) {
    std::unique_ptr<PulseStream> stream(
        new PulseStream(server, clock, format, source, heard, untouchable, std::move(events)));
    const PulseServer::Lock lock(server);
    if (!server.context())
        return Failure{QString::fromUtf8(pa_strerror(PA_ERR_CONNECTIONREFUSED))};
    if (stream->connect(format, sink))
        return stream;
    // Destroying it takes the lock, which may be taken again by the thread that holds it.
    return Failure{QString::fromUtf8(pa_strerror(pa_context_errno(server.context())))};
}

PulseStream::PulseStream(PulseServer& server, const Clock& clock, const StreamFormat& format,
                         RenderSource& source, HeardClock& heard, double untouchable, Events events)
    : m_server(server)
    , m_clock(clock)
    , m_source(source)
    , m_heard(heard)
    , m_events(std::move(events))
    , m_frameBytes(sizeof(float) * std::size_t(format.channels))
    , m_sampleRate(format.sampleRate)
    , m_takesBlocks(server.sinks().takesBlocks)
    , m_untouchable(untouchable) {
}

bool PulseStream::connect(const StreamFormat& format, const QString& sink) {
    m_stream = newStream(m_server.context(), format);
    if (!m_stream)
        return false;
    pa_stream_set_state_callback(
        m_stream, [](pa_stream*, void* data) { self(data)->stateChanged(); }, this);
    pa_stream_set_write_callback(
        m_stream,
        [](pa_stream*, std::size_t bytes, void* data) {
            self(data)->m_block = double(bytes) / double(self(data)->m_frameBytes);
            self(data)->pull();
        },
        this);
    pa_stream_set_started_callback(
        m_stream, [](pa_stream*, void* data) { self(data)->soonAgain(); }, this);
    pa_stream_set_underflow_callback(
        m_stream,
        [](pa_stream*, void* data) {
            self(data)->m_heard.runDry();
            self(data)->m_events.ranDry();
            self(data)->soonAgain();
        },
        this);
    pa_stream_set_suspended_callback(
        m_stream, [](pa_stream*, void* data) { self(data)->suspendedChanged(); }, this);
    pa_stream_set_moved_callback(
        m_stream,
        [](pa_stream* stream, void* data) {
            self(data)->m_events.placed(pa_stream_get_device_index(stream));
            self(data)->soonAgain();
        },
        this);

    pa_stream_set_event_callback(
        m_stream,
        [](pa_stream*, const char* name, pa_proplist*, void* data) {
            const std::string_view event(name);
            if (event == PA_STREAM_EVENT_REQUEST_CORK || event == PA_STREAM_EVENT_REQUEST_UNCORK)
                self(data)->m_events.asked(event == PA_STREAM_EVENT_REQUEST_CORK);
        },
        this);

    m_api = pa_threaded_mainloop_get_api(m_server.loop());
    m_wake = m_api->defer_new(
        m_api,
        [](pa_mainloop_api* api, pa_defer_event* wake, void* data) {
            api->defer_enable(wake, 0);
            self(data)->pull();
        },
        this);
    m_api->defer_enable(m_wake, 0);

    const auto bytes = [&](double seconds) {
        return std::uint32_t(seconds * m_sampleRate) * std::uint32_t(m_frameBytes);
    };
    constexpr auto serverDecides = std::uint32_t(-1);
    const double latency = m_takesBlocks ? blockLatencySeconds : latencySeconds;
    const pa_buffer_attr buffer{serverDecides, bytes(latency), serverDecides, bytes(requestSeconds),
                                serverDecides};
    const auto flags = pa_stream_flags_t(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY |
                                         PA_STREAM_NOT_MONOTONIC);
    return pa_stream_connect_playback(m_stream, sink.isEmpty() ? nullptr : qUtf8Printable(sink),
                                      &buffer, flags, nullptr, nullptr) == 0;
}

PulseStream::~PulseStream() {
    leave();
    const PulseServer::Lock lock(m_server);
    if (!m_stream)
        return;
    disconnect(m_stream);
    pa_stream_unref(m_stream);
}

void PulseStream::leave() {
    const PulseServer::Lock lock(m_server);
    if (m_timing) {
        pa_operation_cancel(m_timing);
        pa_operation_unref(std::exchange(m_timing, nullptr));
    }
    forgetEnding();
    if (m_wake)
        m_api->defer_free(std::exchange(m_wake, nullptr));
    if (!m_stream)
        return;
    pa_stream_set_state_callback(m_stream, nullptr, nullptr);
    pa_stream_set_write_callback(m_stream, nullptr, nullptr);
    pa_stream_set_started_callback(m_stream, nullptr, nullptr);
    pa_stream_set_underflow_callback(m_stream, nullptr, nullptr);
    pa_stream_set_suspended_callback(m_stream, nullptr, nullptr);
    pa_stream_set_moved_callback(m_stream, nullptr, nullptr);
    pa_stream_set_event_callback(m_stream, nullptr, nullptr);
}

void PulseStream::placedOn(const PulseSink& sink) {
    const PulseServer::Lock lock(m_server);
    m_sinkKeeps = sink.keepsWhatItHas;
    soonAgain();
}

void PulseStream::start() {
    const PulseServer::Lock lock(m_server);
    if (m_running)
        return;
    m_running = true;
    if (pa_stream_get_state(m_stream) != PA_STREAM_READY)
        return; // it begins when it is
    if (m_ending)
        m_revises = true; // the silence behind it
    else
        uncork();
    soonAgain();
    // Only the audio thread renders, so that is woken.
    m_api->defer_enable(m_wake, 1);
}

void PulseStream::uncork() {
    m_uncorkedAt = m_clock.now();
    release(pa_stream_cork(m_stream, 0, nullptr, nullptr));
}

void PulseStream::pause() {
    const PulseServer::Lock lock(m_server);
    if (!m_running)
        return;
    const bool ends = endSound();
    m_running = false;
    if (ends)
        return;
    m_heard.hold(m_clock.now());
    forgetEnding();
    if (pa_stream_get_state(m_stream) == PA_STREAM_READY)
        release(pa_stream_cork(m_stream, 1, nullptr, nullptr));
}

double PulseStream::untouchable() const {
    const PulseServer::Lock lock(m_server);
    return m_untouchable;
}

std::optional<PulseStream::EndTimes> PulseStream::ending() const {
    const PulseServer::Lock lock(m_server);
    return m_ending ? std::optional(m_ending->times) : std::nullopt;
}

void PulseStream::revise() {
    const PulseServer::Lock lock(m_server);
    m_revises = true;
    m_api->defer_enable(m_wake, 1);
}

/// Has the source take back what is far enough from the ear; how many frames.
std::size_t PulseStream::takeBack() {
    if (!m_running || pa_stream_get_state(m_stream) != PA_STREAM_READY ||
        pa_stream_is_suspended(m_stream) == 1)
        return 0;
    const double now = m_clock.now();
    double from = m_heard.atEar(now) + (replaceableFrom + m_untouchable) * m_sampleRate;
    if (!m_heard.isRunning()) // it may have begun, and not been told of yet
        from += (now - m_uncorkedAt) * m_sampleRate;
    if (m_ending) // that stays
        from = std::max(from, double(m_ending->frame) + RenderSource::changeSeconds * m_sampleRate);
    const auto frames = m_heard.rendered() - std::int64_t(from);
    const auto taken = frames > 0 ? m_source.rewind(std::size_t(frames)) : 0;
    m_heard.addRendered(-std::int64_t(taken));
    return taken;
}

/// Replaces what is queued by a short end and silence, and stands still once that has been heard.
/// False where nothing can be replaced.
bool PulseStream::endSound() {
    const auto frames = takeBack();
    if (frames == 0)
        return false;
    forgetEnding();
    constexpr double late = 0.05;
    const double now = m_clock.now();
    const double heard = replaceableFrom + m_untouchable + RenderSource::changeSeconds;
    const double wait = heard + late;
    m_ending = Ending{m_heard.rendered(), {now + heard, now + wait}};
    write(frames, &RenderSource::rest, frames);
    m_heard.endAt(m_ending->frame);
    m_endingHeard = pa_context_rttime_new(
        m_server.context(), pa_rtclock_now() + pa_usec_t(wait * 1e6),
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* data) {
            self(data)->restHeard();
        },
        this);
    return true;
}

void PulseStream::restHeard() {
    forgetEnding();
    release(pa_stream_cork(m_stream, 1, nullptr, nullptr));
    release(pa_stream_flush(m_stream, nullptr, nullptr));
    m_heard.skipToRendered();
}

void PulseStream::forgetEnding() {
    m_ending.reset();
    if (m_endingHeard)
        m_api->time_free(std::exchange(m_endingHeard, nullptr));
}

void PulseStream::flush() {
    const PulseServer::Lock lock(m_server);
    if (m_ending)
        return; // only silence is queued
    m_heard.skipToRendered();
    if (pa_stream_get_state(m_stream) != PA_STREAM_READY)
        return;
    release(pa_stream_flush(m_stream, nullptr, nullptr));
    if (m_running)
        soonAgain();
}

void PulseStream::stateChanged() {
    switch (pa_stream_get_state(m_stream)) {
    case PA_STREAM_READY:
        m_events.placed(pa_stream_get_device_index(m_stream));
        if (m_running) {
            uncork();
            soonAgain();
            pull();
        }
        break;
    case PA_STREAM_FAILED:
    case PA_STREAM_TERMINATED:
        m_heard.hold(m_clock.now());
        m_running = false;
        m_events.failed(pa_context_errno(pa_stream_get_context(m_stream)));
        break;
    default:
        break;
    }
}

void PulseStream::pull() {
    if (!m_running || pa_stream_get_state(m_stream) != PA_STREAM_READY)
        return;
    if (std::exchange(m_revises, false)) {
        const auto takenBack = takeBack();
        forgetEnding();
        write(takenBack, &RenderSource::render, takenBack);
    }
    const std::size_t writable = pa_stream_writable_size(m_stream);
    if (writable != std::size_t(-1))
        write(writable / m_frameBytes, &RenderSource::render, 0);
    if (m_clock.now() >= m_nextTiming)
        requestTiming();
}

/// Writes frames in the place of those that were taken back, and behind them.
void PulseStream::write(std::size_t frames, Fill fill, std::size_t takenBack) {
    auto offset = -std::int64_t(takenBack * m_frameBytes);
    while (frames > 0) {
        // The server's own memory, so that the samples are written once.
        void* memory = nullptr;
        std::size_t bytes = frames * m_frameBytes;
        if (pa_stream_begin_write(m_stream, &memory, &bytes) < 0 || !memory)
            break;
        const std::size_t block = std::min(bytes / m_frameBytes, frames);
        if (block == 0) {
            pa_stream_cancel_write(m_stream);
            break;
        }
        (m_source.*fill)(static_cast<float*>(memory), block);
        m_heard.addRendered(std::int64_t(block));
        if (pa_stream_write(m_stream, memory, block * m_frameBytes, nullptr,
                            std::exchange(offset, 0), PA_SEEK_RELATIVE) < 0)
            break;
        frames -= block;
    }
}

/// libpulse can ask by itself, but then it goes on asking while nothing plays.
void PulseStream::requestTiming() {
    if (m_timing)
        return;
    m_timing = pa_stream_update_timing_info(
        m_stream, [](pa_stream*, int, void* data) { self(data)->timingTold(); }, this);
    m_nextTiming = m_clock.now() + (m_reports++ < earlyReports ? earlyInterval : interval);
}

void PulseStream::soonAgain() {
    m_reports = 0;
    m_nextTiming = 0;
    if (m_running && pa_stream_get_state(m_stream) == PA_STREAM_READY)
        requestTiming();
}

void PulseStream::timingTold() {
    release(std::exchange(m_timing, nullptr));
    const pa_timing_info* told = pa_stream_get_timing_info(m_stream);
    if (!m_running || !told || told->write_index_corrupt || told->read_index_corrupt) {
        m_nextTiming = 0;
        return;
    }
    const double block = m_takesBlocks ? m_block / m_sampleRate : 0;
    const bool keeps = m_takesBlocks || m_sinkKeeps;
    m_untouchable = keeps ? double(told->sink_usec) * 1e-6 + block : 0;
    const double now = m_clock.now();
    if (!told->playing || pa_stream_is_suspended(m_stream) == 1) {
        m_nextTiming = 0;
        m_heard.hold(now);
        return;
    }
    // What is not heard yet: what the server still has of the stream, and what the device has
    // taken from it, less what it has played while the answer was on its way.
    const double queued =
        double(told->write_index - told->read_index) / double(m_frameBytes) +
        (double(told->sink_usec) - double(told->transport_usec)) * 1e-6 * m_sampleRate;
    m_heard.run(double(m_heard.rendered()) - queued, now);
}

void PulseStream::suspendedChanged() {
    if (pa_stream_is_suspended(m_stream) == 1)
        m_heard.hold(m_clock.now());
    else
        soonAgain();
}

} // namespace halvane
