// SPDX-License-Identifier: MIT
#include "metadata/encodings/text_reading.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

constexpr LikelyCharacters letters[] = {
    {4.5, u"éäöü"},   {5, u"áåíóø"},   {5.5, u"èãæçúñ"}, {6, u"àëß"},
    {6.5, u"êôõýšž"}, {7, u"âìîïòðþ"}, {7.5, u"ùûœ"},    {9, u"ÿ"},
};

constexpr LikelyCharacters marks[] = {
    {4.5, u"’"}, {6, u"–"},       {7, u"‘“”—…"},     {8, u"¿¡«»°º·®©™•\u00a0"}, {9, u"´ª²³€£„"},
    {9.5, u"½"}, {10, u"§‹›†¼¾"}, {11, u"±×µ¹¥¢÷‚"}, {12, u"¨¬¶‡ˆ‰˜ƒ"},
};

constexpr std::u16string_view marksBeforeWords = u"’‘“„«‹¿¡·´–—€£§©°…\u00a0•";
constexpr std::u16string_view marksBehindWords = u"’”»›´·®™°ºª²³–—…\u00a0¼½¾";

constexpr std::u16string_view marksWithinWords = u"’´·";

// Pairs of unlike accented letters that are common within words.
constexpr std::array<std::u16string_view, 4> pairs = {u"åä", u"çã", u"çõ", u"üß"};

// Where Vietnamese has a tone behind its vowel, Windows-1252 has one of these.
constexpr std::u16string_view tones = u"ÌÒÞìò";
constexpr std::u16string_view vietnameseVowels = u"aeiouyâêôãõý";

constexpr double bitsOfNoCharacter = 16;

QString windows1252(const QByteArray& bytes) {
    // The two differ where Latin-1 has controls.
    static constexpr char16_t upper[] = {
        0x20ac, 0x81,   0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x8d,   0x017d, 0x8f,   0x90,   0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
        0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x9d,   0x017e, 0x0178};
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text) {
        if (c.unicode() >= 0x80 && c.unicode() < 0xa0)
            c = QChar(upper[c.unicode() - 0x80]);
    }
    return text;
}

char16_t lowered(char16_t c) {
    return QChar::toLower(c);
}

bool isAccented(char16_t c) {
    return c >= 0x80 && bitsOf(lowered(c), letters, 0) > 0;
}

bool isWordLetter(char16_t c) {
    return isAsciiLetter(c) || isAccented(c);
}

bool isSmall(char16_t c) {
    return isWordLetter(c) && c == lowered(c);
}

bool isCapital(char16_t c) {
    return isWordLetter(c) && c != lowered(c);
}

// One character above ASCII with the two in front of it and the one behind it.
struct Place {
    char16_t beforePrevious;
    char16_t previous;
    char16_t character;
    char16_t next;

    [[nodiscard]] bool isVietnamese() const {
        const bool isTone = tones.find(character) != std::u16string_view::npos;
        const bool isBarredD = lowered(character) == u'ð' && !isWordLetter(previous);
        const auto isVowel = [](char16_t c) {
            return vietnameseVowels.find(lowered(c)) != std::u16string_view::npos;
        };
        return (isTone && isSmall(previous) && isVowel(previous)) || (isBarredD && isVowel(next));
    }

    [[nodiscard]] double letterBits() const {
        if (isVietnamese())
            return 6;
        double bits = bitsOf(lowered(character), letters, 0);
        if (isCapital(character)) {
            bits += isSmall(previous) ? 9 : 2;
            bits -= isSmall(next) ? 1 : 0;
        }
        if (!isAccented(previous))
            return bits;
        const char16_t pair[] = {lowered(previous), lowered(character)};
        if (pair[0] != pair[1] &&
            std::ranges::find(pairs, std::u16string_view(pair, 2)) == pairs.end())
            bits += 3;
        return bits + (isAccented(beforePrevious) ? 5 : 0);
    }

    [[nodiscard]] double markBits() const {
        if (character < 0xa0)
            return bitsOfNoCharacter;
        double bits = bitsOf(character, marks, 13);
        const auto touches = [](char16_t c) { return isWordLetter(c) || (c >= u'0' && c <= u'9'); };
        if (touches(next) && marksBeforeWords.find(character) == std::u16string_view::npos)
            bits += 4;
        if (touches(previous) && marksBehindWords.find(character) == std::u16string_view::npos)
            bits += 4;
        if (previous >= 0x80 && !isAccented(previous))
            bits += 3;
        if (isWordLetter(previous) && isWordLetter(next) &&
            marksWithinWords.find(character) == std::u16string_view::npos)
            bits += 4;
        return bits + (isAccented(previous) || isAccented(next) ? 1 : 0);
    }

    // Beside what is no letter of English, a sign that programmers use is half of another
    // character.
    [[nodiscard]] double signBits() const {
        const auto isSign = [](char16_t c) {
            return std::u16string_view(u"@[\\]^_`{|}~").find(c) != std::u16string_view::npos;
        };
        return isSign(next) || isSign(previous) ? 4 : 0;
    }
};

// A word of two or more letters that are all accented is hardly ever one.
double bitsOfAccentedWords(QStringView text) {
    double bits = 0;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = start;
        bool hasPlain = false;
        for (; end < text.size() && isWordLetter(text[end].unicode()); ++end)
            hasPlain |= isAsciiLetter(text[end].unicode());
        if (!hasPlain && end - start >= 2)
            bits += 5 + 3.0 * static_cast<double>(end - start - 2);
        start = end + 1;
    }
    return bits;
}

} // namespace

double bitsOf(char16_t character, std::span<const LikelyCharacters> rows, double otherwise) {
    const auto row = std::ranges::find_if(rows, [character](const LikelyCharacters& one) {
        return one.characters.find(character) != std::u16string_view::npos;
    });
    return row == rows.end() ? otherwise : row->bits;
}

bool isAsciiLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

TextReading readAsLatin(const QByteArray& bytes) {
    TextReading reading{0, windows1252(bytes)};
    const QString& text = reading.text;
    const auto at = [&text](qsizetype index) {
        return index >= 0 && index < text.size() ? text[index].unicode() : u' ';
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (at(i) < 0x80)
            continue;
        const Place place{at(i - 2), at(i - 1), at(i), at(i + 1)};
        reading.bits += isAccented(at(i)) ? place.letterBits() : place.markBits();
        reading.bits += place.signBits();
    }
    if (!std::ranges::any_of(text, [](QChar c) { return isAsciiLetter(c.unicode()); }))
        reading.bits += 2;
    reading.bits += bitsOfAccentedWords(text);
    return reading;
}

} // namespace halvane
