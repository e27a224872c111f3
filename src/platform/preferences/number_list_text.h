// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>
#include <string_view>
#include <vector>

namespace halvane {

/// Numbers as a JSON array, "[-12.5,3]". Each is in the shortest form that reads back as the same
/// number. JSON knows neither infinity nor not-a-number: the first is written as 1e999, which is
/// too large for a double, the second as null. Any thread.
QByteArray numberListText(const std::vector<double>& numbers);

/// The numbers of such a text, or of any other JSON array of numbers. None for other texts. Any
/// thread.
std::optional<std::vector<double>> numberListFromText(std::string_view text);

} // namespace halvane
