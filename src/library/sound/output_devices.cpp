// SPDX-License-Identifier: MIT
#include "library/sound/output_devices.h"

#include "library/user/language_setting.h"
#include "library/user/settings_keys.h"
#include "platform/log.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <algorithm>

namespace halvane {

using AudioOutput::OutputDevice;

OutputDevices::OutputDevices(AudioOutput::Devices& devices, Preferences& preferences,
                             const LanguageSetting& language, RouteEngine routeEngine,
                             QObject* parent)
    : QObject(parent)
    , m_devices(devices)
    , m_preferences(preferences)
    , m_language(language)
    , m_routeEngine(std::move(routeEngine)) {
}

void OutputDevices::restore() {
    refreshOutputDevice();
    refreshOutputDeviceList();
    connect(&m_devices, &AudioOutput::Devices::deviceListChanged, this,
            &OutputDevices::refreshOutputDeviceList);
    connect(&m_devices, &AudioOutput::Devices::defaultOutputDeviceChanged, this,
            &OutputDevices::defaultDeviceChanged);
    connect(&m_language, &LanguageSetting::languageChanged, this, &OutputDevices::retranslate);
    const auto stored = m_preferences.string(SettingsKey::outputDeviceName);
    if (!stored || stored->isEmpty())
        return;
    m_selectedName = *stored;
    Q_EMIT selectedOutputDeviceNameChanged();
    refreshOutputDeviceList();
}

int OutputDevices::selectedDeviceIndex() const {
    const OutputDevice* device = m_pinActive ? availableDevice(*m_routed) : nullptr;
    if (!device && m_selectedName)
        device = availableDevice(*m_selectedName);
    return device ? static_cast<int>(device - m_available.data()) : -1;
}

void OutputDevices::selectOutputDevice(const std::optional<OutputDevice>& device) {
    assertOwnThread(*this);
    if (device) {
        setSelectedName(device->name);
        applyOutputDevice(*device);
        return;
    }
    setSelectedName(std::nullopt);
    setPinActive(false);
    if (enginePinnedToDevice())
        routeToDefault();
    refreshOutputDevice();
}

void OutputDevices::selectOutputDevice(quint32 id) {
    if (const OutputDevice* device = availableDevice(id))
        selectOutputDevice(OutputDevice(*device));
}

void OutputDevices::applyOutputDevice(const OutputDevice& device) {
    if (const auto routed = m_routeEngine(device.id); !routed) {
        qCCritical(libraryLog, "output device switch failed: %ls",
                   qUtf16Printable(routed.failure().text));
        setPinActive(false);
        Q_EMIT switchFailed();
        refreshOutputDevice();
        return;
    }
    m_routed = device.id;
    setPinActive(true);
    setShownName(device.name);
}

void OutputDevices::refreshOutputDeviceList() {
    auto devices = m_devices.outputDevices();
    if (std::exchange(m_available, std::move(devices)) != m_available)
        Q_EMIT availableOutputDevicesChanged();
    if (!m_selectedName)
        return;
    // Two devices may have one name: the one that plays may have gone while the other is there.
    if (m_pinActive && availableDevice(*m_routed))
        return;
    if (const OutputDevice* chosen = availableDevice(*m_selectedName)) {
        applyOutputDevice(OutputDevice(*chosen));
    } else if (m_pinActive) {
        setPinActive(false);
        routeToDefault();
        refreshOutputDevice();
    }
}

void OutputDevices::refreshOutputDevice() {
    std::optional<QString> name;
    if (const auto id = m_devices.defaultOutputDevice())
        name = m_devices.deviceName(*id);
    setShownName(name ? *name : L10n::text(L10nKey::builtInOutput, m_language.resolvedLanguage()));
}

void OutputDevices::retranslate() {
    if (!m_pinActive)
        refreshOutputDevice();
}

void OutputDevices::defaultDeviceChanged() {
    if (m_pinActive)
        return;
    // The engine may be on the new default already, after the device before it went away.
    if (enginePinnedToDevice() && m_routed != m_devices.defaultOutputDevice())
        routeToDefault();
    refreshOutputDevice();
}

// A failure leaves the engine where it is, because there is nothing better to offer.
void OutputDevices::routeToDefault() {
    const auto id = m_devices.defaultOutputDevice();
    if (id && m_routeEngine(*id))
        m_routed = id;
}

void OutputDevices::setShownName(const QString& name) {
    if (std::exchange(m_shownName, name) != name)
        Q_EMIT outputDeviceNameChanged();
}

void OutputDevices::setSelectedName(const std::optional<QString>& name) {
    m_selectedName = name;
    if (name)
        m_preferences.setString(SettingsKey::outputDeviceName, *name);
    else
        m_preferences.remove(SettingsKey::outputDeviceName);
    Q_EMIT selectedOutputDeviceNameChanged();
}

void OutputDevices::setPinActive(bool active) {
    if (std::exchange(m_pinActive, active) != active)
        Q_EMIT selectedOutputDeviceNameChanged();
}

const OutputDevice* OutputDevices::availableDevice(const QString& name) const {
    const auto at = std::ranges::find(m_available, name, &OutputDevice::name);
    return at == m_available.end() ? nullptr : &*at;
}

const OutputDevice* OutputDevices::availableDevice(std::uint32_t id) const {
    const auto at = std::ranges::find(m_available, id, &OutputDevice::id);
    return at == m_available.end() ? nullptr : &*at;
}

} // namespace halvane
