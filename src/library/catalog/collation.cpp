// SPDX-License-Identifier: MIT
#include "library/catalog/collation.h"

#include <QLocale>

#include <algorithm>
#include <numeric>

namespace halvane {

QCollator caseInsensitiveCollator() {
    QLocale locale;
    // The C locale orders by code and regards case in sort keys.
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    QCollator collator(locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

std::vector<quint32> collationRanks(const std::vector<QString>& texts, const QCollator& collator) {
    std::vector<QCollatorSortKey> keys;
    keys.reserve(texts.size());
    for (const QString& text : texts)
        keys.push_back(collator.sortKey(text));
    std::vector<quint32> order(texts.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(),
              [&](quint32 a, quint32 b) { return keys[a].compare(keys[b]) < 0; });
    std::vector<quint32> ranks(texts.size());
    quint32 rank = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && keys[order[i - 1]].compare(keys[order[i]]) != 0)
            ++rank;
        ranks[order[i]] = rank;
    }
    return ranks;
}

bool codePointLess(QStringView a, QStringView b) {
    const auto common = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < common; ++i) {
        if (a[i] == b[i])
            continue;
        // Surrogates stand for the highest code points and go after U+E000...U+FFFF.
        const auto place = [](char16_t unit) -> int {
            return unit < 0xD800 ? unit : unit < 0xE000 ? unit + 0x2000 : unit - 0x800;
        };
        return place(a[i].unicode()) < place(b[i].unicode());
    }
    return a.size() < b.size();
}

} // namespace halvane
