// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"

#include <QObject>
#include <QStringList>

#include <vector>

namespace halvane {

class LanguageSetting;

/// The equalizer as the user has set it: on or off, ten gains and a preamp in dB, the current
/// preset and the user's own presets. Numbers are kept as given; the engine clamps them to
/// -12...+12. Every change is stored and reaches the engine at once. Main thread.
class EqualizerSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool eqEnabled READ eqEnabled WRITE setEqEnabled NOTIFY eqEnabledChanged)
    Q_PROPERTY(std::vector<double> eqGains READ eqGains NOTIFY eqGainsChanged)
    Q_PROPERTY(double eqPreamp READ eqPreamp WRITE setEqPreamp NOTIFY eqPreampChanged)
    // The current preset is a built-in one, one of the user's, or none; an empty text: not of that
    // kind.
    Q_PROPERTY(QString currentBuiltInEQPreset READ currentBuiltInEQPreset NOTIFY
                   currentEQPresetIDChanged) // its id
    Q_PROPERTY(QString currentUserEQPreset READ currentUserEQPreset NOTIFY
                   currentEQPresetIDChanged) // its name
    Q_PROPERTY(QString presetMenuTitle READ presetMenuTitle NOTIFY presetMenuTitleChanged)
    Q_PROPERTY(QStringList userEQPresetNames READ userEQPresetNames NOTIFY userEQPresetsChanged)

  public:
    /// Off and flat until restore. Both references must outlive it.
    EqualizerSettings(Preferences& preferences, const LanguageSetting& language,
                      QObject* parent = nullptr);

    /// Takes everything from the preferences and applies it.
    void restore();

    [[nodiscard]] bool eqEnabled() const { return m_enabled; }
    [[nodiscard]] const std::vector<double>& eqGains() const { return m_gains; }
    [[nodiscard]] double eqPreamp() const { return m_preamp; }
    /// "builtin:" and an id, or "user:" and a name; empty after a change by hand.
    [[nodiscard]] const QString& currentEQPresetID() const { return m_currentPresetID; }
    [[nodiscard]] QString currentBuiltInEQPreset() const;
    [[nodiscard]] QString currentUserEQPreset() const;
    /// The current preset's name, in the windows' language.
    [[nodiscard]] QString presetMenuTitle() const;
    /// Ten gains and the preamp by name. A stored preset of another length is listed, but choosing
    /// it does nothing.
    [[nodiscard]] const NumbersMap& userEQPresets() const { return m_userPresets; }
    /// The names of the user's presets, in the order of the user's language.
    [[nodiscard]] QStringList userEQPresetNames() const;

    void setEqEnabled(bool enabled);
    /// Sets all ten gains. This is a change by hand, after which no preset is current.
    void setEqGains(const std::vector<double>& gains);
    /// Moves one fader. Does nothing for an unknown band.
    Q_INVOKABLE void setEqGain(int band, double dB);
    void setEqPreamp(double dB);

    /// Unknown ids and names, and presets of another length, do nothing.
    Q_INVOKABLE void applyBuiltInEQPreset(const QString& id);
    Q_INVOKABLE void applyUserEQPreset(const QString& name);
    /// Keeps the current curve under a trimmed name, in the place of a preset with that name. Does
    /// nothing for an empty name.
    Q_INVOKABLE void saveCurrentEQPreset(const QString& name);
    /// The curve stays as it is.
    Q_INVOKABLE void deleteUserEQPreset(const QString& name);

  Q_SIGNALS:
    /// The engine must take this state, which may be the one that it has.
    void applied(bool enabled, const std::vector<double>& gains, double preamp);
    void eqEnabledChanged();
    void eqGainsChanged();
    void eqPreampChanged();
    void currentEQPresetIDChanged();
    void presetMenuTitleChanged();
    void userEQPresetsChanged();

  private:
    void applyEQ();
    void eqSettingsChanged();
    void applyPreset(const std::vector<double>& gains, double preamp, const QString& id);
    void setCurrentEQPresetID(const QString& id);

    Preferences& m_preferences;
    const LanguageSetting& m_language;
    bool m_enabled = false;
    std::vector<double> m_gains = std::vector<double>(10, 0.0);
    double m_preamp = 0;
    QString m_currentPresetID;
    NumbersMap m_userPresets;
    bool m_isApplyingEQPreset = false; ///< the curve changes, and not by hand
};

} // namespace halvane
