// SPDX-License-Identifier: MIT
#include "library/catalog/album_derivation.h"

#include "library/catalog/collation.h"
#include "presentation/l10n.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace halvane {

namespace {

using Tracks = std::vector<const Track*>;

struct Group {
    AlbumGroupKey key;
    Tracks tracks;
};

struct Groups {
    std::vector<Group> groups;       // in the order of their first tracks
    std::vector<quint32> groupOfRow; // for each row
};

Groups groupTracks(const TrackRows& rows, const TrackColumns& columns, ResolvedLanguage language) {
    Groups result;
    result.groupOfRow.reserve(rows.size());
    // The key is worked out once for each pair of texts. Pairs that trim to the same share a group.
    QHash<quint64, quint32> groupOfPair;
    QHash<AlbumGroupKey, quint32> groupOfKey;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const quint32 album = columns.album.ofRow[row];
        const quint32 artist = columns.leadOfRow[row];
        const quint64 pair = static_cast<quint64>(album) << 32 | artist;
        const auto known = groupOfPair.constFind(pair);
        quint32 group = 0;
        if (known != groupOfPair.cend()) {
            group = *known;
        } else {
            AlbumGroupKey key =
                albumGroupKey(columns.album.texts[album], columns.artist.texts[artist], language);
            const auto next = static_cast<quint32>(result.groups.size());
            group = groupOfKey.value(key, next);
            if (group == next) {
                groupOfKey.insert(key, next);
                result.groups.push_back({std::move(key), {}});
            }
            groupOfPair.insert(pair, group);
        }
        result.groups[group].tracks.push_back(rows[row].get());
        result.groupOfRow.push_back(group);
    }
    return result;
}

QStringView fileNameOf(const Track& track) {
    if (!track.sourceURL)
        return track.title;
    const QStringView path = track.sourceURL->path();
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

void sortByFileName(Tracks& tracks) {
    std::vector<std::pair<QStringView, const Track*>> named;
    named.reserve(tracks.size());
    for (const Track* track : tracks)
        named.emplace_back(fileNameOf(*track), track);
    const auto isBefore = [](const auto& a, const auto& b) {
        return codePointLess(a.first, b.first);
    };
    // Folders are read in order, so most albums are sorted already.
    if (std::is_sorted(named.cbegin(), named.cend(), isBefore))
        return;
    std::stable_sort(named.begin(), named.end(), isBefore);
    std::transform(named.cbegin(), named.cend(), tracks.begin(),
                   [](const auto& entry) { return entry.second; });
}

quint16 discOf(const Track& track) {
    return std::max<quint16>(track.albumTags.disc, 1);
}

// Puts the tracks in the album's own order, and gives the number of its discs; 0 without numbers.
qint64 sortByNumber(Tracks& tracks) {
    const bool areNumbered = std::all_of(tracks.cbegin(), tracks.cend(), [](const Track* track) {
        return track->albumTags.track > 0;
    });
    if (!areNumbered)
        return 0;
    std::stable_sort(tracks.begin(), tracks.end(),
                     [](const Track* a, const Track* b) { return isBeforeOnAlbum(*a, *b); });
    qint64 discs = 1;
    for (std::size_t i = 1; i < tracks.size(); ++i)
        discs += discOf(*tracks[i]) != discOf(*tracks[i - 1]) ? 1 : 0;
    return discs;
}

QString labels(const Tracks& tracks, const QCollator& collator) {
    std::vector<QString> kept;
    const Track* last = nullptr;
    for (const Track* track : tracks) {
        if (last && last->format == track->format)
            continue;
        last = track;
        const QString label = track->format.trimmed();
        const bool isKnown = std::any_of(kept.cbegin(), kept.cend(), [&](const QString& other) {
            return other == label || collator.compare(other, label) == 0;
        });
        if (!label.isEmpty() && !isKnown)
            kept.push_back(label);
        if (kept.size() == 2)
            return kept[0] + u" / "_s + kept[1];
    }
    return kept.empty() ? u"Audio"_s : kept.front();
}

QString durationText(double totalSeconds, qint64 trackCount, ResolvedLanguage language) {
    if (!(totalSeconds > 0))
        return L10n::trackCount(trackCount, language);
    constexpr double mostMinutes = 1e12; // nonsense must not overflow
    const double minutes = std::clamp(std::floor(totalSeconds / 60), 1.0, mostMinutes);
    return L10n::albumDuration(static_cast<qint64>(minutes), language);
}

Album albumOf(Group& group, ResolvedLanguage language, const QCollator& collator) {
    Tracks& tracks = group.tracks;
    Album album;
    album.discCount = sortByNumber(tracks);
    if (album.discCount == 0)
        sortByFileName(tracks);
    QStringList genres;
    genres.reserve(static_cast<qsizetype>(tracks.size()));
    for (const Track* track : tracks) {
        album.totalSeconds += track->durationSeconds.value_or(0);
        if (album.year == 0 && track->year > 0)
            album.year = track->year;
        if (!album.coverImageData)
            album.coverImageData = track->coverImageData;
        if (!album.coverURL)
            album.coverURL = track->coverURL;
        genres.append(track->genre);
    }
    album.id = group.key.id;
    album.title = group.key.title;
    album.artist = group.key.artist;
    album.genre = mostCommonValue(genres).value_or(genres.first());
    album.trackCount = static_cast<qint64>(tracks.size());
    album.duration = durationText(album.totalSeconds, album.trackCount, language);
    album.quality = labels(tracks, collator);
    album.colors = albumColors(album.title, album.artist);
    return album;
}

// The texts by which an album is sorted. The first track that says so counts.
struct SortTexts {
    QString artist;
    QString title;
};

SortTexts sortTextsOf(const Album& album, const Tracks& tracks) {
    SortTexts texts;
    for (const Track* track : tracks) {
        const SortNames* names = track->albumTags.sortNames.get();
        if (!names)
            continue;
        if (texts.artist.isEmpty())
            texts.artist = sortNameOfLead(*track);
        if (texts.title.isEmpty())
            texts.title = names->album;
    }
    if (texts.artist.isEmpty())
        texts.artist = album.artist;
    if (texts.title.isEmpty())
        texts.title = album.title;
    return texts;
}

// Where each album stands in the published list.
std::vector<quint32> sortedOrder(const std::vector<SortTexts>& albums, const QCollator& collator) {
    const auto ranksBy = [&](QString SortTexts::*field) {
        QHash<QString, quint32> numbers;
        std::vector<QString> texts;
        std::vector<quint32> numberOf;
        numberOf.reserve(albums.size());
        for (const SortTexts& album : albums) {
            quint32& number = numbers[album.*field];
            if (number == 0) {
                texts.push_back(album.*field);
                number = static_cast<quint32>(texts.size());
            }
            numberOf.push_back(number - 1);
        }
        const std::vector<quint32> ranks = collationRanks(texts, collator);
        for (quint32& number : numberOf)
            number = ranks[number];
        return numberOf;
    };
    const auto artistRank = ranksBy(&SortTexts::artist);
    const auto titleRank = ranksBy(&SortTexts::title);
    std::vector<quint32> order(albums.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](quint32 a, quint32 b) {
        return artistRank[a] != artistRank[b] ? artistRank[a] < artistRank[b]
                                              : titleRank[a] < titleRank[b];
    });
    return order;
}

} // namespace

AlbumGroupKey albumGroupKey(const QString& title, const QString& artist,
                            ResolvedLanguage language) {
    AlbumGroupKey key;
    key.title = title.trimmed();
    key.artist = artist.trimmed();
    if (key.title.isEmpty())
        key.title = L10n::text(L10nKey::unknownAlbum, language);
    if (key.artist.isEmpty())
        key.artist = L10n::text(L10nKey::unknownArtist, language);
    key.id = Album::makeID(key.title, key.artist, u"local"_s);
    return key;
}

bool isBeforeOnAlbum(const Track& a, const Track& b) {
    if (discOf(a) != discOf(b))
        return discOf(a) < discOf(b);
    if (a.albumTags.track != b.albumTags.track)
        return a.albumTags.track < b.albumTags.track;
    return codePointLess(fileNameOf(a), fileNameOf(b));
}

QString sortNameOfLead(const Track& track) {
    const SortNames* names = track.albumTags.sortNames.get();
    if (!names)
        return {};
    return track.albumTags.albumArtist.isEmpty() ? names->artist : names->albumArtist;
}

std::optional<QString> mostCommonValue(const QStringList& values) {
    std::vector<std::pair<QString, qsizetype>> counts; // few distinct values, in order
    QHash<QString, std::size_t> placeOf;
    const QString* last = nullptr;
    constexpr auto nowhere = static_cast<std::size_t>(-1);
    std::size_t place = nowhere; // of the last text's count; nowhere for a blank text
    for (const QString& value : values) {
        if (last && *last == value) { // neighbours are mostly the same
            if (place != nowhere)
                ++counts[place].second;
            continue;
        }
        last = &value;
        place = nowhere;
        const QString text = value.trimmed();
        if (text.isEmpty())
            continue;
        const auto known = placeOf.constFind(text);
        place = known != placeOf.cend() ? *known : counts.size();
        if (place == counts.size()) {
            placeOf.insert(text, counts.size());
            counts.emplace_back(text, 0);
        }
        ++counts[place].second;
    }
    const auto most =
        std::max_element(counts.cbegin(), counts.cend(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == counts.cend() ? std::nullopt : std::optional(most->first);
}

QString albumQuality(const TrackRows& tracks) {
    Tracks all;
    for (const TrackPtr& track : tracks)
        all.push_back(track.get());
    return labels(all, caseInsensitiveCollator());
}

std::vector<Color> albumColors(const QString& title, const QString& artist) {
    // 32-bit FNV-1a over whole code points rather than bytes.
    quint32 hash = 2166136261U;
    for (const char32_t scalar : (artist + u'|' + title).toUcs4())
        hash = (hash ^ scalar) * 16777619U;
    const double hue = (hash % 360) / 360.0;
    const double second = hue + 0.095 - std::floor(hue + 0.095);
    return {colorFromHsb({hue, 0.76, 0.88}), colorFromHsb({second, 0.7, 0.72}), Color{0, 0, 0, 1}};
}

DerivedAlbums deriveAlbums(const TrackRows& rows, const TrackColumns& columns,
                           ResolvedLanguage language) {
    Groups grouped = groupTracks(rows, columns, language);
    const QCollator collator = caseInsensitiveCollator();
    std::vector<Album> unsorted;
    unsorted.reserve(grouped.groups.size());
    std::vector<SortTexts> sortTexts;
    sortTexts.reserve(grouped.groups.size());
    for (Group& group : grouped.groups) {
        unsorted.push_back(albumOf(group, language, collator));
        sortTexts.push_back(sortTextsOf(unsorted.back(), group.tracks));
    }

    const std::vector<quint32> order = sortedOrder(sortTexts, collator);
    DerivedAlbums derived;
    derived.albums.reserve(order.size());
    std::vector<quint32> placeOf(order.size());
    for (const quint32 group : order) {
        placeOf[group] = static_cast<quint32>(derived.albums.size());
        derived.albums.push_back(std::move(unsorted[group]));
    }
    derived.albumOfRow = std::move(grouped.groupOfRow);
    for (quint32& group : derived.albumOfRow)
        group = placeOf[group];
    return derived;
}

} // namespace halvane
