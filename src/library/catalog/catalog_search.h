// SPDX-License-Identifier: MIT
// What a search finds among the tracks. Pure; any thread.
#pragma once

#include "library/catalog/catalog.h"
#include "library/catalog/search_terms.h"

#include <functional>

namespace halvane {

/// The rows of which one text contains the folded query: the title, artist, album artist, album,
/// genre or format. They are in the order of `within`, or ascending. The query is not empty.
/// `within` limits the search to some rows; null means all.
std::vector<quint32> rowsMatching(const Catalog& catalog, const QByteArray& foldedQuery,
                                  const std::vector<quint32>* within);

/// The same for rows of which each word is in some text, not all in the same one. There is at
/// least one word.
std::vector<quint32> rowsMatchingAll(const Catalog& catalog, const QByteArrayList& foldedWords,
                                     const std::vector<quint32>* within);

/// A number that the user's deeds gave a row: its stars, its plays, or when it was played last.
struct RowNumber {
    quint32 row = 0;
    qint64 number = 0;
};

/// Gives the rows that have a number in this field; the others have 0.
using NumbersOf = std::function<std::vector<RowNumber>(TermField)>;

/// One number for each row: 1 if it has what the term names, otherwise 0, also where a term leaves
/// that out. `numbersOf` is asked for ratings, plays and when tracks
/// were played last.
std::vector<quint8> rowsWith(const Catalog& catalog, const SearchTerm& term,
                             const NumbersOf& numbersOf);

} // namespace halvane
