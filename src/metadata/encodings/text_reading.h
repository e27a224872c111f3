// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <span>
#include <string_view>

namespace halvane {

/// A text as one encoding reads it. `bits` says how unlikely such a text is: about the bits that it
/// takes to tell each of its characters above ASCII, and more where they stand together as they do
/// in no word. The reading with the fewest bits is the likeliest. The figures were set by hand and
/// checked by bench/encodings over lists of names.
struct TextReading {
    double bits = 0;
    QString text;
};

/// Characters that are equally likely.
struct LikelyCharacters {
    double bits;
    std::u16string_view characters;
};

/// The bits of one character, `otherwise` where no row holds it.
double bitsOf(char16_t character, std::span<const LikelyCharacters> rows, double otherwise);

bool isAsciiLetter(char16_t c);

/// As Windows-1252, which text that is called Latin-1 is in practice. Always succeeds. Any thread.
TextReading readAsLatin(const QByteArray& bytes);

/// Encodings of one byte whose upper half is another alphabet.
enum class AlphabetEncoding { cyrillic, greek };

/// As Windows-1251 or Windows-1253; none if fewer than two of its letters are there. Any thread.
std::optional<TextReading> readAsAlphabet(const QByteArray& bytes, AlphabetEncoding encoding);

/// Whether the letter, in either case, is one that texts in Greek or Cyrillic are written with.
bool isGreekOrCyrillicLetter(char16_t c);

/// Encodings of two bytes for most characters.
enum class EastAsianEncoding { gb18030, big5, shiftJis, eucKr };

/// None if the bytes are not wholly characters of that encoding, or no word is among them. Any
/// thread.
std::optional<TextReading> readAsEastAsian(const QByteArray& bytes, EastAsianEncoding encoding);

} // namespace halvane
