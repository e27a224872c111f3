// SPDX-License-Identifier: MIT
#include "metadata/encodings/common_characters.h"
#include "metadata/encodings/text_reading.h"

#include <QList>
#include <QStringDecoder>
#include <QStringEncoder>

#include <limits>

namespace halvane {

namespace {

using uchar = unsigned char;

constexpr double bitsOfCommonHan = 8.8;
constexpr double never = std::numeric_limits<double>::infinity();

bool isBetween(char32_t value, char32_t first, char32_t last) {
    return value >= first && value <= last;
}

// One character above ASCII: its first two bytes, its length, and what it stands for.
struct Character {
    uchar lead;
    uchar trail;
    int size;
    char32_t code;

    // By how the bytes of each encoding are ordered: by use first. `isWord` becomes true for what
    // words are made of.
    [[nodiscard]] double bits(EastAsianEncoding encoding, bool& isWord) const;

  private:
    [[nodiscard]] double bitsInGb18030(bool& isWord) const;
    [[nodiscard]] double bitsInBig5(bool& isWord) const;
    [[nodiscard]] double bitsInShiftJis(bool& isWord) const;
    [[nodiscard]] double bitsInEucKr(bool& isWord) const;
    [[nodiscard]] bool isCommonHan() const {
        return CommonCharacters::contains(CommonCharacters::simplified, code) ||
               CommonCharacters::contains(CommonCharacters::traditional, code);
    }
};

// Big5 keeps its frequent characters apart from the rare ones.
bool isFrequentTraditional(char32_t code) {
    QStringEncoder encode("Big5");
    const QByteArray bytes = encode(QString::fromUcs4(&code, 1));
    return bytes.size() == 2 && !encode.hasError() &&
           isBetween(static_cast<uchar>(bytes[0]), 0xa4, 0xc6);
}

double Character::bitsInGb18030(bool& isWord) const {
    if (size == 4) {
        isWord = true;
        return isBetween(code, 0x3400, 0x9fff) ? 26 : never;
    }
    const bool isGb2312 = lead >= 0xa1 && trail >= 0xa1;
    if (isGb2312 && isBetween(lead, 0xb0, 0xf7)) {
        isWord = true;
        if (CommonCharacters::contains(CommonCharacters::simplified, code))
            return bitsOfCommonHan;
        return lead < 0xd8 ? 12.2 : 15.5;
    }
    if (isGb2312 && lead <= 0xa9) {
        const bool isKana = lead == 0xa4 || lead == 0xa5;
        isWord = isKana;
        return lead == 0xa1 ? 8 : lead == 0xa3 ? 9 : isKana ? 12 : 14;
    }
    if (isBetween(lead, 0xa1, 0xa9))
        return 24;
    isWord = true;
    if (CommonCharacters::contains(CommonCharacters::traditional, code))
        return 11.5;
    return isFrequentTraditional(code) ? 13.5 : 19;
}

double Character::bitsInBig5(bool& isWord) const {
    if (lead < 0xa4)
        return lead == 0xa1 ? 9 : 13;
    isWord = true;
    return isCommonHan() ? bitsOfCommonHan : lead < 0xc7 ? 12.2 : 17;
}

double Character::bitsInShiftJis(bool& isWord) const {
    if (lead == 0x81)
        return std::u32string_view(U"ー、。・「」　〜！？").find(code) == std::u32string_view::npos
                   ? 12
                   : 8;
    isWord = true;
    if (size == 1)
        return 11; // half a character wide
    if (lead == 0x82) {
        isWord = trail >= 0x9f;
        return isWord ? 7 : 10;
    }
    if (lead == 0x83)
        return trail <= 0x96 ? 7.5 : 12;
    if (isBetween(lead, 0x88, 0x98))
        return isCommonHan() ? 9.5 : 11.8;
    return 17;
}

double Character::bitsInEucKr(bool& isWord) const {
    const bool isHangul = isBetween(code, 0xac00, 0xd7a3);
    isWord = isHangul || lead >= 0xca;
    if (isHangul)
        return CommonCharacters::contains(CommonCharacters::hangul, code) ? 7.2 : 11.2;
    return isWord ? 17 : 14;
}

double Character::bits(EastAsianEncoding encoding, bool& isWord) const {
    if (isBetween(code, 0xe000, 0xf8ff))
        return never; // nobody's character
    switch (encoding) {
    case EastAsianEncoding::gb18030:
        return bitsInGb18030(isWord);
    case EastAsianEncoding::big5:
        return bitsInBig5(isWord);
    case EastAsianEncoding::shiftJis:
        return bitsInShiftJis(isWord);
    case EastAsianEncoding::eucKr:
        return bitsInEucKr(isWord);
    }
    return never;
}

const char* codecOf(EastAsianEncoding encoding) {
    switch (encoding) {
    case EastAsianEncoding::gb18030:
        return "GB18030";
    case EastAsianEncoding::big5:
        return "Big5";
    case EastAsianEncoding::shiftJis:
        return "Shift_JIS";
    case EastAsianEncoding::eucKr:
        return "EUC-KR";
    }
    return "";
}

int sizeOfCharacter(EastAsianEncoding encoding, uchar lead, uchar trail) {
    if (lead < 0x80)
        return 1;
    if (encoding == EastAsianEncoding::shiftJis && isBetween(lead, 0xa1, 0xdf))
        return 1;
    if (encoding == EastAsianEncoding::gb18030 && isBetween(trail, '0', '9'))
        return 4;
    return 2;
}

// Such a character seldom touches a plain letter, and a small one less than a capital.
double bitsOfNeighbour(char16_t c) {
    if (c >= u'a' && c <= u'z')
        return 6;
    if (c >= u'A' && c <= u'Z')
        return 3.5;
    if (c == u'-' || c == u'\'')
        return 5;
    return c >= 0x80 && c < 0x2e80 ? 4 : 0;
}

double bitsOfNeighbours(const QString& text) {
    double bits = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].unicode() < 0x2e80)
            continue;
        bits += i > 0 ? bitsOfNeighbour(text[i - 1].unicode()) : 0;
        bits += i + 1 < text.size() ? bitsOfNeighbour(text[i + 1].unicode()) : 0;
    }
    return bits;
}

} // namespace

std::optional<TextReading> readAsEastAsian(const QByteArray& bytes, EastAsianEncoding encoding) {
    QStringDecoder decode(codecOf(encoding));
    if (!decode.isValid())
        return std::nullopt;
    TextReading reading{0, decode(bytes)};
    if (decode.hasError() || reading.text.contains(QChar::ReplacementCharacter))
        return std::nullopt;
    bool hasWord = false;
    const QList<uint> codes = reading.text.toUcs4();
    qsizetype next = 0;
    for (qsizetype i = 0; i < bytes.size();) {
        if (next == codes.size())
            return std::nullopt;
        const auto lead = static_cast<uchar>(bytes[i]);
        const auto trail = i + 1 < bytes.size() ? static_cast<uchar>(bytes[i + 1]) : uchar(0);
        const Character character{lead, trail, sizeOfCharacter(encoding, lead, trail),
                                  codes[next++]};
        i += character.size;
        if (lead < 0x80)
            continue;
        bool isWord = false;
        reading.bits += character.bits(encoding, isWord);
        hasWord |= isWord;
    }
    if (!hasWord || next < codes.size() || reading.bits == never)
        return std::nullopt;
    reading.bits += bitsOfNeighbours(reading.text);
    return reading;
}

} // namespace halvane
