// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>
#include <string_view>
#include <vector>

namespace halvane {

/// Numbers as a JSON array, "[-12.5,3]", each in the shortest form that reads back as the same
/// number. JSON has neither infinity, which is written too large for a double, nor not-a-number,
/// which is written null. Any thread.
QByteArray numberListText(const std::vector<double>& numbers);

/// The inverse; none for anything else.
std::optional<std::vector<double>> numberListFromText(std::string_view text);

} // namespace halvane
