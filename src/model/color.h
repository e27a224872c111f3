// SPDX-License-Identifier: MIT
#pragma once

#include "model/hash.h"

namespace halvane {

/// A colour as four doubles in 0...1, kept exactly as given: stored colours must read back as the
/// very numbers that were written. Plain value, any thread.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double opacity = 1;

    bool operator==(const Color&) const = default;
};

/// Hue, saturation and brightness, each in 0...1 (the HSV hexcone).
struct Hsb {
    double hue = 0;
    double saturation = 0;
    double brightness = 0;
};

/// The colour of a hue in 0...1 (1 is red again), a saturation and a brightness in 0...1.
Color colorFromHsb(const Hsb& hsb, double opacity = 1);

/// The inverse of colorFromHsb; greys have hue 0.
Hsb hsbOf(const Color& color);

inline size_t qHash(const Color& c, size_t seed = 0) {
    return Hasher(seed).add(c.red).add(c.green).add(c.blue).add(c.opacity).result();
}

} // namespace halvane
