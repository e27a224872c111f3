// SPDX-License-Identifier: MIT
#include "metadata/encodings/legacy_text.h"

#include "metadata/encodings/text_reading.h"

#include <QChar>
#include <QHash>
#include <QList>

#include <algorithm>
#include <optional>

namespace halvane {

namespace {

// Characters that Unicode keeps for a program's own use.
constexpr QChar mark(0xfdd0);
constexpr QChar endMark(0xfdd1);

bool isAscii(QByteArrayView bytes) {
    return std::ranges::all_of(bytes, [](char c) { return static_cast<signed char>(c) >= 0; });
}

// Other text is rarely valid UTF-8 where a sequence is long. A sequence of two bytes may as well be
// a Chinese character, unless the letters make words of one script.
bool isPlausibleUtf8(const QByteArray& bytes) {
    if (!bytes.isValidUtf8())
        return false;
    int letters = 0;
    bool isOfOneScript = true;
    bool isAccentedLatin = true;
    bool hasAsciiLetters = false;
    bool hasLongSequences = false;
    for (const uint code : QString::fromUtf8(bytes).toUcs4()) {
        const auto category = QChar::category(code);
        if (category == QChar::Other_NotAssigned || category == QChar::Other_PrivateUse)
            return false;
        hasLongSequences |= code >= 0x800;
        hasAsciiLetters |= code < 0x80 && isAsciiLetter(static_cast<char16_t>(code));
        if (code < 0x80)
            continue;
        const bool isForeign = code < 0x800 && isGreekOrCyrillicLetter(static_cast<char16_t>(code));
        letters += isForeign;
        isOfOneScript &= isForeign;
        isAccentedLatin &= code < 0x250;
    }
    if (hasLongSequences)
        return true;
    return (isOfOneScript && letters >= 2) || (isAccentedLatin && hasAsciiLetters);
}

QByteArray bytesOf(QStringView piece) {
    return piece.toLatin1();
}

// The undecided pieces of the texts, each once.
QList<QByteArray> undecidedPieces(std::span<QString* const> texts) {
    QList<QByteArray> pieces;
    for (const QString* text : texts) {
        for (qsizetype start = text->indexOf(mark); start >= 0;
             start = text->indexOf(mark, start + 1)) {
            const qsizetype end = text->indexOf(endMark, start);
            if (end < 0)
                break;
            const QByteArray piece = bytesOf(QStringView(*text).sliced(start + 1, end - start - 1));
            if (!pieces.contains(piece))
                pieces.append(piece);
        }
    }
    return pieces;
}

// How a path speaks for an encoding.
enum class Script { han, kana, hangul, cyrillic, greek };

bool isOf(char16_t c, Script script) {
    const auto isBetween = [c](char16_t first, char16_t last) { return c >= first && c <= last; };
    switch (script) {
    case Script::han:
        return isBetween(0x4e00, 0x9fff);
    case Script::kana:
        return isBetween(0x3041, 0x30ff);
    case Script::hangul:
        return isBetween(0xac00, 0xd7a3);
    case Script::cyrillic:
        return isBetween(0x400, 0x45f);
    case Script::greek:
        return isBetween(0x370, 0x3ff);
    }
    return false;
}

bool contains(const QString& path, Script script) {
    return std::ranges::any_of(path, [script](QChar c) { return isOf(c.unicode(), script); });
}

// The bits that a name in the path is worth.
constexpr double bitsOfSameText = 20;
constexpr double bitsOfSameScript = 6;

// One encoding that all texts of a file may be in, but for a few that are Latin.
struct Candidate {
    std::optional<TextReading> (*read)(const QByteArray&);
    double rarity; // bits; the more, the more the file has to say for it
    Script script;
};

template<EastAsianEncoding encoding>
std::optional<TextReading> readEastAsian(const QByteArray& bytes) {
    auto reading = readAsEastAsian(bytes, encoding);
    // A field of ID3v1 ends after 30 bytes, perhaps within a character.
    constexpr qsizetype longEnoughToBeCut = 28;
    if (!reading && bytes.size() >= longEnoughToBeCut)
        reading = readAsEastAsian(bytes.chopped(1), encoding);
    return reading;
}

template<AlphabetEncoding encoding>
std::optional<TextReading> readAlphabet(const QByteArray& bytes) {
    return readAsAlphabet(bytes, encoding);
}

constexpr Candidate candidates[] = {
    {readEastAsian<EastAsianEncoding::gb18030>, 2, Script::han},
    {readEastAsian<EastAsianEncoding::big5>, 5, Script::han},
    {readEastAsian<EastAsianEncoding::shiftJis>, 8, Script::kana},
    {readEastAsian<EastAsianEncoding::eucKr>, 12, Script::hangul},
    {readAlphabet<AlphabetEncoding::cyrillic>, 10, Script::cyrillic},
    {readAlphabet<AlphabetEncoding::greek>, 12, Script::greek},
};

void weighByPath(TextReading& reading, const QString& path) {
    if (path.contains(reading.text))
        reading.bits -= bitsOfSameText;
}

// All pieces of a file in one reading each, and what they cost together.
struct Readings {
    double bits = 0;
    QList<TextReading> pieces;
};

Readings latinReadings(const QList<QByteArray>& pieces, const QString& path) {
    Readings readings;
    for (const QByteArray& piece : pieces) {
        readings.pieces.append(readAsLatin(piece));
        weighByPath(readings.pieces.last(), path);
        readings.bits += readings.pieces.last().bits;
    }
    return readings;
}

// A file in another encoding may still hold a text in Latin letters: the latter costs some bits
// then.
Readings readingsIn(const Candidate& candidate, const QList<QByteArray>& pieces,
                    const QList<TextReading>& latin, const QString& path) {
    constexpr double bitsOfOwn = 0.3;
    constexpr double bitsOfLatin = 6;
    Readings readings{candidate.rarity, latin};
    if (contains(path, candidate.script))
        readings.bits -= bitsOfSameScript;
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        TextReading& chosen = readings.pieces[i];
        chosen.bits += bitsOfLatin;
        if (auto own = candidate.read(pieces[i])) {
            weighByPath(*own, path);
            own->bits += bitsOfOwn;
            if (own->bits < chosen.bits)
                chosen = *std::move(own);
        }
        readings.bits += chosen.bits;
    }
    return readings;
}

QHash<QByteArray, QString> decided(const QList<QByteArray>& pieces, const QString& path) {
    Readings best = latinReadings(pieces, path);
    const QList<TextReading> latin = best.pieces;
    for (const Candidate& candidate : candidates) {
        Readings readings = readingsIn(candidate, pieces, latin, path);
        if (readings.bits < best.bits)
            best = std::move(readings);
    }
    QHash<QByteArray, QString> texts;
    for (qsizetype i = 0; i < pieces.size(); ++i)
        texts.insert(pieces[i], best.pieces[i].text);
    return texts;
}

void replacePieces(QString& text, const QHash<QByteArray, QString>& decided) {
    for (qsizetype start = text.indexOf(mark); start >= 0; start = text.indexOf(mark, start)) {
        const qsizetype end = text.indexOf(endMark, start);
        if (end < 0)
            return;
        const QString piece =
            decided.value(bytesOf(QStringView(text).sliced(start + 1, end - start - 1)));
        text.replace(start, end - start + 1, piece);
        start += piece.size();
    }
}

} // namespace

QString undecidedText(const QByteArray& bytes) {
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    if (isPlausibleUtf8(bytes))
        return QString::fromUtf8(bytes);
    // No name is so long, and weighing costs more than reading.
    constexpr qsizetype longest = 16 << 10;
    if (bytes.size() > longest)
        return readAsLatin(bytes.first(longest)).text;
    const QByteArray trimmed = bytes.trimmed();
    const qsizetype start = bytes.indexOf(trimmed);
    return QString::fromLatin1(bytes.first(start)) + mark + QString::fromLatin1(trimmed) + endMark +
           QString::fromLatin1(bytes.sliced(start + trimmed.size()));
}

void decideTexts(std::span<QString* const> texts, const QString& path) {
    const QList<QByteArray> pieces = undecidedPieces(texts);
    if (pieces.isEmpty())
        return;
    const QHash<QByteArray, QString> likeliest = decided(pieces, path);
    for (QString* text : texts)
        replacePieces(*text, likeliest);
}

} // namespace halvane
