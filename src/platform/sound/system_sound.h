// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/fallback_output.h"
#include "platform/sound/pulse_devices.h"
#include "platform/sound/pulse_output.h"
#include "platform/sound/pulse_server.h"

namespace halvane {

/// The machine's sound: one connection to the sound server, an output on it that plays silently
/// while there is none, and the server's devices. Main thread.
class SystemSound {
  public:
    /// Waits a moment for the server, so that the devices are known when the program starts; tells
    /// in the log and on standard error when it does not answer. An address as libpulse writes it;
    /// empty for the session's own server. The clock must outlive it.
    explicit SystemSound(Clock& clock, const QString& address = {});

    SoundOutput& output() { return m_output; }
    AudioOutput::Devices& devices() { return m_devices; }
    PulseServer& server() { return m_server; }

  private:
    PulseServer m_server;
    PulseDevices m_devices;
    PulseOutput m_stream;
    FallbackOutput m_output;
};

} // namespace halvane
