// SPDX-License-Identifier: MIT
// The one dark look: the fixed palette, and the values that follow the user's theme settings.
// Colours are sRGB. Plain values and pure functions; any thread.
#pragma once

#include "model/color.h"
#include "model/enums.h"

namespace halvane {

namespace AppTheme {

inline constexpr Color sidebarBackground{0.07, 0.075, 0.082};
inline constexpr Color panel{0.105, 0.112, 0.12};
inline constexpr Color panelRaised{0.145, 0.154, 0.166};
inline constexpr Color controlBackground{0.08, 0.086, 0.094};
inline constexpr Color line{1, 1, 1, 0.16};
inline constexpr Color primaryText{0.985, 0.982, 0.96};
inline constexpr Color secondaryText{0.79, 0.8, 0.78};
inline constexpr Color tertiaryText{0.62, 0.64, 0.63};
inline constexpr Color warmAccent{1.0, 0.52, 0.4};
inline constexpr Color gold{1.0, 0.78, 0.3};
inline constexpr Color defaultAccent{0.42, 0.92, 0.78};
inline constexpr Color defaultWindowBackground{0.045, 0.048, 0.052};

/// Corner radii in logical pixels.
struct Radii {
    double large = 12;
    double medium = 9;
    double small = 7;

    bool operator==(const Radii&) const = default;
};

Radii radii(CornerStyle style);

/// The values that a theme setting changes.
struct Style {
    Color accent = defaultAccent;
    Color windowBackground = defaultWindowBackground;
    Radii radii;

    bool operator==(const Style&) const = default;
};

/// The base colour of the windows.
Color windowBackground(BackgroundStyle style);

/// How much more of the ambient colour the main window's backdrop shows, as added opacity.
double ambientBackgroundBoost(BackgroundStyle style);

/// The accent colour of a mode.
Color resolvedThemeAccent(SpectrumTintMode mode, const Color& ambient, const Color& custom);

/// How well one opaque colour reads on another, 1 to 21: WCAG 2.2, "contrast ratio".
double contrast(const Color& one, const Color& other);

/// The colour itself where text in it keeps a contrast of 4.5 on every surface of the windows, and
/// on those that are selected in it. Otherwise its hue, lifted until it does: first brighter, then
/// paler. A colour that is not made of finite numbers comes back as it is.
Color legible(const Color& color);

/// The colour of the spectrum in a mode. Mint means the accent in use here, not the default accent.
Color spectrumTint(SpectrumTintMode mode, const Color& ambient, const Color& custom,
                   const Color& accent);

} // namespace AppTheme

} // namespace halvane
