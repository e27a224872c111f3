// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QObject>

namespace halvane {

class PreferredLanguages;
class Preferences;

/// Which language the windows speak. Main thread.
class LanguageSetting : public QObject {
    Q_OBJECT
    Q_PROPERTY(halvane::AppLanguage languageSetting READ languageSetting WRITE setLanguageSetting
                   NOTIFY languageChanged)
    Q_PROPERTY(
        halvane::ResolvedLanguage resolvedLanguage READ resolvedLanguage NOTIFY languageChanged)

  public:
    /// English until restore. Both references must outlive it.
    LanguageSetting(Preferences& preferences, const PreferredLanguages& system,
                    QObject* parent = nullptr);

    void restore();

    [[nodiscard]] AppLanguage languageSetting() const { return m_setting; }
    /// Stores the choice.
    void setLanguageSetting(AppLanguage setting);
    /// The language of the texts now. Asks the system each time if the setting follows the system.
    [[nodiscard]] ResolvedLanguage resolvedLanguage() const;
    /// The system's languages may have changed.
    void systemLanguagesChanged();

  Q_SIGNALS:
    void languageChanged();

  private:
    Preferences& m_preferences;
    const PreferredLanguages& m_system;
    AppLanguage m_setting = AppLanguage::english;
};

} // namespace halvane
