// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/audio_devices.h"
#include "platform/sound/pulse_server.h"

namespace halvane {

/// The server's sinks as output devices: what can only record, and what listens to a sink, is not
/// among them. Answers from what the server last told.
class PulseDevices final : public AudioOutput::Devices {
    Q_OBJECT

  public:
    /// The server must outlive it.
    explicit PulseDevices(PulseServer& server, QObject* parent = nullptr);

    [[nodiscard]] std::vector<AudioOutput::OutputDevice> outputDevices() const override {
        return m_devices;
    }
    [[nodiscard]] std::optional<std::uint32_t> defaultOutputDevice() const override {
        return m_default;
    }
    [[nodiscard]] std::optional<QString> deviceName(std::uint32_t id) const override;

  private:
    void refresh();

    PulseServer& m_server;
    std::vector<AudioOutput::OutputDevice> m_devices;
    std::optional<std::uint32_t> m_default;
};

} // namespace halvane
