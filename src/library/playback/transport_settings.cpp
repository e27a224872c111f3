// SPDX-License-Identifier: MIT
#include "library/playback/transport_settings.h"

#include "library/playback/transport.h"
#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"

namespace halvane {

TransportSettings::TransportSettings(Preferences& preferences, Transport& transport,
                                     QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_transport(transport) {
    connect(&transport, &Transport::repeatModeChanged, this, [this] {
        m_preferences.setString(SettingsKey::repeatMode, rawValue(m_transport.repeatMode()));
    });
    connect(&transport, &Transport::volumeChanged, this,
            [this] { m_preferences.setNumber(SettingsKey::volume, m_transport.volume()); });
    connect(&transport, &Transport::isShuffleEnabledChanged, this, [this] {
        m_preferences.setBoolean(SettingsKey::shuffleEnabled, m_transport.isShuffleEnabled());
    });
}

void TransportSettings::restore() {
    if (const auto mode =
            storedEnum<PlaybackRepeatMode>(m_preferences.string(SettingsKey::repeatMode)))
        m_transport.setRepeatMode(*mode);
    if (const auto volume = storedVolume(m_preferences.number(SettingsKey::volume)))
        m_transport.setVolume(*volume);
    if (const auto shuffle = m_preferences.boolean(SettingsKey::shuffleEnabled))
        m_transport.setShuffleEnabled(*shuffle);
}

} // namespace halvane
