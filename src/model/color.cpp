// SPDX-License-Identifier: MIT
#include "model/color.h"

#include <algorithm>
#include <cmath>

namespace halvane {

Color colorFromHsb(const Hsb& hsb, double opacity) {
    const double sector = (hsb.hue - std::floor(hsb.hue)) * 6;
    const int index = static_cast<int>(sector) % 6;
    const double fraction = sector - std::floor(sector);
    const double v = hsb.brightness;
    const double p = v * (1 - hsb.saturation);
    const double q = v * (1 - hsb.saturation * fraction);
    const double t = v * (1 - hsb.saturation * (1 - fraction));
    switch (index) {
    case 0:
        return {v, t, p, opacity};
    case 1:
        return {q, v, p, opacity};
    case 2:
        return {p, v, t, opacity};
    case 3:
        return {p, q, v, opacity};
    case 4:
        return {t, p, v, opacity};
    default:
        return {v, p, q, opacity};
    }
}

Hsb hsbOf(const Color& c) {
    const double high = std::max({c.red, c.green, c.blue});
    const double low = std::min({c.red, c.green, c.blue});
    const double chroma = high - low;
    double hue = 0;
    if (chroma > 0) {
        if (high == c.red)
            hue = (c.green - c.blue) / chroma;
        else if (high == c.green)
            hue = (c.blue - c.red) / chroma + 2;
        else
            hue = (c.red - c.green) / chroma + 4;
        hue /= 6;
        if (hue < 0)
            hue += 1;
    }
    return {hue, high > 0 ? chroma / high : 0, high};
}

} // namespace halvane
