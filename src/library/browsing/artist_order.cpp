// SPDX-License-Identifier: MIT
#include "library/browsing/artist_order.h"

#include "library/catalog/collation.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace halvane {

void sortForReaders(std::vector<const CatalogArtist*>& artists) {
    std::vector<QString> names;
    names.reserve(artists.size());
    for (const CatalogArtist* artist : artists)
        names.push_back(artist->sortName);
    const auto ranks = collationRanks(names, caseInsensitiveCollator());
    std::vector<std::size_t> places(artists.size());
    std::iota(places.begin(), places.end(), std::size_t(0));
    std::stable_sort(places.begin(), places.end(), [&](std::size_t a, std::size_t b) {
        return std::pair(artists[a]->isGuest, ranks[a]) < std::pair(artists[b]->isGuest, ranks[b]);
    });
    std::vector<const CatalogArtist*> sorted;
    sorted.reserve(artists.size());
    for (const std::size_t place : places)
        sorted.push_back(artists[place]);
    artists = std::move(sorted);
}

} // namespace halvane
