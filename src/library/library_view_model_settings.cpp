// SPDX-License-Identifier: MIT
// Equalizer, Sound Check, language and look, as the views see them.
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "library/sound/equalizer_presets.h"
#include "library/user/qt_colors.h"

namespace halvane {

namespace {

Color colorOf(const QColor& color) {
    return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

} // namespace

void LibraryViewModel::forwardSettings() {
    using Self = LibraryViewModel;
    const EqualizerSettings* equalizer = &m_concerns->equalizer;
    connect(equalizer, &EqualizerSettings::eqEnabledChanged, this, &Self::eqEnabledChanged);
    connect(equalizer, &EqualizerSettings::eqGainsChanged, this, &Self::eqGainsChanged);
    connect(equalizer, &EqualizerSettings::eqPreampChanged, this, &Self::eqPreampChanged);
    connect(equalizer, &EqualizerSettings::currentEQPresetIDChanged, this,
            &Self::currentEQPresetIDChanged);
    connect(equalizer, &EqualizerSettings::currentEQPresetIDChanged, this,
            &Self::presetMenuTitleChanged);
    connect(equalizer, &EqualizerSettings::userEQPresetsChanged, this, &Self::userEQPresetsChanged);

    connect(&m_concerns->soundCheck, &SoundCheck::soundCheckEnabledChanged, this,
            &Self::soundCheckEnabledChanged);

    const ThemeSettings* theme = &m_concerns->theme;
    connect(theme, &ThemeSettings::themeChanged, this, &Self::themeChanged);
    connect(theme, &ThemeSettings::spectrumTintChanged, this, &Self::spectrumTintChanged);
    connect(&m_concerns->ambient, &AmbientColor::ambientColorChanged, this,
            &Self::ambientColorChanged);

    // Every text that is made here is made again.
    const LanguageSetting* language = &m_concerns->language;
    for (const auto changed : {&Self::languageChanged, &Self::presetMenuTitleChanged,
                               &Self::queueSourceTextChanged, &Self::librarySummaryChanged})
        connect(language, &LanguageSetting::languageChanged, this, changed);
}

bool LibraryViewModel::eqEnabled() const {
    return m_concerns->equalizer.eqEnabled();
}
void LibraryViewModel::setEqEnabled(bool enabled) {
    m_concerns->equalizer.setEqEnabled(enabled);
}
QList<double> LibraryViewModel::eqGains() const {
    const std::vector<double>& gains = m_concerns->equalizer.eqGains();
    return {gains.begin(), gains.end()};
}
double LibraryViewModel::eqPreamp() const {
    return m_concerns->equalizer.eqPreamp();
}
void LibraryViewModel::setEqPreamp(double dB) {
    m_concerns->equalizer.setEqPreamp(dB);
}
QString LibraryViewModel::currentEQPresetID() const {
    return m_concerns->equalizer.currentEQPresetID().value_or(QString());
}
QString LibraryViewModel::presetMenuTitle() const {
    return halvane::presetMenuTitle(m_concerns->equalizer.currentEQPresetID(), resolvedLanguage());
}
QStringList LibraryViewModel::userEQPresetNames() const {
    return m_concerns->equalizer.userEQPresetNames();
}
bool LibraryViewModel::soundCheckEnabled() const {
    return m_concerns->soundCheck.soundCheckEnabled();
}
void LibraryViewModel::setSoundCheckEnabled(bool enabled) {
    m_concerns->soundCheck.setSoundCheckEnabled(enabled);
}
SpectrumModel* LibraryViewModel::spectrum() {
    return &m_concerns->engine.spectrum();
}
void LibraryViewModel::setEqGain(int band, double dB) {
    m_concerns->equalizer.setEqGain(band, dB);
}
void LibraryViewModel::applyBuiltInEQPreset(const QString& id) {
    m_concerns->equalizer.applyBuiltInEQPreset(id);
}
void LibraryViewModel::applyUserEQPreset(const QString& name) {
    m_concerns->equalizer.applyUserEQPreset(name);
}
void LibraryViewModel::saveCurrentEQPreset(const QString& name) {
    m_concerns->equalizer.saveCurrentEQPreset(name);
}
void LibraryViewModel::deleteUserEQPreset(const QString& name) {
    m_concerns->equalizer.deleteUserEQPreset(name);
}

AppLanguage LibraryViewModel::languageSetting() const {
    return m_concerns->language.languageSetting();
}
void LibraryViewModel::setLanguageSetting(AppLanguage setting) {
    m_concerns->language.setLanguageSetting(setting);
}
ResolvedLanguage LibraryViewModel::resolvedLanguage() const {
    return m_concerns->resolvedLanguage();
}

SpectrumTintMode LibraryViewModel::themeAccentMode() const {
    return m_concerns->theme.themeAccentMode();
}
void LibraryViewModel::setThemeAccentMode(SpectrumTintMode mode) {
    m_concerns->theme.setThemeAccentMode(mode);
}
QColor LibraryViewModel::customThemeAccent() const {
    return qtColor(m_concerns->theme.customThemeAccent());
}
void LibraryViewModel::setCustomThemeAccent(const QColor& color) {
    m_concerns->theme.setCustomThemeAccent(colorOf(color));
}
CornerStyle LibraryViewModel::themeCornerStyle() const {
    return m_concerns->theme.themeCornerStyle();
}
void LibraryViewModel::setThemeCornerStyle(CornerStyle style) {
    m_concerns->theme.setThemeCornerStyle(style);
}
BackgroundStyle LibraryViewModel::themeBackgroundStyle() const {
    return m_concerns->theme.themeBackgroundStyle();
}
void LibraryViewModel::setThemeBackgroundStyle(BackgroundStyle style) {
    m_concerns->theme.setThemeBackgroundStyle(style);
}
SpectrumTintMode LibraryViewModel::spectrumTintMode() const {
    return m_concerns->theme.spectrumTintMode();
}
void LibraryViewModel::setSpectrumTintMode(SpectrumTintMode mode) {
    m_concerns->theme.setSpectrumTintMode(mode);
}
QColor LibraryViewModel::customSpectrumColor() const {
    return qtColor(m_concerns->theme.customSpectrumColor());
}
void LibraryViewModel::setCustomSpectrumColor(const QColor& color) {
    m_concerns->theme.setCustomSpectrumColor(colorOf(color));
}
QColor LibraryViewModel::spectrumTint() const {
    return qtColor(m_concerns->theme.spectrumTint());
}
QColor LibraryViewModel::ambientColor() const {
    return qtColor(m_concerns->ambient.ambientColor());
}
double LibraryViewModel::ambientBackgroundBoost() const {
    return m_concerns->theme.ambientBackgroundBoost();
}
const AppTheme::Style& LibraryViewModel::themeStyle() const {
    return m_concerns->theme.style();
}

} // namespace halvane
