// SPDX-License-Identifier: MIT
#include "library/catalog/catalog_search.h"

#include <algorithm>

namespace halvane {

namespace {

void addColumn(std::vector<quint8>& holds, const std::vector<quint8>& isMatch,
               const std::vector<quint32>& ofRow) {
    for (std::size_t row = 0; row < holds.size(); ++row)
        holds[row] |= isMatch[ofRow[row]];
}

// Which texts of the columns contain a query. A longer query is in few columns, and those without
// it are not looked up for each row.
class ColumnMatches {
  public:
    ColumnMatches(const Catalog& catalog, const QByteArray& foldedQuery) {
        const TrackColumns& columns = catalog.columns;
        auto artists = catalog.artistTexts.matches(foldedQuery);
        if (columns.leadOfRow != columns.artist.ofRow)
            add(artists, columns.leadOfRow);
        add(std::move(artists), columns.artist.ofRow);
        add(catalog.albumTexts.matches(foldedQuery), columns.album.ofRow);
        add(catalog.genreTexts.matches(foldedQuery), columns.genre.ofRow);
        add(catalog.formatTexts.matches(foldedQuery), columns.format.ofRow);
    }

    [[nodiscard]] bool hold(quint32 row) const {
        return std::any_of(m_columns.cbegin(), m_columns.cend(), [row](const Column& column) {
            return column.isMatch[(*column.ofRow)[row]] != 0;
        });
    }
    // Column by column, because the texts that match are together in the cache then.
    void addTo(std::vector<quint8>& isFound) const {
        for (const Column& column : m_columns)
            addColumn(isFound, column.isMatch, *column.ofRow);
    }

  private:
    struct Column {
        std::vector<quint8> isMatch; // for each text
        const std::vector<quint32>* ofRow;
    };

    void add(std::vector<quint8> isMatch, const std::vector<quint32>& ofRow) {
        if (std::find(isMatch.cbegin(), isMatch.cend(), 1) != isMatch.cend())
            m_columns.push_back({std::move(isMatch), &ofRow});
    }

    std::vector<Column> m_columns;
};

bool isInRange(const SearchTerm& term, qint64 number) {
    return number >= term.least && number <= term.most;
}

std::vector<quint8> numbersInRange(const SearchTerm& term, const std::vector<RowNumber>& numbers,
                                   std::size_t rows) {
    std::vector<quint8> holds(rows, isInRange(term, 0) ? 1 : 0);
    for (const RowNumber& one : numbers)
        holds[one.row] = isInRange(term, one.number) ? 1 : 0;
    return holds;
}

template<typename Value>
std::vector<quint8> valuesInRange(const SearchTerm& term, const TrackRows& rows, Value value) {
    std::vector<quint8> holds;
    holds.reserve(rows.size());
    for (const TrackPtr& row : rows)
        holds.push_back(isInRange(term, value(*row)) ? 1 : 0);
    return holds;
}

} // namespace

std::vector<quint8> rowsWith(const Catalog& catalog, const SearchTerm& term,
                             const NumbersOf& numbersOf) {
    const TrackColumns& columns = catalog.columns;
    std::vector<quint8> holds(catalog.rows->size(), 0);
    switch (term.field) {
    case TermField::anywhere:
        holds = catalog.titles.matches(term.text);
        ColumnMatches(catalog, term.text).addTo(holds);
        break;
    case TermField::title:
        holds = catalog.titles.matches(term.text);
        break;
    case TermField::artist: {
        const auto isMatch = catalog.artistTexts.matches(term.text);
        addColumn(holds, isMatch, columns.artist.ofRow);
        addColumn(holds, isMatch, columns.leadOfRow);
        break;
    }
    case TermField::album:
        addColumn(holds, catalog.albumTexts.matches(term.text), columns.album.ofRow);
        break;
    case TermField::genre:
        addColumn(holds, catalog.genreTexts.matches(term.text), columns.genre.ofRow);
        break;
    case TermField::format:
        addColumn(holds, catalog.formatTexts.matches(term.text), columns.format.ofRow);
        break;
    case TermField::year:
        return valuesInRange(term, *catalog.rows, [](const Track& track) { return track.year; });
    case TermField::added:
        return valuesInRange(term, *catalog.rows, [](const Track& track) {
            return static_cast<qint64>(track.addedDate);
        });
    case TermField::rating:
    case TermField::plays:
    case TermField::played:
        return numbersInRange(term, numbersOf(term.field), holds.size());
    }
    return holds;
}

std::vector<quint32> rowsMatching(const Catalog& catalog, const QByteArray& foldedQuery,
                                  const std::vector<quint32>* within) {
    const ColumnMatches columns(catalog, foldedQuery);
    std::vector<quint32> found;
    // One run over all titles is several times cheaper than a search of each.
    constexpr std::size_t runAdvantage = 4;
    if (within && within->size() < catalog.titles.size() / runAdvantage) {
        for (const quint32 row : *within) {
            if (columns.hold(row) || catalog.titles.contains(row, foldedQuery))
                found.push_back(row);
        }
        return found;
    }
    auto isFound = catalog.titles.matches(foldedQuery);
    columns.addTo(isFound);
    if (within) {
        for (const quint32 row : *within) {
            if (isFound[row] != 0)
                found.push_back(row);
        }
        return found;
    }
    for (quint32 row = 0; row < isFound.size(); ++row) {
        if (isFound[row] != 0)
            found.push_back(row);
    }
    return found;
}

std::vector<quint32> rowsMatchingAll(const Catalog& catalog, const QByteArrayList& foldedWords,
                                     const std::vector<quint32>* within) {
    std::vector<quint32> found;
    for (const QByteArray& word : foldedWords) {
        found = rowsMatching(catalog, word, within);
        within = &found;
    }
    return found;
}

} // namespace halvane
