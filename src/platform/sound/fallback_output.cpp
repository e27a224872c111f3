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
    connect(&server, &SoundOutput::configurationChanged, this, [this] {
        if (m_serverIsThere())
            Q_EMIT configurationChanged();
    });
    connect(&server, &SoundOutput::deviceSampleRateChanged, this,
            &FallbackOutput::deviceSampleRateChanged);
    connect(&server, &SoundOutput::pauseRequested, this, &FallbackOutput::pauseRequested);
}

void FallbackOutput::serverCameOrWent() {
    if (!m_serverIsThere()) {
        m_waiting = m_clock.after(timeToComeBack, [this] { giveUpWaiting(); });
        return;
    }
    m_waiting.reset();
    if (m_hasStream && !(&current() == &m_server && m_server.isOpen()))
        Q_EMIT configurationChanged();
}

void FallbackOutput::giveUpWaiting() {
    m_waiting.reset();
    if (m_waitsToStart) {
        m_waitsToStart = false;
        (void)m_silent.start();
    } else if (m_hasStream && &current() == &m_server) {
        Q_EMIT configurationChanged();
    }
}

Result<> FallbackOutput::open(const StreamFormat& format, RenderSource& source) {
    close();
    m_current = m_serverIsThere() ? &m_server : &m_silent;
    auto opened = current().open(format, source);
    m_hasStream = static_cast<bool>(opened);
    return opened;
}

void FallbackOutput::close() {
    m_waitsToStart = false;
    m_hasStream = false;
    current().close();
}

Result<> FallbackOutput::start() {
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

Result<> FallbackOutput::setDevice(std::optional<std::uint32_t> id) {
    return m_server.setDevice(id);
}

} // namespace halvane
