// SPDX-License-Identifier: MIT
#include "presentation/app_theme.h"

#include "presentation/artwork_color.h"

#include <algorithm>
#include <cmath>

namespace halvane::AppTheme {

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

// WCAG 2.2, "relative luminance".
double luminance(const Color& color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

Color over(const Color& top, double opacity, const Color& below) {
    const auto mixed = [opacity](double a, double b) { return a * opacity + b * (1 - opacity); };
    return {mixed(top.red, below.red), mixed(top.green, below.green), mixed(top.blue, below.blue)};
}

// The lightest surface that text in the accent stands on is a raised one. What is selected has a
// little of the accent over that.
bool isLegible(const Color& accent) {
    constexpr double least = 4.5;
    constexpr double selection = 0.14;
    return contrast(accent, panelRaised) >= least &&
           contrast(accent, over(accent, selection, panel)) >= least;
}

} // namespace

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

double contrast(const Color& one, const Color& other) {
    constexpr double flare = 0.05;
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + flare) / (std::min(a, b) + flare);
}

Color legible(const Color& color) {
    if (!std::isfinite(color.red) || !std::isfinite(color.green) || !std::isfinite(color.blue))
        return color;
    constexpr double step = 0.01;
    Color lifted = color;
    Hsb hsb = hsbOf(color);
    while (!isLegible(lifted) && (hsb.brightness < 1 || hsb.saturation > 0)) {
        if (hsb.brightness < 1)
            hsb.brightness = std::min(1.0, hsb.brightness + step);
        else
            hsb.saturation = std::max(0.0, hsb.saturation - step);
        lifted = colorFromHsb(hsb, color.opacity);
    }
    return lifted;
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
