// SPDX-License-Identifier: MIT
#pragma once

#include "library/user/ambient_color.h"
#include "model/enums.h"
#include "presentation/app_theme.h"
#include "presentation/qt_colors.h"

#include <QObject>

namespace halvane {

class Preferences;

/// How the program looks: the user's choices of accent, corners, background and spectrum colour,
/// and the style that follows from them. Every choice is stored at once. Main thread.
class ThemeSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(halvane::SpectrumTintMode themeAccentMode READ themeAccentMode WRITE
                   setThemeAccentMode NOTIFY themeChanged)
    Q_PROPERTY(QColor customThemeAccent READ shownCustomThemeAccent WRITE setShownCustomThemeAccent
                   NOTIFY themeChanged)
    Q_PROPERTY(halvane::CornerStyle themeCornerStyle READ themeCornerStyle WRITE setThemeCornerStyle
                   NOTIFY themeChanged)
    Q_PROPERTY(halvane::BackgroundStyle themeBackgroundStyle READ themeBackgroundStyle WRITE
                   setThemeBackgroundStyle NOTIFY themeChanged)
    Q_PROPERTY(halvane::SpectrumTintMode spectrumTintMode READ spectrumTintMode WRITE
                   setSpectrumTintMode NOTIFY spectrumTintChanged)
    Q_PROPERTY(QColor customSpectrumColor READ shownCustomSpectrumColor WRITE
                   setShownCustomSpectrumColor NOTIFY spectrumTintChanged)
    Q_PROPERTY(QColor spectrumTint READ shownSpectrumTint NOTIFY spectrumTintChanged)
    // What the windows are drawn with.
    Q_PROPERTY(QColor accent READ accent NOTIFY themeChanged)
    Q_PROPERTY(QColor windowBackground READ windowBackground NOTIFY themeChanged)
    Q_PROPERTY(double radiusLarge READ radiusLarge NOTIFY themeChanged)
    Q_PROPERTY(double radiusMedium READ radiusMedium NOTIFY themeChanged)
    Q_PROPERTY(double radiusSmall READ radiusSmall NOTIFY themeChanged)
    Q_PROPERTY(double ambientBackgroundBoost READ ambientBackgroundBoost NOTIFY themeChanged)

  public:
    /// Both references must outlive it.
    ThemeSettings(Preferences& preferences, const AmbientColor& ambient, QObject* parent = nullptr);

    /// Takes the spectrum's colour from the preferences.
    void restoreSpectrum();
    /// Takes everything else from the preferences, and applies it once.
    void restoreTheme();

    [[nodiscard]] SpectrumTintMode themeAccentMode() const { return m_accentMode; }
    [[nodiscard]] const Color& customThemeAccent() const { return m_customAccent; }
    [[nodiscard]] CornerStyle themeCornerStyle() const { return m_cornerStyle; }
    [[nodiscard]] BackgroundStyle themeBackgroundStyle() const { return m_backgroundStyle; }
    [[nodiscard]] SpectrumTintMode spectrumTintMode() const { return m_spectrumMode; }
    [[nodiscard]] const Color& customSpectrumColor() const { return m_customSpectrum; }

    void setThemeAccentMode(SpectrumTintMode mode);
    /// Colours are stored without their opacity, and only if all their numbers are finite.
    void setCustomThemeAccent(const Color& color);
    void setThemeCornerStyle(CornerStyle style);
    void setThemeBackgroundStyle(BackgroundStyle style);
    void setSpectrumTintMode(SpectrumTintMode mode);
    void setCustomSpectrumColor(const Color& color);

    /// What the windows are drawn with now.
    [[nodiscard]] const AppTheme::Style& style() const { return m_style; }
    [[nodiscard]] QColor accent() const { return qtColor(m_style.accent); }
    [[nodiscard]] QColor windowBackground() const { return qtColor(m_style.windowBackground); }
    [[nodiscard]] double radiusLarge() const { return m_style.radii.large; }
    [[nodiscard]] double radiusMedium() const { return m_style.radii.medium; }
    [[nodiscard]] double radiusSmall() const { return m_style.radii.small; }
    [[nodiscard]] Color resolvedThemeAccent() const;
    [[nodiscard]] Color spectrumTint() const;
    [[nodiscard]] double ambientBackgroundBoost() const;

    // The colours as the views take and give them.
    [[nodiscard]] QColor shownCustomThemeAccent() const { return qtColor(m_customAccent); }
    void setShownCustomThemeAccent(const QColor& color) { setCustomThemeAccent(colorOf(color)); }
    [[nodiscard]] QColor shownCustomSpectrumColor() const { return qtColor(m_customSpectrum); }
    void setShownCustomSpectrumColor(const QColor& color) {
        setCustomSpectrumColor(colorOf(color));
    }
    [[nodiscard]] QColor shownSpectrumTint() const { return qtColor(spectrumTint()); }

  Q_SIGNALS:
    /// A choice was made, or the style has changed with the artwork.
    void themeChanged();
    /// The spectrum's colour, or the choice behind it, may have changed.
    void spectrumTintChanged();

  private:
    void applyTheme();
    void ambientColorChanged();

    Preferences& m_preferences;
    const AmbientColor& m_ambient;
    SpectrumTintMode m_accentMode = SpectrumTintMode::mint;
    Color m_customAccent = AppTheme::defaultAccent;
    CornerStyle m_cornerStyle = CornerStyle::standard;
    BackgroundStyle m_backgroundStyle = BackgroundStyle::dark;
    SpectrumTintMode m_spectrumMode = SpectrumTintMode::ambient;
    Color m_customSpectrum = AppTheme::defaultAccent;
    AppTheme::Style m_style;
};

} // namespace halvane
