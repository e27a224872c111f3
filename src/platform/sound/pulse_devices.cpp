// SPDX-License-Identifier: MIT
#include "platform/sound/pulse_devices.h"

#include <algorithm>

namespace halvane {

PulseDevices::PulseDevices(PulseServer& server, QObject* parent)
    : Devices(parent)
    , m_server(server) {
    connect(&server, &PulseServer::sinksChanged, this, &PulseDevices::refresh);
    refresh();
}

std::optional<QString> PulseDevices::deviceName(std::uint32_t id) const {
    const auto at = std::ranges::find(m_devices, id, &AudioOutput::OutputDevice::id);
    if (at == m_devices.end())
        return {};
    return at->name;
}

void PulseDevices::refresh() {
    std::vector<AudioOutput::OutputDevice> devices;
    for (const PulseSink& sink : m_server.sinks().sinks)
        if (!sink.description.isEmpty())
            devices.push_back({sink.index, sink.description});
    const PulseSink* preferred = m_server.sink(m_server.sinks().defaultSink);
    const auto id = preferred ? std::optional(preferred->index) : std::nullopt;

    // Both are in place before anybody hears of either.
    const bool listChanged = std::exchange(m_devices, std::move(devices)) != m_devices;
    const bool defaultChanged = std::exchange(m_default, id) != m_default;
    if (listChanged)
        Q_EMIT deviceListChanged();
    if (defaultChanged)
        Q_EMIT defaultOutputDeviceChanged();
}

} // namespace halvane
