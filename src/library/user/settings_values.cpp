// SPDX-License-Identifier: MIT
#include "library/user/settings_values.h"

#include <algorithm>
#include <cmath>

namespace halvane {

namespace {

// The numbers, if there are exactly that many and all are finite.
std::optional<std::vector<double>> finite(const std::optional<std::vector<double>>& stored,
                                          std::size_t count) {
    if (!stored || stored->size() != count ||
        !std::all_of(stored->begin(), stored->end(), [](double v) { return std::isfinite(v); }))
        return std::nullopt;
    return *stored;
}

} // namespace

std::optional<double> storedVolume(const std::optional<double>& stored) {
    if (!stored)
        return std::nullopt;
    return *stored > 0 ? std::min(*stored, 1.0) : 0.0;
}

std::optional<Color> storedColor(const std::optional<std::vector<double>>& stored) {
    const auto numbers = finite(stored, 3);
    return numbers ? std::optional(Color{(*numbers)[0], (*numbers)[1], (*numbers)[2], 1})
                   : std::nullopt;
}

std::optional<std::vector<double>> colorNumbers(const Color& color) {
    return finite(std::vector{color.red, color.green, color.blue}, 3);
}

std::optional<std::vector<double>> storedGains(const std::optional<std::vector<double>>& stored) {
    return finite(stored, 10);
}

std::optional<double> storedNumber(const std::optional<double>& stored) {
    return stored && std::isfinite(*stored) ? std::optional(*stored) : std::nullopt;
}

} // namespace halvane
