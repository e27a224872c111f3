// SPDX-License-Identifier: MIT
#include "library/catalog/track_sorting.h"

#include "library/catalog/collation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace halvane {

namespace {

using Rows = std::vector<quint32>;

constexpr quint32 emptyRank = std::numeric_limits<quint32>::max();

// The place of each text in the user's order.
std::vector<quint32> ranksOf(const std::vector<QString>& texts) {
    auto ranks = collationRanks(texts, caseInsensitiveCollator());
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (texts[i].isEmpty())
            ranks[i] = emptyRank;
    return ranks;
}

// A whole number that stands for each row; 0 for an empty field.
template<typename Value>
std::vector<quint32> numberRanks(const Catalog& catalog, const Rows& rows, Value value) {
    std::vector<quint32> ranks;
    ranks.reserve(rows.size());
    for (const quint32 row : rows) {
        const auto number = std::clamp<qint64>(value(*(*catalog.rows)[row]), 0, emptyRank - 1);
        ranks.push_back(number > 0 ? static_cast<quint32>(number) : emptyRank);
    }
    return ranks;
}

// Of texts that seldom repeat.
template<typename Text>
std::vector<quint32> textRanks(const Catalog& catalog, const Rows& rows, Text text) {
    std::vector<QString> texts;
    texts.reserve(rows.size());
    for (const quint32 row : rows)
        texts.push_back(text(*(*catalog.rows)[row]));
    return ranksOf(texts);
}

// The texts of some rows of a column, each once.
struct TextsOfRows {
    std::vector<QString> texts;
    std::vector<quint32> ofRow;

    TextsOfRows(const InternedColumn& column, const Rows& rows) {
        constexpr quint32 unseen = emptyRank;
        std::vector<quint32> numbers(column.texts.size(), unseen);
        ofRow.reserve(rows.size());
        for (const quint32 row : rows) {
            quint32& number = numbers[column.ofRow[row]];
            if (number == unseen) {
                number = static_cast<quint32>(texts.size());
                texts.push_back(column.texts[column.ofRow[row]]);
            }
            ofRow.push_back(number);
        }
    }

    [[nodiscard]] std::vector<quint32> ranks() const {
        const std::vector<quint32> ranks = ranksOf(texts);
        std::vector<quint32> ranksOfRows;
        ranksOfRows.reserve(ofRow.size());
        for (const quint32 text : ofRow)
            ranksOfRows.push_back(ranks[text]);
        return ranksOfRows;
    }
};

std::vector<quint32> artistRanks(const Catalog& catalog, const Rows& rows) {
    TextsOfRows names(catalog.columns.artist, rows);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const SortNames* sortNames = (*catalog.rows)[rows[i]]->albumTags.sortNames.get();
        if (sortNames && !sortNames->artist.isEmpty())
            names.texts[names.ofRow[i]] = sortNames->artist;
    }
    return names.ranks();
}

// In milliseconds.
qint64 length(const Track& track) {
    return std::llround(std::clamp(track.durationSeconds.value_or(0), 0.0, 4e6) * 1000);
}

// By disc, then by number.
qint64 numberOnAlbum(const Track& track) {
    const AlbumTags& tags = track.albumTags;
    return tags.track > 0 ? qint64(tags.disc) << 16 | tags.track : 0;
}

std::vector<quint32> ranks(const Catalog& catalog, const Rows& rows, TrackOrder by,
                           const IntegerMap& said) {
    const TrackColumns& columns = catalog.columns;
    switch (by) {
    case TrackOrder::title:
        return textRanks(catalog, rows, [](const Track& track) { return track.title; });
    case TrackOrder::path:
        return textRanks(catalog, rows, [](const Track& track) { return track.path(); });
    case TrackOrder::artist:
        return artistRanks(catalog, rows);
    case TrackOrder::album:
        return TextsOfRows(columns.album, rows).ranks();
    case TrackOrder::genre:
        return TextsOfRows(columns.genre, rows).ranks();
    case TrackOrder::quality:
        return TextsOfRows(columns.format, rows).ranks();
    case TrackOrder::time:
        return numberRanks(catalog, rows, length);
    case TrackOrder::number:
        return numberRanks(catalog, rows, numberOnAlbum);
    case TrackOrder::year:
        return numberRanks(catalog, rows, [](const Track& track) { return track.year; });
    case TrackOrder::added:
        return numberRanks(catalog, rows,
                           [](const Track& track) { return qint64(track.addedDate); });
    case TrackOrder::plays:
    case TrackOrder::rating:
        return numberRanks(catalog, rows,
                           [&](const Track& track) { return said.value(track.path()); });
    case TrackOrder::library:
        break;
    }
    return std::vector<quint32>(rows.size());
}

// Tracks between which these make no difference are shown album by album.
bool keepsAlbumsTogether(TrackOrder by) {
    return by == TrackOrder::artist || by == TrackOrder::album || by == TrackOrder::genre ||
           by == TrackOrder::year;
}

} // namespace

std::vector<quint32> sortedRows(const Catalog& catalog, const TrackSorting& sorting,
                                const IntegerMap& said, Rows rows) {
    if (keepsAlbumsTogether(sorting.by)) {
        std::stable_sort(rows.begin(), rows.end(), [&](quint32 a, quint32 b) {
            return catalog.albumOfRow[a] < catalog.albumOfRow[b];
        });
        followAlbums(catalog, rows);
    }
    auto rank = ranks(catalog, rows, sorting.by, said);
    if (sorting.isDescending)
        for (quint32& place : rank)
            place = place == emptyRank ? emptyRank : emptyRank - 1 - place;
    std::vector<quint32> places(rows.size());
    std::iota(places.begin(), places.end(), 0U);
    std::stable_sort(places.begin(), places.end(),
                     [&](quint32 a, quint32 b) { return rank[a] < rank[b]; });
    for (quint32& place : places)
        place = rows[place];
    return places;
}

std::vector<quint32> allRows(const Catalog& catalog) {
    std::vector<quint32> rows(catalog.rows->size());
    std::iota(rows.begin(), rows.end(), 0U);
    return rows;
}

} // namespace halvane
