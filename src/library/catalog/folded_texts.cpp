// SPDX-License-Identifier: MIT
#include "library/catalog/folded_texts.h"

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

} // namespace

QByteArray foldedForSearch(QStringView text) {
    const bool dottedI = foldsDottedI();
    if (!dottedI && isAscii(text))
        return text.toLatin1().toLower();
    QString folded = text.toString();
    if (dottedI)
        folded.replace(u'I', QChar(0x0131)).replace(QChar(0x0130), u'i');
    folded = folded.normalized(QString::NormalizationForm_C)
                 .toCaseFolded()
                 .replace(QChar(0x00DF), QLatin1StringView("ss")) // its capital is mostly SS
                 .normalized(QString::NormalizationForm_C)
                 .replace(QChar(u'\0'), u' ');
    return folded.toUtf8();
}

void FoldedTexts::reserve(std::size_t texts, std::size_t bytes) {
    m_ends.reserve(texts);
    m_bytes.reserve(static_cast<qsizetype>(bytes));
}

void FoldedTexts::add(QStringView text) {
    m_bytes.append(foldedForSearch(text));
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

bool FoldedTexts::contains(std::size_t index, const QByteArray& foldedQuery) const {
    const std::size_t start = index == 0 ? 0 : m_ends[index - 1] + 1;
    return memmem(m_bytes.constData() + start, m_ends[index] - start, foldedQuery.constData(),
                  static_cast<std::size_t>(foldedQuery.size())) != nullptr;
}

} // namespace halvane
