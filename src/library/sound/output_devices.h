// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"
#include "platform/sound/audio_devices.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace halvane {

class LanguageSetting;
class Preferences;

/// Which device plays: the system's default, or the one that the user chose. The choice is kept by
/// name and taken again whenever the device comes back. Main thread.
class OutputDevices final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString outputDeviceName READ outputDeviceName NOTIFY outputDeviceNameChanged)
    /// Empty: the system's default.
    Q_PROPERTY(QString selectedOutputDeviceName READ selectedOutputDeviceName NOTIFY
                   selectedOutputDeviceNameChanged)

  public:
    /// Moves the engine to a device (AudioPlaybackEngine::setOutputDevice). On failure the engine
    /// plays on where it was.
    using RouteEngine = std::function<Result<>(std::optional<std::uint32_t> id)>;

    /// All references must outlive it. Nothing is read or routed before restore().
    OutputDevices(AudioOutput::Devices& devices, Preferences& preferences,
                  const LanguageSetting& language, RouteEngine routeEngine,
                  QObject* parent = nullptr);

    /// Reads the current output and the list, follows both, and takes the stored choice if its
    /// device is there. To be called once, at the start.
    void restore();

    /// The devices that can play, in the system's order.
    [[nodiscard]] const std::vector<AudioOutput::OutputDevice>& availableOutputDevices() const {
        return m_available;
    }
    /// The user's choice, empty for the system's default. Stored at every change.
    [[nodiscard]] QString selectedOutputDeviceName() const {
        return m_selectedName.value_or(QString());
    }
    /// The name shown as the current output.
    [[nodiscard]] QString outputDeviceName() const { return m_shownName; }
    /// Whether the engine has been routed to a device explicitly at least once.
    [[nodiscard]] bool enginePinnedToDevice() const { return m_routed.has_value(); }
    /// Whether the engine plays on the chosen device now.
    [[nodiscard]] bool devicePinActive() const { return m_pinActive; }
    /// The place of the chosen device in availableOutputDevices; -1 for the system's default and
    /// while the device is missing. Of two devices with one name it is the one that plays, or else
    /// the first.
    [[nodiscard]] int selectedDeviceIndex() const;

    /// The user chooses from the output menu. None stands for the system's default.
    void selectOutputDevice(const std::optional<AudioOutput::OutputDevice>& device);
    /// The same for a listed device. Does nothing for an id that is not listed.
    Q_INVOKABLE void selectOutputDevice(quint32 id);
    Q_INVOKABLE void selectSystemDefaultOutput() { selectOutputDevice(std::nullopt); }
    void applyOutputDevice(const AudioOutput::OutputDevice& device);
    /// Reads the list again. Takes the chosen device if it has come, and leaves it if it has gone.
    void refreshOutputDeviceList();
    /// Shows the system's default device as the current output.
    void refreshOutputDevice();

  Q_SIGNALS:
    void availableOutputDevicesChanged();
    /// Also when the choice stands for another of the listed devices.
    void selectedOutputDeviceNameChanged();
    void outputDeviceNameChanged();
    /// The engine did not take the chosen device. Its own playing state may be another now.
    void switchFailed();

  private:
    void defaultDeviceChanged();
    void retranslate();
    void routeToDefault();
    void setShownName(const QString& name);
    void setSelectedName(const std::optional<QString>& name);
    void setPinActive(bool active);
    [[nodiscard]] const AudioOutput::OutputDevice* availableDevice(const QString& name) const;
    [[nodiscard]] const AudioOutput::OutputDevice* availableDevice(std::uint32_t id) const;

    AudioOutput::Devices& m_devices;
    Preferences& m_preferences;
    const LanguageSetting& m_language;
    RouteEngine m_routeEngine;
    std::vector<AudioOutput::OutputDevice> m_available;
    std::optional<QString> m_selectedName;
    QString m_shownName;
    std::optional<std::uint32_t> m_routed; ///< the device to which the engine was last moved
    bool m_pinActive = false;              ///< whether that is the chosen device
};

} // namespace halvane
