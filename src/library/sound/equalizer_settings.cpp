// SPDX-License-Identifier: MIT
#include "library/sound/equalizer_settings.h"

#include "library/catalog/collation.h"
#include "library/sound/equalizer_presets.h"
#include "library/user/language_setting.h"
#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"
#include "platform/thread_check.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>

namespace halvane {

EqualizerSettings::EqualizerSettings(Preferences& preferences, const LanguageSetting& language,
                                     QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_language(language) {
    connect(this, &EqualizerSettings::currentEQPresetIDChanged, this,
            &EqualizerSettings::presetMenuTitleChanged);
    connect(&language, &LanguageSetting::languageChanged, this,
            &EqualizerSettings::presetMenuTitleChanged);
}

QString EqualizerSettings::presetMenuTitle() const {
    return halvane::presetMenuTitle(m_currentPresetID, m_language.resolvedLanguage());
}

QString EqualizerSettings::currentBuiltInEQPreset() const {
    return builtInEQPresetOf(m_currentPresetID);
}

QString EqualizerSettings::currentUserEQPreset() const {
    return userEQPresetOf(m_currentPresetID);
}

void EqualizerSettings::restore() {
    assertOwnThread(*this);
    // The setters would write everything back, and so store the default of a value that is not read
    // yet.
    if (auto gains = storedGains(m_preferences.numbers(SettingsKey::eqGains)))
        m_gains = *std::move(gains);
    if (const auto preamp = storedNumber(m_preferences.number(SettingsKey::eqPreamp)))
        m_preamp = *preamp;
    if (auto presets = m_preferences.numbersMap(SettingsKey::eqUserPresets))
        m_userPresets = *std::move(presets);
    if (const auto id = m_preferences.string(SettingsKey::eqPresetID))
        m_currentPresetID = *id;
    if (const auto enabled = m_preferences.boolean(SettingsKey::eqEnabled))
        m_enabled = *enabled;
    applyEQ();
    Q_EMIT eqGainsChanged();
    Q_EMIT eqPreampChanged();
    Q_EMIT userEQPresetsChanged();
    Q_EMIT currentEQPresetIDChanged();
    Q_EMIT eqEnabledChanged();
}

QStringList EqualizerSettings::userEQPresetNames() const {
    QStringList names = m_userPresets.keys();
    QCollator collator = caseInsensitiveCollator();
    collator.setNumericMode(true);
    std::sort(names.begin(), names.end(), [&](const QString& a, const QString& b) {
        const int order = collator.compare(a, b);
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

void EqualizerSettings::applyEQ() {
    Q_EMIT applied(m_enabled, m_gains, m_preamp);
}

void EqualizerSettings::eqSettingsChanged() {
    if (!m_isApplyingEQPreset)
        setCurrentEQPresetID({});
    applyEQ();
    m_preferences.setNumbers(SettingsKey::eqGains, m_gains);
    m_preferences.setNumber(SettingsKey::eqPreamp, m_preamp);
}

void EqualizerSettings::setEqEnabled(bool enabled) {
    assertOwnThread(*this);
    const bool changes = m_enabled != enabled;
    m_enabled = enabled;
    applyEQ();
    m_preferences.setBoolean(SettingsKey::eqEnabled, enabled);
    if (changes)
        Q_EMIT eqEnabledChanged();
}

void EqualizerSettings::setEqGains(const std::vector<double>& gains) {
    assertOwnThread(*this);
    const bool changes = m_gains != gains;
    m_gains = gains;
    eqSettingsChanged();
    if (changes)
        Q_EMIT eqGainsChanged();
}

void EqualizerSettings::setEqGain(int band, double dB) {
    if (band < 0 || static_cast<std::size_t>(band) >= m_gains.size() || !std::isfinite(dB))
        return;
    auto gains = m_gains;
    gains[static_cast<std::size_t>(band)] = dB;
    setEqGains(gains);
}

void EqualizerSettings::setEqPreamp(double dB) {
    assertOwnThread(*this);
    if (!std::isfinite(dB))
        return;
    const bool changes = m_preamp != dB;
    m_preamp = dB;
    eqSettingsChanged();
    if (changes)
        Q_EMIT eqPreampChanged();
}

void EqualizerSettings::applyPreset(const std::vector<double>& gains, double preamp,
                                    const QString& id) {
    {
        const QScopedValueRollback applying(m_isApplyingEQPreset, true);
        setEqGains(gains);
        setEqPreamp(preamp);
        setCurrentEQPresetID(id);
    }
    applyEQ();
}

void EqualizerSettings::applyBuiltInEQPreset(const QString& id) {
    const auto& presets = builtInEQPresets();
    const auto found = std::find_if(presets.begin(), presets.end(),
                                    [&](const EQPreset& preset) { return preset.id == id; });
    if (found != presets.end())
        applyPreset({found->gains.begin(), found->gains.end()}, 0, builtInEQPresetID(id));
}

void EqualizerSettings::applyUserEQPreset(const QString& name) {
    // A copy, since a listener may change the map.
    const std::vector<double> numbers = m_userPresets.value(name);
    if (numbers.size() != m_gains.size() + 1)
        return;
    applyPreset({numbers.begin(), numbers.end() - 1}, numbers.back(), userEQPresetID(name));
}

void EqualizerSettings::saveCurrentEQPreset(const QString& name) {
    assertOwnThread(*this);
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return;
    auto numbers = m_gains;
    numbers.push_back(m_preamp);
    m_userPresets.insert(trimmed, numbers);
    m_preferences.insertNumbers(SettingsKey::eqUserPresets, trimmed, numbers);
    Q_EMIT userEQPresetsChanged();
    setCurrentEQPresetID(userEQPresetID(trimmed));
}

void EqualizerSettings::deleteUserEQPreset(const QString& name) {
    assertOwnThread(*this);
    if (m_userPresets.remove(name)) {
        m_preferences.removeEntries({SettingsKey::eqUserPresets}, {name});
        Q_EMIT userEQPresetsChanged();
    }
    if (m_currentPresetID == userEQPresetID(name))
        setCurrentEQPresetID({});
}

void EqualizerSettings::setCurrentEQPresetID(const QString& id) {
    const bool changes = m_currentPresetID != id;
    m_currentPresetID = id;
    if (id.isEmpty())
        m_preferences.remove(SettingsKey::eqPresetID);
    else
        m_preferences.setString(SettingsKey::eqPresetID, id);
    if (changes)
        Q_EMIT currentEQPresetIDChanged();
}

} // namespace halvane
