// SPDX-License-Identifier: MIT
#include "platform/sound/fallback_output.h"

namespace halvane {

using namespace std::chrono_literals;

namespace {
/// A server that is restarted is back within a second or two, on a busy machine later.
constexpr auto timeToComeBack = 10s;
} // namespace

FallbackOutput::FallbackOutput(SoundOutput& server, std::function<bool()> serverIsThere,
                               Clock& clock)
    : m_server(server)
    , m_serverIsThere(std::move(serverIsThere))
    , m_clock(clock)
    , m_silent(clock)
    , m_current(&server) {
    m_server.onConfigurationChange = [this] {
        if (m_serverIsThere())
            report();
    };
    m_server.onDeviceSampleRateChange = [this] {
        if (onDeviceSampleRateChange)
            onDeviceSampleRateChange();
    };
    m_server.onPauseRequest = [this](bool pause) {
        if (onPauseRequest)
            onPauseRequest(pause);
    };
}

FallbackOutput::~FallbackOutput() {
    m_server.onConfigurationChange = nullptr;
    m_server.onDeviceSampleRateChange = nullptr;
    m_server.onPauseRequest = nullptr;
}

void FallbackOutput::serverCameOrWent() {
    if (!m_serverIsThere()) {
        m_waiting = m_clock.after(timeToComeBack, [this] { giveUpWaiting(); });
        return;
    }
    m_waiting.reset();
    if (m_hasStream && !(&current() == &m_server && m_server.isOpen()))
        report();
}

void FallbackOutput::giveUpWaiting() {
    m_waiting.reset();
    if (m_waitsToStart) {
        m_waitsToStart = false;
        (void)m_silent.start();
    } else if (m_hasStream && &current() == &m_server) {
        report();
    }
}

void FallbackOutput::report() {
    if (onConfigurationChange)
        onConfigurationChange();
}

std::optional<QString> FallbackOutput::open(const StreamFormat& format, RenderSource& source) {
    close();
    m_current = m_serverIsThere() ? &m_server : &m_silent;
    auto error = current().open(format, source);
    m_hasStream = !error;
    return error;
}

void FallbackOutput::close() {
    m_waitsToStart = false;
    m_hasStream = false;
    current().close();
}

std::optional<QString> FallbackOutput::start() {
    if (&current() == &m_silent && m_waiting) {
        m_waitsToStart = m_silent.isOpen();
        return {};
    }
    return current().start();
}

void FallbackOutput::pause() {
    m_waitsToStart = false;
    current().pause();
}

int FallbackOutput::deviceSampleRate() const {
    return m_serverIsThere() ? m_server.deviceSampleRate() : 0;
}

std::optional<QString> FallbackOutput::setDevice(std::optional<std::uint32_t> id) {
    return m_server.setDevice(id);
}

} // namespace halvane
