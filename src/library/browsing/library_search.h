// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/catalog_search.h"

#include <QString>

namespace halvane {

/// What is searched for, and what that finds. A query that some text holds as it stands finds just
/// that; failing that, its words are looked for one by one, and an album is found by its songs.
/// Terms (see searchTerms) find tracks, and with these their albums and artists. Main thread.
class LibrarySearch {
  public:
    /// Returns false if this finds the same as the text before. `now` is for terms of dates.
    bool setText(const QString& text, const QDateTime& now);
    [[nodiscard]] bool isEmpty() const { return m_query.isEmpty(); }

    /// Has to be called with another text.
    void lookThrough(const Catalog& catalog, const NumbersOf& numbersOf);
    /// The same with another catalog.
    void lookThroughAnew(const Catalog& catalog, const NumbersOf& numbersOf);

    /// The rows that the text finds in `within`, in that order; null means all. They are kept for a
    /// text that grows, until others are searched. The text is not empty.
    const std::vector<quint32>& rows(const Catalog& catalog, const std::vector<quint32>* within);
    void searchOthers() { m_found.reset(); }

    /// One number for each album: 1 if it is found. Empty for an empty text.
    [[nodiscard]] std::vector<quint8> albums(const Catalog& catalog) const;
    /// The same for each text of the artist column.
    [[nodiscard]] std::vector<quint8> artists(const Catalog& catalog) const;

  private:
    /// What rowsWith says of a term.
    struct Looked {
        SearchTerm term;
        std::vector<quint8> isWith;
    };

    [[nodiscard]] bool holds(std::size_t row) const {
        return row < m_holds.size() && m_holds[row] != 0;
    }
    std::vector<quint8> lookFor(const Catalog& catalog, const SearchTerm& term,
                                const NumbersOf& numbersOf);
    void findByWords(const Catalog& catalog, const std::vector<quint32>* within);

    QByteArray m_query;                             ///< trimmed and folded
    std::optional<std::vector<SearchTerm>> m_terms; ///< none for plain words
    std::vector<quint8> m_holds;                    ///< for each row, where there are terms
    std::vector<Looked> m_looked; ///< for the terms, which mostly stay as one types
    /// The rows found last, to narrow when the query grows, and their query.
    std::optional<std::vector<quint32>> m_found;
    QByteArray m_foundQuery;
    /// Every row that a longer query can find is among the found ones.
    bool m_foundIsEnough = false;
};

} // namespace halvane
