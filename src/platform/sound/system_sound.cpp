// SPDX-License-Identifier: MIT
#include "platform/sound/system_sound.h"

#include "platform/log.h"

#include <cstdio>

namespace halvane {

using namespace std::chrono_literals;

SystemSound::SystemSound(Clock& clock, const QString& address)
    : m_server(clock, address)
    , m_devices(m_server)
    , m_stream(m_server, clock)
    , m_output(
          m_stream, [this] { return m_server.isReady(); }, clock) {
    QObject::connect(&m_server, &PulseServer::readyChanged, &m_stream, [this] {
        if (m_server.isReady())
            qCInfo(libraryLog, "the sound server answers");
        m_output.serverCameOrWent();
    });
    m_server.waitForFirstAttempt(200ms);
    if (m_server.isReady())
        return;
    qCWarning(libraryLog, "no sound server answers: playing silently until one does");
    // Whoever starts the program by hand must see it even where the log goes to the journal.
    std::fputs("halvane: no sound server answers: playing silently until one does\n", stderr);
}

} // namespace halvane
