// SPDX-License-Identifier: MIT
#include "library/browsing/library_search.h"

#include <algorithm>

namespace halvane {

namespace {

bool isAnySet(const std::vector<quint8>& found) {
    return std::find(found.cbegin(), found.cend(), 1) != found.cend();
}

// Those that hold the query as it stands, or else all of its words.
std::vector<quint8> tilesFound(const FoldedTexts& tiles, const QByteArray& query) {
    auto found = tiles.matches(query);
    const QByteArrayList words = severalWords(query);
    return isAnySet(found) || words.isEmpty() ? found : tiles.matchesAll(words);
}

// Whether a name is what the terms ask of an artist.
bool isAskedFor(const Catalog& catalog, quint32 artist, const std::vector<SearchTerm>& terms) {
    return std::all_of(terms.cbegin(), terms.cend(), [&](const SearchTerm& term) {
        return term.field != TermField::artist ||
               catalog.artistTexts.contains(artist, term.text) != term.isExcluded;
    });
}

} // namespace

bool LibrarySearch::setText(const QString& text, const QDateTime& now) {
    const QByteArray query = foldedForSearch(text.trimmed());
    if (query == m_query)
        return false;
    m_query = query;
    m_terms = searchTerms(text, now);
    return true;
}

void LibrarySearch::lookThroughAnew(const Catalog& catalog, const NumbersOf& numbersOf) {
    m_looked.clear();
    lookThrough(catalog, numbersOf);
}

void LibrarySearch::lookThrough(const Catalog& catalog, const NumbersOf& numbersOf) {
    m_holds.clear();
    std::vector<Looked> looked;
    if (m_terms) {
        m_holds.assign(catalog.rows->size(), 1);
        for (const SearchTerm& term : *m_terms) {
            looked.push_back({term, lookFor(catalog, term, numbersOf)});
            const quint8 wanted = term.isExcluded ? 0 : 1;
            for (std::size_t row = 0; row < m_holds.size(); ++row)
                m_holds[row] &= static_cast<quint8>(looked.back().isWith[row] == wanted);
        }
        // What holds the whole text as it stands is always found.
        for (const quint32 row : rowsMatching(catalog, m_query, nullptr))
            m_holds[row] = 1;
    }
    m_looked = std::move(looked);
}

std::vector<quint8> LibrarySearch::lookFor(const Catalog& catalog, const SearchTerm& term,
                                           const NumbersOf& numbersOf) {
    for (const Looked& before : m_looked)
        if (before.term == term)
            return before.isWith;
    return rowsWith(catalog, term, numbersOf);
}

const std::vector<quint32>& LibrarySearch::rows(const Catalog& catalog,
                                                const std::vector<quint32>* within) {
    if (!m_terms) {
        findByWords(catalog, within);
        return *m_found;
    }
    m_found.emplace();
    const auto add = [this](quint32 row) {
        if (holds(row))
            m_found->push_back(row);
    };
    if (within)
        std::for_each(within->cbegin(), within->cend(), add);
    else
        for (quint32 row = 0; row < catalog.rows->size(); ++row)
            add(row);
    m_foundQuery = m_query;
    m_foundIsEnough = false;
    return *m_found;
}

// Words are searched one by one where no text holds the query as it stands, so that "miles blue"
// finds an artist's track by its title, and an exact query finds nothing beside.
void LibrarySearch::findByWords(const Catalog& catalog, const std::vector<quint32>* within) {
    const bool grew = m_found && m_query.contains(m_foundQuery);
    auto found = rowsMatching(catalog, m_query, grew ? &*m_found : within);
    const QByteArrayList words = severalWords(m_query);
    const bool isByWords = found.empty() && !words.isEmpty();
    if (isByWords)
        found = rowsMatchingAll(catalog, words, grew && m_foundIsEnough ? &*m_found : within);
    m_found = std::move(found);
    m_foundQuery = m_query;
    m_foundIsEnough = isByWords || words.isEmpty();
}

std::vector<quint8> LibrarySearch::albums(const Catalog& catalog) const {
    if (m_query.isEmpty())
        return {};
    if (m_terms) {
        std::vector<quint8> found(catalog.albums.size(), 0);
        for (std::size_t row = 0; row < catalog.albumOfRow.size(); ++row)
            if (holds(row))
                found[catalog.albumOfRow[row]] = 1;
        return found;
    }
    auto found = tilesFound(catalog.albumTiles, m_query);
    if (isAnySet(found))
        return found;
    auto rows = rowsMatching(catalog, m_query, nullptr);
    if (const QByteArrayList words = severalWords(m_query); rows.empty() && !words.isEmpty())
        rows = rowsMatchingAll(catalog, words, nullptr);
    for (const quint32 row : rows)
        found[catalog.albumOfRow[row]] = 1;
    return found;
}

std::vector<quint8> LibrarySearch::artists(const Catalog& catalog) const {
    if (m_query.isEmpty())
        return {};
    if (!m_terms)
        return tilesFound(catalog.artistTexts, m_query);
    std::vector<quint8> found(catalog.artistTexts.size(), 0);
    for (std::size_t row = 0; row < catalog.rows->size(); ++row) {
        if (!holds(row))
            continue;
        found[catalog.columns.artist.ofRow[row]] = 1;
        found[catalog.columns.leadOfRow[row]] = 1;
    }
    for (quint32 artist = 0; artist < found.size(); ++artist)
        found[artist] &= static_cast<quint8>(isAskedFor(catalog, artist, *m_terms));
    return found;
}

} // namespace halvane
