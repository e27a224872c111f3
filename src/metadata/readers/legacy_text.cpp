// SPDX-License-Identifier: MIT
#include "metadata/readers/legacy_text.h"

#include <QStringDecoder>

#include <algorithm>
#include <optional>

namespace halvane {

namespace {

using uchar = unsigned char;

bool isAscii(uchar c) {
    return c < 0x80;
}

bool isAsciiLetter(uchar c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

uchar at(const QByteArray& bytes, qsizetype index) {
    return index >= 0 && index < bytes.size() ? static_cast<uchar>(bytes[index]) : 0;
}

// The characters of a text in strictly valid UTF-8.
struct Utf8Facts {
    bool isValid = false;
    bool hasLongSequences = false; // of three or four bytes
    bool isAccentedLatin = true;   // nothing beyond U+024F
    bool isGreekOrCyrillic = true; // two letters at least, and nothing else above ASCII
    bool hasAsciiLetters = false;
};

Utf8Facts utf8Facts(const QByteArray& bytes) {
    const QString text = QString::fromUtf8(bytes);
    Utf8Facts facts;
    facts.isValid = bytes.isValidUtf8();
    int foreign = 0;
    for (const QChar c : text) {
        const bool isGreek = c.unicode() >= 0x370 && c.unicode() < 0x400;
        const bool isCyrillic = c.unicode() >= 0x400 && c.unicode() < 0x460;
        foreign += isGreek || isCyrillic;
        facts.isGreekOrCyrillic &= c.unicode() < 0x80 || isGreek || isCyrillic;
        facts.hasLongSequences |= c.unicode() >= 0x800;
        facts.isAccentedLatin &= c.unicode() < 0x250;
        facts.hasAsciiLetters |= c.unicode() < 0x80 && c.isLetter();
    }
    facts.isGreekOrCyrillic &= foreign >= 2;
    return facts;
}

// Other text is rarely valid UTF-8 where a sequence is long. A sequence of two bytes may as well be
// a Chinese character, unless the letters make words of one script.
bool isPlausibleUtf8(const QByteArray& bytes) {
    const Utf8Facts facts = utf8Facts(bytes);
    return facts.isValid && (facts.hasLongSequences || facts.isGreekOrCyrillic ||
                             (facts.isAccentedLatin && facts.hasAsciiLetters));
}

// Punctuation of Latin-1 and Windows-1252 that stands beside words.
bool isLatinPunctuation(uchar c) {
    constexpr uchar marks[] = {0x85, 0x91, 0x92, 0x93, 0x94, 0x96, 0x97, 0x99, 0xa0, 0xa1, 0xa9,
                               0xab, 0xae, 0xb0, 0xb2, 0xb3, 0xb4, 0xb7, 0xba, 0xbb, 0xbd, 0xbf};
    return std::find(std::begin(marks), std::end(marks), c) != std::end(marks);
}

bool isLatinLetter(uchar c) {
    return (c >= 0xc0 && c != 0xd7 && c != 0xf7) || c == 0x8a || c == 0x8c || c == 0x8e ||
           c == 0x9a || c == 0x9c || c == 0x9e || c == 0x9f;
}

bool isLatinCapital(uchar c) {
    return (c >= 0xc0 && c <= 0xde) || c == 0x8a || c == 0x8c || c == 0x8e || c == 0x9f;
}

// Whether one stretch of bytes above ASCII reads as the accented letters of a word, or as a mark.
bool isPlausibleLatinRun(const QByteArray& bytes, qsizetype start, qsizetype end) {
    const auto touchesWord = [&] {
        return isAsciiLetter(at(bytes, start - 1)) || isAsciiLetter(at(bytes, end));
    };
    const bool isBeside = touchesWord();
    const bool isLong = end - start > 1;
    while (start < end && isLatinPunctuation(at(bytes, start)))
        ++start;
    while (end > start && isLatinPunctuation(at(bytes, end - 1)))
        --end;
    if (start == end)
        return isBeside || !isLong; // marks by themselves stand alone
    if (end - start > 2)
        return false;
    for (qsizetype i = start; i < end; ++i) {
        if (!isLatinLetter(at(bytes, i)))
            return false;
    }
    const uchar before = at(bytes, start - 1);
    if (end - start == 2 && !touchesWord())
        return false;
    // A capital goes with capitals, or begins its word.
    for (qsizetype i = start; i < end; ++i) {
        const uchar previous = i == start ? before : at(bytes, i - 1);
        const bool previousIsSmall = (previous >= 'a' && previous <= 'z') || previous >= 0xdf;
        if (isLatinCapital(at(bytes, i)) && previousIsSmall)
            return false;
    }
    return true;
}

bool isPlausibleLatin1(const QByteArray& bytes) {
    for (qsizetype i = 0; i < bytes.size();) {
        if (isAscii(at(bytes, i))) {
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < bytes.size() && !isAscii(at(bytes, end)))
            ++end;
        if (!isPlausibleLatinRun(bytes, i, end))
            return false;
        i = end;
    }
    return true;
}

// The text as GB18030. None unless every byte belongs to a character and most characters are common
// ones, which are those of GB2312: two bytes above 0xa0.
std::optional<QString> plausibleGb18030(const QByteArray& bytes) {
    qsizetype common = 0;
    qsizetype rare = 0;
    qsizetype words = 0;
    for (qsizetype i = 0; i < bytes.size();) {
        const uchar lead = at(bytes, i);
        if (isAscii(lead)) {
            ++i;
            continue;
        }
        const uchar trail = at(bytes, i + 1);
        if (lead == 0x80 || lead == 0xff || i + 1 >= bytes.size())
            return std::nullopt;
        if (trail >= 0x30 && trail <= 0x39) {
            ++rare;
            i += 4;
            continue;
        }
        if (trail < 0x40 || trail == 0x7f || trail == 0xff)
            return std::nullopt;
        const bool isHanzi = lead >= 0xb0 && lead <= 0xf7 && trail >= 0xa1;
        const bool isKanaOrMark = lead >= 0xa1 && lead <= 0xa9 && trail >= 0xa1;
        words += isHanzi || lead == 0xa4 || lead == 0xa5 || lead < 0xa1;
        ++(isHanzi || isKanaOrMark ? common : rare);
        i += 2;
    }
    if (words == 0 || rare > common)
        return std::nullopt;
    QStringDecoder decode("GB18030");
    if (!decode.isValid())
        return std::nullopt;
    const QString text = decode(bytes);
    if (decode.hasError() || text.contains(QChar::ReplacementCharacter))
        return std::nullopt;
    return text;
}

} // namespace

QString decodeLegacyText(const QByteArray& bytes) {
    if (std::all_of(bytes.begin(), bytes.end(),
                    [](char c) { return isAscii(static_cast<uchar>(c)); }))
        return QString::fromLatin1(bytes);
    if (isPlausibleUtf8(bytes))
        return QString::fromUtf8(bytes);
    if (!isPlausibleLatin1(bytes)) {
        if (const auto chinese = plausibleGb18030(bytes))
            return *chinese;
        // A field of fixed length may end in half a character.
        if (const auto chinese = plausibleGb18030(bytes.chopped(1)))
            return *chinese;
    }
    // Text that is called Latin-1 is Windows-1252 in practice. The two differ where Latin-1 has
    // controls.
    static constexpr char16_t windows1252[] = {
        0x20ac, 0x81,   0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x8d,   0x017d, 0x8f,   0x90,   0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
        0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x9d,   0x017e, 0x0178};
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text) {
        if (c.unicode() >= 0x80 && c.unicode() < 0xa0)
            c = QChar(windows1252[c.unicode() - 0x80]);
    }
    return text;
}

} // namespace halvane
