// SPDX-License-Identifier: MIT
#include "presentation/app_theme.h"

#include "presentation/artwork_color.h"

namespace halvane::AppTheme {

Radii radii(CornerStyle style) {
    switch (style) {
    case CornerStyle::sharp:
        return {7, 5, 3};
    case CornerStyle::standard:
        break;
    case CornerStyle::round:
        return {18, 14, 11};
    }
    return {};
}

Color windowBackground(BackgroundStyle style) {
    return style == BackgroundStyle::oled ? Color{0, 0, 0} : defaultWindowBackground;
}

double ambientBackgroundBoost(BackgroundStyle style) {
    return style == BackgroundStyle::ambient ? 0.22 : 0;
}

Color resolvedThemeAccent(SpectrumTintMode mode, const Color& ambient, const Color& custom) {
    return spectrumTint(mode, ambient, custom, defaultAccent);
}

Color spectrumTint(SpectrumTintMode mode, const Color& ambient, const Color& custom,
                   const Color& accent) {
    switch (mode) {
    case SpectrumTintMode::ambient:
        return ArtworkColor::vivid(ambient);
    case SpectrumTintMode::mint:
        break;
    case SpectrumTintMode::gold:
        return gold;
    case SpectrumTintMode::sunset:
        return warmAccent;
    case SpectrumTintMode::custom:
        return custom;
    }
    return accent;
}

} // namespace halvane::AppTheme
