// SPDX-License-Identifier: MIT
#include "platform/sound/pulse_output.h"

#include "platform/log.h"

#include <pulse/def.h>
#include <pulse/error.h>

#include <thread>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// A device that takes streams and ends them at once must not be tried for ever.
constexpr std::size_t mostFailures = 3;
constexpr double failureMemory = 5; // s

std::chrono::milliseconds inMilliseconds(double seconds) {
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

} // namespace

PulseOutput::PulseOutput(PulseServer& server, Clock& clock, QObject* parent)
    : SoundOutput(parent)
    , m_server(server)
    , m_clock(clock) {
    connect(&server, &PulseServer::sinksChanged, this, &PulseOutput::checkSampleRate);
    m_sampleRate = deviceSampleRate();
}

PulseOutput::~PulseOutput() {
    close();
    const double last = m_endings.empty() ? 0 : m_endings.back().times.surely - m_clock.now();
    const std::chrono::duration<double> left(last);
    std::this_thread::sleep_for(left); // or the end would be cut off
}

Result<> PulseOutput::open(const StreamFormat& format, RenderSource& source) {
    close();
    if (!m_server.isReady())
        return Failure{u"the sound server does not answer"_s};
    std::erase_if(m_failures,
                  [now = m_clock.now()](double at) { return now - at > failureMemory; });
    if (m_failures.size() >= mostFailures) {
        m_failures.clear();
        return Failure{m_lastFailure};
    }
    m_heard.reset(format.sampleRate);
    // A chosen device that is not there yet, just after the server came back, is no reason to
    // stay silent.
    const QString sink = m_server.sink(m_chosenSink) ? m_chosenSink : QString();
    auto opened = PulseStream::open(m_server, m_clock, format, sink, source, m_heard, m_untouchable,
                                    events());
    if (!opened)
        return opened.failure();
    m_stream = *std::move(opened);
    return {};
}

/// Brings the stream's news from the audio thread to this one.
PulseStream::Events PulseOutput::events() {
    const auto generation = ++m_generation;
    const auto post = [this, generation, news = m_news.address()](auto&& action) {
        news.post([this, generation, action] {
            if (generation == m_generation)
                action();
        });
    };
    return {
        [this, post](int error) { post([this, error] { streamFailed(error); }); },
        [this, post](std::uint32_t sink) { post([this, sink] { streamPlaced(sink); }); },
        [this, post](bool silence) { post([this, silence] { Q_EMIT pauseRequested(silence); }); },
        [this, post] { post([this] { streamRanDry(); }); }};
}

void PulseOutput::close() {
    if (m_stream)
        m_untouchable = m_stream->untouchable();
    const auto ending = isOpen() ? m_stream->ending() : std::nullopt;
    if (ending) {
        m_stream->leave();
        m_endings.push_back({std::move(m_stream), *ending});
        dropEnded();
    }
    m_stream.reset();
    m_startsLater.reset();
    ++m_generation;
    m_lost = false;
    m_running = false;
    m_streamSink.reset();
}

void PulseOutput::dropEnded() {
    while (!m_endings.empty() && m_endings.front().times.surely <= m_clock.now())
        m_endings.pop_front();
    if (m_endings.empty())
        return;
    const std::chrono::duration<double, std::milli> left(
        (m_endings.front().times.surely - m_clock.now()) * 1000);
    m_ended =
        m_clock.after(std::chrono::ceil<std::chrono::milliseconds>(left), [this] { dropEnded(); });
}

Result<> PulseOutput::start() {
    if (!isOpen())
        return Failure{u"no stream is open"_s};
    m_running = true;
    const double wait = m_endings.empty() ? 0 : m_endings.back().times.heard - m_clock.now();
    if (wait > 0)
        m_startsLater = m_clock.after(inMilliseconds(wait), [this] { m_stream->start(); });
    else
        m_stream->start();
    return {};
}

void PulseOutput::pause() {
    m_startsLater.reset();
    m_running = false;
    if (isOpen())
        m_stream->pause();
}

void PulseOutput::flush() {
    if (isOpen())
        m_stream->flush();
    else if (m_stream)
        m_heard.skipToRendered();
}

void PulseOutput::revise() {
    if (isRunning())
        m_stream->revise();
}

void PulseOutput::streamFailed(int error) {
    m_lost = true;
    // With the server gone as well there is nothing to open it on: whoever waits for the server
    // sees to that.
    if (!m_server.isReady())
        return;
    m_lastFailure = QString::fromUtf8(pa_strerror(error));
    m_failures.push_back(m_clock.now());
    qCWarning(libraryLog, "the sound server ended the stream: %ls", qUtf16Printable(m_lastFailure));
    if (error == PA_ERR_NOENTITY)
        m_chosenSink.clear(); // it went away on the way there
    Q_EMIT configurationChanged();
}

void PulseOutput::streamPlaced(std::uint32_t sink) {
    m_streamSink = sink;
    if (const auto* known = m_server.sink(sink); known && m_stream)
        m_stream->placedOn(*known);
    checkSampleRate();
}

void PulseOutput::streamRanDry() {
    ++m_holes;
    qCWarning(libraryLog, "the sound came too late for the server: hole %d", m_holes);
}

int PulseOutput::deviceSampleRate() const {
    const PulseSink* sink = nullptr;
    if (m_streamSink)
        sink = m_server.sink(*m_streamSink);
    if (!sink)
        sink = m_server.sink(m_chosenSink);
    if (!sink)
        sink = m_server.sink(m_server.sinks().defaultSink);
    return sink ? sink->sampleRate : 0;
}

void PulseOutput::checkSampleRate() {
    const int rate = deviceSampleRate();
    if (std::exchange(m_sampleRate, rate) != rate)
        Q_EMIT deviceSampleRateChanged();
}

Result<> PulseOutput::setDevice(std::optional<std::uint32_t> id) {
    if (!id) {
        m_chosenSink.clear();
        return {};
    }
    const PulseSink* sink = m_server.sink(*id);
    if (!sink)
        return Failure{u"there is no output device %1"_s.arg(*id)};
    m_chosenSink = sink->name;
    return {};
}

} // namespace halvane
