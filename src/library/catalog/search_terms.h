// SPDX-License-Identifier: MIT
// What can be asked for in the search field beside plain words. Pure; any thread.
#pragma once

#include <QByteArray>
#include <QStringView>

#include <limits>
#include <optional>
#include <vector>

class QDateTime;

namespace halvane {

/// Where a term is looked for.
enum class TermField {
    anywhere,
    title,
    artist,
    album,
    genre,
    format,
    year,
    rating,
    plays,
    added, ///< a date, as search_ranges.h has it, like the next
    played,
};

/// One condition of a search.
struct SearchTerm {
    TermField field = TermField::anywhere;
    bool isExcluded = false; ///< it must not hold
    QByteArray text;         ///< folded, not empty; of the fields of text
    qint64 least = 0;        ///< of the fields of numbers and dates, like `most`
    qint64 most = std::numeric_limits<qint64>::max();

    bool operator==(const SearchTerm&) const = default;
};

/// A search that names fields (artist:miles, year:1990..1999, rating:>=4, added:30d), quotes a
/// phrase ("blue train") or leaves something out (-live): all of its terms have to hold. The
/// fields' names are English or Chinese. A term that is not typed to its end is none yet, so that
/// the list does not go empty in between. None for plain words.
std::optional<std::vector<SearchTerm>> searchTerms(QStringView text, const QDateTime& now);

} // namespace halvane
