// SPDX-License-Identifier: MIT
#include "metadata/encodings/text_reading.h"

#include <QStringDecoder>

namespace halvane {

namespace {

// Letters by how frequent they are in texts, in bits.
constexpr LikelyCharacters cyrillicLetters[] = {
    {3.5, u"оеаи"},   {4, u"нтс"},   {4.5, u"рвлк"},   {5.2, u"мдпу"},
    {6, u"яыьгзбчй"}, {7, u"хжшюі"}, {8, u"цщэфъёїє"}, {11, u"ґ"},
};

constexpr LikelyCharacters greekLetters[] = {
    {3.5, u"αοιε"}, {3.9, u"τσν"},  {4.5, u"ηυρπκμλς"}, {5.3, u"ωίάό"}, {5.8, u"γδέή"},
    {6.5, u"βχθύ"}, {7.5, u"φξζώ"}, {9, u"ψϊ"},         {11, u"ϋΐΰ"},
};

constexpr LikelyCharacters marks[] = {{7, u"«»–—№…"}, {8, u"’“”„"}};

constexpr std::u16string_view vowels = u"аеёиоуыэюяіїєαοιευωηάέήίόύώϊϋΐΰ";

struct Alphabet {
    const char* codec;
    std::span<const LikelyCharacters> letters;

    [[nodiscard]] double bits(char16_t c) const { return bitsOf(QChar::toLower(c), letters, 0); }
    [[nodiscard]] bool has(char16_t c) const { return bits(c) > 0; }
};

const Alphabet& alphabetOf(AlphabetEncoding encoding) {
    static constexpr Alphabet cyrillic{"windows-1251", cyrillicLetters};
    static constexpr Alphabet greek{"windows-1253", greekLetters};
    return encoding == AlphabetEncoding::cyrillic ? cyrillic : greek;
}

bool isVowel(char16_t c) {
    return vowels.find(QChar::toLower(c)) != std::u16string_view::npos;
}

double letterBits(const Alphabet& alphabet, char16_t beforePrevious, char16_t previous,
                  char16_t letter, char16_t next) {
    double bits = alphabet.bits(letter);
    const bool isWithin = alphabet.has(previous);
    const bool isThird = isWithin && alphabet.has(beforePrevious);
    const bool followsSmall = isWithin && !QChar::isUpper(previous);
    if (QChar::isUpper(letter))
        bits += followsSmall ? 8 : 1;
    else if (isThird && QChar::isUpper(previous))
        bits += 8;
    else if (!isWithin)
        bits += 2;
    if (isAsciiLetter(previous) || isAsciiLetter(next))
        bits += 8;
    if (isThird && isVowel(letter) == isVowel(previous) &&
        isVowel(letter) == isVowel(beforePrevious))
        bits += 2.5;
    return bits;
}

} // namespace

bool isGreekOrCyrillicLetter(char16_t c) {
    return bitsOf(QChar::toLower(c), cyrillicLetters, 0) > 0 ||
           bitsOf(QChar::toLower(c), greekLetters, 0) > 0;
}

std::optional<TextReading> readAsAlphabet(const QByteArray& bytes, AlphabetEncoding encoding) {
    const Alphabet& alphabet = alphabetOf(encoding);
    QStringDecoder decode(alphabet.codec);
    if (!decode.isValid())
        return std::nullopt;
    TextReading reading{0, decode(bytes)};
    const QString& text = reading.text;
    if (decode.hasError() || text.contains(QChar::ReplacementCharacter))
        return std::nullopt;
    const auto at = [&text](qsizetype index) {
        return index >= 0 && index < text.size() ? text[index].unicode() : u' ';
    };
    int count = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (at(i) < 0x80)
            continue;
        const bool isLetter = alphabet.has(at(i));
        count += isLetter;
        reading.bits += isLetter ? letterBits(alphabet, at(i - 2), at(i - 1), at(i), at(i + 1))
                                 : bitsOf(at(i), marks, 14);
    }
    if (count < 2)
        return std::nullopt;
    return reading;
}

} // namespace halvane
