// SPDX-License-Identifier: MIT
#include "library/catalog/track_sorting.h"

#include "library/catalog/collation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace halvane {

namespace {

constexpr quint32 emptyRank = std::numeric_limits<quint32>::max();

// The place of each text in the user's order.
std::vector<quint32> ranksOf(const std::vector<QString>& texts) {
    auto ranks = collationRanks(texts, caseInsensitiveCollator());
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (texts[i].isEmpty())
            ranks[i] = emptyRank;
    return ranks;
}

std::vector<quint32> spread(const std::vector<quint32>& ranks, const std::vector<quint32>& ofRow) {
    std::vector<quint32> ranksOfRows;
    ranksOfRows.reserve(ofRow.size());
    for (const quint32 text : ofRow)
        ranksOfRows.push_back(ranks[text]);
    return ranksOfRows;
}

std::vector<quint32> titleRanks(const Catalog& catalog) {
    std::vector<QString> titles;
    titles.reserve(catalog.rows->size());
    for (const TrackPtr& track : *catalog.rows)
        titles.push_back(track->title);
    return ranksOf(titles);
}

std::vector<quint32> artistRanks(const Catalog& catalog) {
    const InternedColumn& artists = catalog.columns.artist;
    std::vector<QString> names = artists.texts;
    for (std::size_t row = 0; row < catalog.rows->size(); ++row) {
        const SortNames* sortNames = (*catalog.rows)[row]->albumTags.sortNames.get();
        if (sortNames && !sortNames->artist.isEmpty())
            names[artists.ofRow[row]] = sortNames->artist;
    }
    return spread(ranksOf(names), artists.ofRow);
}

// In milliseconds.
std::vector<quint32> lengthRanks(const Catalog& catalog) {
    std::vector<quint32> lengths;
    lengths.reserve(catalog.rows->size());
    for (const TrackPtr& track : *catalog.rows) {
        const double seconds = std::clamp(track->durationSeconds.value_or(0), 0.0, 4e6);
        lengths.push_back(seconds > 0 ? static_cast<quint32>(std::lround(seconds * 1000))
                                      : emptyRank);
    }
    return lengths;
}

std::vector<quint32> ranks(const Catalog& catalog, TrackOrder by) {
    switch (by) {
    case TrackOrder::title:
        return titleRanks(catalog);
    case TrackOrder::artist:
        return artistRanks(catalog);
    case TrackOrder::album:
        return spread(ranksOf(catalog.columns.album.texts), catalog.columns.album.ofRow);
    case TrackOrder::quality:
        return spread(ranksOf(catalog.columns.format.texts), catalog.columns.format.ofRow);
    case TrackOrder::time:
        return lengthRanks(catalog);
    case TrackOrder::library:
        break;
    }
    return {};
}

} // namespace

std::vector<quint32> sortedRows(const Catalog& catalog, const TrackSorting& sorting) {
    auto rank = ranks(catalog, sorting.by);
    if (sorting.isDescending)
        for (quint32& place : rank)
            place = place == emptyRank ? emptyRank : emptyRank - 1 - place;
    std::vector<quint32> rows(rank.size());
    std::iota(rows.begin(), rows.end(), 0U);
    if (sorting.by == TrackOrder::artist || sorting.by == TrackOrder::album) {
        std::stable_sort(rows.begin(), rows.end(), [&](quint32 a, quint32 b) {
            return catalog.albumOfRow[a] < catalog.albumOfRow[b];
        });
        followAlbums(catalog, rows);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [&](quint32 a, quint32 b) { return rank[a] < rank[b]; });
    return rows;
}

} // namespace halvane
