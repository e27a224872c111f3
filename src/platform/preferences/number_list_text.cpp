// SPDX-License-Identifier: MIT
#include "platform/preferences/number_list_text.h"

#include <array>
#include <charconv>

namespace halvane {

namespace {

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
    for (const double number : numbers) {
        std::array<char, 32> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        if (text.size() > 1)
            text += ',';
        text.append(digits.data(), end - digits.data());
    }
    return text += ']';
}

std::optional<std::vector<double>> numberListFromText(std::string_view text) {
    std::vector<double> numbers;
    numbers.reserve(2); // most stored lists are a measurement, which has two
    if (!skip(text, '['))
        return std::nullopt;
    for (bool isOver = skip(text, ']'); !isOver; isOver = skip(text, ']')) {
        if (!numbers.empty() && !skip(text, ','))
            return std::nullopt;
        const auto [end, error] =
            std::from_chars(text.data(), text.data() + text.size(), numbers.emplace_back());
        if (error != std::errc())
            return std::nullopt;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    }
    return text.empty() ? std::optional(std::move(numbers)) : std::nullopt;
}

} // namespace halvane
