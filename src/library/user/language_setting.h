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

    AppLanguage languageSetting() const { return m_setting; }
    /// Stores the choice.
    void setLanguageSetting(AppLanguage setting);
    /// The language to show texts in now; asks the system afresh where the setting says so.
    ResolvedLanguage resolvedLanguage() const;
    /// The system's languages may have changed: lets the texts be read again.
    void systemLanguagesChanged();

  Q_SIGNALS:
    void languageChanged();

  private:
    Preferences& m_preferences;
    const PreferredLanguages& m_system;
    AppLanguage m_setting = AppLanguage::english;
};

} // namespace halvane
