// SPDX-License-Identifier: MIT
// Checks of stored values. None means that nothing usable is stored: the setting then keeps its
// value without a message, and the stored value stays as it is. Any thread.
#pragma once

#include "model/color.h"
#include "model/raw_value.h"
#include "platform/preferences/preferences.h"

#include <QSet>

namespace halvane {

/// The enumerator with the stored name.
template<typename Enum>
std::optional<Enum> storedEnum(const std::optional<QString>& stored) {
    return stored ? fromRawValue<Enum>(*stored) : std::nullopt;
}

/// A volume, clamped to 0...1. Not-a-number is 0.
std::optional<double> storedVolume(const std::optional<double>& stored);

/// An opaque colour of three finite numbers, exactly as they were written.
std::optional<Color> storedColor(const std::optional<std::vector<double>>& stored);

/// The numbers as which a colour is stored, without its opacity. None if any of them is not finite.
std::optional<std::vector<double>> colorNumbers(const Color& color);

/// The gains of the equalizer's ten bands in dB, all finite.
std::optional<std::vector<double>> storedGains(const std::optional<std::vector<double>>& stored);

/// A finite number.
std::optional<double> storedNumber(const std::optional<double>& stored);

} // namespace halvane
