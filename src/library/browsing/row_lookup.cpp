// SPDX-License-Identifier: MIT
#include "library/browsing/row_lookup.h"

namespace halvane {

std::vector<quint32> RowLookup::rowsOf(const std::vector<QString>& paths) const {
    std::vector<quint32> rows;
    if (m_catalog.isCurrent()) {
        for (const QString& path : paths) {
            if (const auto row = m_store.rowOf(path))
                rows.push_back(static_cast<quint32>(*row));
        }
        return rows;
    }
    // The store has changed since the catalog was derived, so its row numbers are others.
    QHash<QString, quint32> rowOf;
    const TrackRows& all = *m_catalog.published()->rows;
    const QSet<QString> wanted(paths.cbegin(), paths.cend());
    for (std::size_t row = 0; row < all.size(); ++row) {
        const QString path = all[row]->path();
        if (wanted.contains(path))
            rowOf.insert(path, static_cast<quint32>(row));
    }
    for (const QString& path : paths) {
        const auto row = rowOf.constFind(path);
        if (row != rowOf.cend())
            rows.push_back(*row);
    }
    return rows;
}

std::vector<RowNumber> RowLookup::numbersOf(const IntegerMap& numbers) const {
    std::vector<RowNumber> ofRows;
    if (m_catalog.isCurrent()) {
        for (auto said = numbers.cbegin(); said != numbers.cend(); ++said)
            if (const auto row = m_store.rowOf(said.key()))
                ofRows.push_back({static_cast<quint32>(*row), said.value()});
        return ofRows;
    }
    const TrackRows& all = *m_catalog.published()->rows;
    for (quint32 row = 0; row < all.size(); ++row)
        if (const qint64 number = numbers.value(all[row]->path()))
            ofRows.push_back({row, number});
    return ofRows;
}

} // namespace halvane
