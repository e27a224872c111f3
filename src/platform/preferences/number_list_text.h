// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>
#include <string_view>
#include <vector>

namespace halvane {

/// Numbers as a JSON array, "[-12.5,3]". Each is in the shortest form that reads back as the same
/// number. Infinity and not-a-number, which JSON does not know, are "inf" and "nan". Any thread.
QByteArray numberListText(const std::vector<double>& numbers);

/// The numbers of such a text, or of any other JSON array of numbers. None for other texts. Any
/// thread.
std::optional<std::vector<double>> numberListFromText(std::string_view text);

} // namespace halvane
