// SPDX-License-Identifier: MIT
#include "library/user/language_setting.h"

#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

namespace halvane {

LanguageSetting::LanguageSetting(Preferences& preferences, const PreferredLanguages& system,
                                 QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_system(system) {
}

void LanguageSetting::restore() {
    if (const auto setting = storedEnum<AppLanguage>(m_preferences.string(SettingsKey::language)))
        setLanguageSetting(*setting);
}

void LanguageSetting::setLanguageSetting(AppLanguage setting) {
    assertOwnThread(*this);
    const bool changes = m_setting != setting;
    m_setting = setting;
    m_preferences.setString(SettingsKey::language, rawValue(setting));
    if (changes)
        Q_EMIT languageChanged();
}

ResolvedLanguage LanguageSetting::resolvedLanguage() const {
    return resolved(m_setting, m_system);
}

void LanguageSetting::systemLanguagesChanged() {
    if (m_setting == AppLanguage::system)
        Q_EMIT languageChanged();
}

} // namespace halvane
