// SPDX-License-Identifier: MIT
#pragma once

#include <QHashFunctions>
#include <QObject>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace halvane::AudioOutput {

/// A device that can play.
struct OutputDevice {
    std::uint32_t id = 0; ///< the server's number for it, good until it goes away
    QString name;         ///< as the system shows it

    bool operator==(const OutputDevice&) const = default;
};

inline size_t qHash(const OutputDevice& d, size_t seed = 0) {
    return qHashMulti(seed, d.id, d.name);
}

/// The system's output devices. Main thread; every failure reads as nothing being there.
class Devices : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// The devices that can play, in the system's order.
    [[nodiscard]] virtual std::vector<OutputDevice> outputDevices() const = 0;
    [[nodiscard]] virtual std::optional<std::uint32_t> defaultOutputDevice() const = 0;
    [[nodiscard]] virtual std::optional<QString> deviceName(std::uint32_t id) const = 0;

  Q_SIGNALS:
    void deviceListChanged();
    void defaultOutputDeviceChanged();
};

} // namespace halvane::AudioOutput
