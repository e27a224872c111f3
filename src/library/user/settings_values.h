// SPDX-License-Identifier: MIT
// What a stored value is taken for. None means that nothing is stored, or nothing usable: the
// setting keeps what it has, nothing is said, and the stored value stays as it is. Any thread.
#pragma once

#include "model/color.h"
#include "model/raw_value.h"
#include "platform/preferences/preferences.h"

#include <QSet>

namespace halvane {

/// A case by its stored name.
template<typename Enum>
std::optional<Enum> storedEnum(const std::optional<QString>& stored) {
    return stored ? fromRawValue<Enum>(*stored) : std::nullopt;
}

/// A volume, cut to 0...1; what is not above 0, not-a-number included, is 0.
std::optional<double> storedVolume(const std::optional<double>& stored);

/// A colour of three finite numbers, exactly as they were written, and opaque.
std::optional<Color> storedColor(const std::optional<std::vector<double>>& stored);

/// The numbers under which a colour is stored, without its opacity; none for a colour that is not
/// made of finite numbers.
std::optional<std::vector<double>> colorNumbers(const Color& color);

/// The gains of the equalizer's ten bands in dB, all finite.
std::optional<std::vector<double>> storedGains(const std::optional<std::vector<double>>& stored);

/// A finite number.
std::optional<double> storedNumber(const std::optional<double>& stored);

} // namespace halvane
