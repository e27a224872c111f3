// SPDX-License-Identifier: MIT
#include "library/user/theme_settings.h"

#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"
#include "platform/thread_check.h"

namespace halvane {

namespace {

void storeColor(Preferences& preferences, const QString& key, const Color& color) {
    if (const auto numbers = colorNumbers(color))
        preferences.setNumbers(key, *numbers);
}

} // namespace

ThemeSettings::ThemeSettings(Preferences& preferences, const AmbientColor& ambient, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_ambient(ambient) {
    connect(&ambient, &AmbientColor::ambientColorChanged, this,
            &ThemeSettings::ambientColorChanged);
}

void ThemeSettings::restoreSpectrum() {
    if (const auto mode =
            storedEnum<SpectrumTintMode>(m_preferences.string(SettingsKey::spectrumTintMode)))
        setSpectrumTintMode(*mode);
    if (const auto color = storedColor(m_preferences.numbers(SettingsKey::customSpectrumColor)))
        setCustomSpectrumColor(*color);
}

void ThemeSettings::restoreTheme() {
    if (const auto mode =
            storedEnum<SpectrumTintMode>(m_preferences.string(SettingsKey::themeAccentMode)))
        setThemeAccentMode(*mode);
    if (const auto color = storedColor(m_preferences.numbers(SettingsKey::customThemeAccent)))
        setCustomThemeAccent(*color);
    if (const auto style =
            storedEnum<CornerStyle>(m_preferences.string(SettingsKey::themeCornerStyle)))
        setThemeCornerStyle(*style);
    if (const auto style =
            storedEnum<BackgroundStyle>(m_preferences.string(SettingsKey::themeBackgroundStyle)))
        setThemeBackgroundStyle(*style);
    applyTheme();
}

void ThemeSettings::setThemeAccentMode(SpectrumTintMode mode) {
    assertOwnThread(*this);
    m_accentMode = mode;
    m_preferences.setString(SettingsKey::themeAccentMode, rawValue(mode));
    applyTheme();
}

void ThemeSettings::setCustomThemeAccent(const Color& color) {
    assertOwnThread(*this);
    m_customAccent = color;
    storeColor(m_preferences, SettingsKey::customThemeAccent, color);
    applyTheme();
}

void ThemeSettings::setThemeCornerStyle(CornerStyle style) {
    assertOwnThread(*this);
    m_cornerStyle = style;
    m_preferences.setString(SettingsKey::themeCornerStyle, rawValue(style));
    applyTheme();
}

void ThemeSettings::setThemeBackgroundStyle(BackgroundStyle style) {
    assertOwnThread(*this);
    m_backgroundStyle = style;
    m_preferences.setString(SettingsKey::themeBackgroundStyle, rawValue(style));
    applyTheme();
}

void ThemeSettings::setSpectrumTintMode(SpectrumTintMode mode) {
    assertOwnThread(*this);
    m_spectrumMode = mode;
    m_preferences.setString(SettingsKey::spectrumTintMode, rawValue(mode));
    Q_EMIT spectrumTintChanged();
}

void ThemeSettings::setCustomSpectrumColor(const Color& color) {
    assertOwnThread(*this);
    m_customSpectrum = color;
    storeColor(m_preferences, SettingsKey::customSpectrumColor, color);
    Q_EMIT spectrumTintChanged();
}

Color ThemeSettings::resolvedThemeAccent() const {
    return AppTheme::resolvedThemeAccent(m_accentMode, m_ambient.ambientColor(), m_customAccent);
}

Color ThemeSettings::spectrumTint() const {
    return AppTheme::spectrumTint(m_spectrumMode, m_ambient.ambientColor(), m_customSpectrum,
                                  m_style.accent);
}

double ThemeSettings::ambientBackgroundBoost() const {
    return AppTheme::ambientBackgroundBoost(m_backgroundStyle);
}

void ThemeSettings::applyTheme() {
    m_style = {AppTheme::legible(resolvedThemeAccent()),
               AppTheme::windowBackground(m_backgroundStyle), AppTheme::radii(m_cornerStyle)};
    Q_EMIT themeChanged();
    Q_EMIT spectrumTintChanged();
}

void ThemeSettings::ambientColorChanged() {
    if (m_accentMode == SpectrumTintMode::ambient)
        applyTheme();
    else if (m_spectrumMode == SpectrumTintMode::ambient)
        Q_EMIT spectrumTintChanged();
}

} // namespace halvane
