// SPDX-License-Identifier: MIT
#include "platform/preferences/number_list_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace halvane {

namespace {

constexpr std::string_view null = "null";
constexpr std::string_view tooLarge = "1e999";

void append(QByteArray& text, double number) {
    if (std::isnan(number)) {
        text += "null";
    } else if (std::isinf(number)) {
        text += number < 0 ? "-1e999" : "1e999";
    } else {
        std::array<char, 32> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        text.append(digits.data(), end - digits.data());
    }
}

// Reads one number and moves past it.
std::optional<double> take(std::string_view& text) {
    if (text.starts_with(null)) {
        text.remove_prefix(null.size());
        return std::numeric_limits<double>::quiet_NaN();
    }
    const bool negative = text.starts_with('-');
    if (text.substr(negative ? 1 : 0).starts_with(tooLarge)) {
        text.remove_prefix(tooLarge.size() + (negative ? 1 : 0));
        const double infinity = std::numeric_limits<double>::infinity();
        return negative ? -infinity : infinity;
    }
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || !std::isfinite(number))
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

// Whether the text goes on with a character. Moves past it then, and past blanks around it.
bool skip(std::string_view& text, char character) {
    skipBlanks(text);
    if (!text.starts_with(character))
        return false;
    text.remove_prefix(1);
    skipBlanks(text);
    return true;
}

} // namespace

QByteArray numberListText(const std::vector<double>& numbers) {
    QByteArray text = "[";
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0)
            text += ',';
        append(text, numbers[i]);
    }
    return text += ']';
}

std::optional<std::vector<double>> numberListFromText(std::string_view text) {
    std::vector<double> numbers;
    numbers.reserve(2); // most stored lists are a measurement, which has two
    if (!skip(text, '['))
        return std::nullopt;
    while (!text.starts_with(']')) {
        const auto number = take(text);
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
        if (!skip(text, ','))
            break;
        if (text.starts_with(']'))
            return std::nullopt;
    }
    return skip(text, ']') && text.empty() ? std::optional(std::move(numbers)) : std::nullopt;
}

} // namespace halvane
