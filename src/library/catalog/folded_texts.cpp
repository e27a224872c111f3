// SPDX-License-Identifier: MIT
#include "library/catalog/folded_texts.h"

#include "library/catalog/pinyin.h"

#include <QLocale>
#include <QString>

#include <algorithm>
#include <cstring>

namespace halvane {

namespace {

bool isAscii(QStringView text) {
    return std::all_of(text.cbegin(), text.cend(),
                       [](QChar unit) { return unit.unicode() > 0 && unit.unicode() < 0x80; });
}

bool foldsDottedI() {
    const auto language = QLocale().language();
    return language == QLocale::Turkish || language == QLocale::Azerbaijani;
}

// Marks of these scripts are accents, which many people leave out. Those of others tell letters
// apart: a voiced kana is another syllable.
bool takesAccents(QChar base) {
    const QChar::Script script = base.script();
    return script == QChar::Script_Latin || script == QChar::Script_Greek;
}

// Russian is mostly written without the dots over its e.
bool isAccent(QChar mark, QChar base) {
    return mark.category() == QChar::Mark_NonSpacing &&
           (takesAccents(base) || (base == QChar(0x0435) && mark == QChar(0x0308)));
}

// Letters whose stroke or second half is no mark of its own in Unicode.
QLatin1StringView plainLetters(QChar letter) {
    switch (letter.unicode()) {
    case 0x00DF: // its capital is mostly SS
        return QLatin1StringView("ss");
    case 0x00E6:
        return QLatin1StringView("ae");
    case 0x0153:
        return QLatin1StringView("oe");
    case 0x00F8:
        return QLatin1StringView("o");
    case 0x0111:
    case 0x00F0:
        return QLatin1StringView("d");
    case 0x0127:
        return QLatin1StringView("h");
    case 0x0142:
        return QLatin1StringView("l");
    case 0x00FE:
        return QLatin1StringView("th");
    default:
        return {};
    }
}

// `text` is in lower case and decomposed.
QString withoutAccents(const QString& text) {
    QString plain;
    plain.reserve(text.size());
    QChar base;
    for (const QChar letter : text) {
        if (isAccent(letter, base))
            continue;
        if (letter.category() != QChar::Mark_NonSpacing)
            base = letter;
        if (const QLatin1StringView letters = plainLetters(letter); !letters.isEmpty())
            plain += letters;
        else
            plain += letter;
    }
    return plain;
}

} // namespace

QByteArray foldedForSearch(QStringView text) {
    const bool dottedI = foldsDottedI();
    if (!dottedI && isAscii(text))
        return text.toLatin1().toLower();
    QString folded = text.toString().normalized(QString::NormalizationForm_C);
    if (dottedI)
        folded.replace(u'I', QChar(0x0131)).replace(QChar(0x0130), u'i');
    else
        folded.replace(QChar(0x0131), u'i');
    folded = withoutAccents(folded.normalized(QString::NormalizationForm_KD).toCaseFolded())
                 .normalized(QString::NormalizationForm_C)
                 .replace(QChar(u'\0'), u' ');
    return folded.toUtf8();
}

QByteArrayList severalWords(const QByteArray& foldedQuery) {
    QByteArrayList words = foldedQuery.simplified().split(' ');
    return words.size() > 1 ? words : QByteArrayList();
}

void FoldedTexts::reserve(std::size_t texts, std::size_t bytes) {
    m_ends.reserve(texts);
    m_bytes.reserve(static_cast<qsizetype>(bytes));
}

void FoldedTexts::add(QStringView text) {
    m_bytes.append(foldedForSearch(text));
    if (const QByteArray initials = pinyinInitials(text); !initials.isEmpty())
        m_bytes.append('\n').append(initials);
    m_ends.push_back(static_cast<quint32>(m_bytes.size()));
    m_bytes.append('\0');
}

std::vector<quint8> FoldedTexts::matches(const QByteArray& foldedQuery) const {
    std::vector<quint8> found(m_ends.size(), 0);
    const char* const begin = m_bytes.constData();
    const char* const end = begin + m_bytes.size();
    const char* from = begin;
    std::size_t index = 0;
    while (from < end) {
        const void* hit =
            memmem(from, static_cast<std::size_t>(end - from), foldedQuery.constData(),
                   static_cast<std::size_t>(foldedQuery.size()));
        if (!hit)
            break;
        const auto place = static_cast<quint32>(static_cast<const char*>(hit) - begin);
        while (m_ends[index] < place)
            ++index;
        found[index] = 1;
        from = begin + m_ends[index] + 1;
        ++index;
    }
    return found;
}

std::vector<quint8> FoldedTexts::matchesAll(const QByteArrayList& foldedWords) const {
    std::vector<quint8> found(m_ends.size(), 1);
    for (const QByteArray& word : foldedWords) {
        const std::vector<quint8> matching = matches(word);
        for (std::size_t i = 0; i < found.size(); ++i)
            found[i] &= matching[i];
    }
    return found;
}

bool FoldedTexts::contains(std::size_t index, const QByteArray& foldedQuery) const {
    const std::size_t start = index == 0 ? 0 : m_ends[index - 1] + 1;
    return memmem(m_bytes.constData() + start, m_ends[index] - start, foldedQuery.constData(),
                  static_cast<std::size_t>(foldedQuery.size())) != nullptr;
}

} // namespace halvane
