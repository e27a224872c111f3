// SPDX-License-Identifier: MIT
#include "library/catalog/album_derivation.h"
#include "library/catalog/collation.h"
#include "library/tracks.h"
#include "presentation/l10n.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;
using enum ResolvedLanguage;

namespace {

DerivedAlbums derived(std::vector<Track> tracks, ResolvedLanguage language = english) {
    const TrackRows rows = rowsOf(std::move(tracks));
    return deriveAlbums(rows, columnsOf(rows), language);
}

Album only(std::vector<Track> tracks, ResolvedLanguage language = english) {
    const DerivedAlbums albums = derived(std::move(tracks), language);
    EXPECT_EQ(albums.albums.size(), 1U);
    return albums.albums.front();
}

} // namespace

TEST(AlbumDerivation, KeysAreTrimmedNamedAndKeepTheirCase) {
    const AlbumGroupKey key = albumGroupKey(u"  Night Walk\n"_s, u"\tThe Lanterns "_s, english);
    EXPECT_EQ(key.id, u"local|the lanterns|night walk"_s);
    EXPECT_EQ(key.title, u"Night Walk"_s);
    EXPECT_EQ(albumGroupKey(u"Night Walk"_s, u"The Lanterns"_s, english), key);
    EXPECT_EQ(albumGroupKey(u" "_s, {}, english).id, u"local|unknown artist|unknown album"_s);
    EXPECT_EQ(albumGroupKey({}, {}, simplifiedChinese).id, u"local|未知艺人|未知专辑"_s);
    EXPECT_EQ(Album::makeID(u" "_s, {}, u"x"_s), u"x|unknown"_s);
}

TEST(AlbumDerivation, SpellingsThatDifferInCaseStayApartAndShareAnId) {
    const auto albums = derived({trackOf(u"/1"_s, u"a"_s, u"The Lanterns"_s, u"Night Walk"_s),
                                 trackOf(u"/2"_s, u"b"_s, u"The Lanterns"_s, u"night walk"_s),
                                 trackOf(u"/3"_s, u"c"_s, u" The Lanterns"_s, u"Night Walk "_s)});
    ASSERT_EQ(albums.albums.size(), 2U);
    EXPECT_EQ(albums.albums[0].id, albums.albums[1].id);
    EXPECT_EQ(albums.albumOfRow,
              (std::vector<quint32>{0, 1, 0})); // equal for the sort, so in the order of the rows
    EXPECT_EQ(albums.albums[0].trackCount, 2);
}

TEST(AlbumDerivation, GathersFromTheTracksInFileNameOrder) {
    Track ten = trackAt(u"/x/10 - b.flac"_s);
    Track two = trackAt(u"/a/2 - a.flac"_s);
    Track odd = trackAt(u"/y/9.flac"_s);
    two.year = 2001;
    ten.year = -3;
    odd.year = 1999;
    ten.durationSeconds = 59.9;
    two.coverURL = FileUrl(u"/covers/two.jpg"_s);
    odd.coverURL = FileUrl(u"/covers/odd.jpg"_s);
    odd.coverImageData = Artwork::fromBytes("odd");
    ten.genre = u" Jazz "_s;
    two.genre = u"Rock"_s;
    odd.genre = u"Jazz"_s;
    for (Track* track : {&ten, &two, &odd}) {
        track->artist = u"A"_s;
        track->album = u"B"_s;
    }
    const Album album = only({odd, two, ten}); // by name, the order is 10, 2, 9
    EXPECT_EQ(album.year, 2001);
    EXPECT_EQ(album.coverURL->path(), u"/covers/two.jpg"_s);
    EXPECT_EQ(album.coverImageData, odd.coverImageData);
    EXPECT_EQ(album.genre, u"Jazz"_s);
    EXPECT_EQ(album.duration, u"1 min"_s); // 59 seconds are at least a minute
    EXPECT_DOUBLE_EQ(album.totalSeconds, 59.9);
    EXPECT_EQ(album.trackCount, 3);
}

// Files of one folder as they are tagged, and the albums that follow: artist/title, the number of
// tracks and of discs.
TEST(AlbumDerivation, TheAlbumArtistLeads) {
    const auto track = [](const char* artist, const char* album, const char* albumArtist = "",
                          quint16 disc = 0, quint16 number = 0) {
        return numbered(
            trackOf(u"/m/x"_s, u"t"_s, QString::fromUtf8(artist), QString::fromUtf8(album)),
            QString::fromUtf8(albumArtist), disc, number);
    };
    struct Case {
        const char* what;
        std::vector<Track> tracks;
        QString albums;
    };
    const char* various = "Various Artists";
    const Case cases[] = {
        {"a compilation is one album",
         {track("A", "Hits", various), track("B", "Hits", various), track("A", "Hits", various)},
         u"Various Artists/Hits 3 0"_s},
        {"guests do not split an album",
         {track("A", "X"), track("A, B", "X", "A"), track("A feat. C", "X", "A ")},
         u"A/X 3 0"_s},
        {"albums of one title by two artists stay apart",
         {track("A", "Live", "A"), track("B", "Live", "B"), track("C", "Live")},
         u"A/Live 1 0, B/Live 1 0, C/Live 1 0"_s},
        {"without album artists the artists lead",
         {track("A", "Hits"), track("B", "Hits")},
         u"A/Hits 1 0, B/Hits 1 0"_s},
        {"two discs",
         {track("A", "X", "", 1, 1), track("A", "X", "", 2, 1), track("A", "X", "", 2, 2)},
         u"A/X 3 2"_s},
        {"what has no disc is on the first",
         {track("A", "X", "", 0, 1), track("A", "X", "", 1, 2), track("A", "X", "", 3, 1)},
         u"A/X 3 2"_s},
        {"one track without a number",
         {track("A", "X", "", 1, 1), track("A", "X", "", 2, 0)},
         u"A/X 2 0"_s},
    };
    for (const Case& c : cases) {
        QStringList albums;
        for (const Album& album : derived(c.tracks).albums)
            albums.append(u"%1/%2 %3 %4"_s.arg(album.artist, album.title)
                              .arg(album.trackCount)
                              .arg(album.discCount));
        EXPECT_EQ(albums.join(u", "_s).toStdString(), c.albums.toStdString()) << c.what;
    }
}

// The first track is the one with the lowest number, whatever its file is called.
TEST(AlbumDerivation, GathersFromNumberedTracksInTheirOrder) {
    Track last = numbered(trackOf(u"/m/a"_s, u"t"_s, u"A"_s, u"X"_s), {}, 2, 1);
    Track first = numbered(trackOf(u"/m/b"_s, u"t"_s, u"A"_s, u"X"_s), {}, 1, 2);
    last.year = 2001;
    first.year = 1999;
    EXPECT_EQ(only({last, first}).year, 1999);
    last.albumTags.track = 0;
    EXPECT_EQ(only({last, first}).year, 2001);
}

TEST(AlbumDerivation, SortsBySortNamesWhereThereAreAny) {
    const auto sortedAs = [](Track track, const SortNames& names) {
        track.albumTags.sortNames = std::make_shared<const SortNames>(names);
        return track;
    };
    const Track beatles = trackOf(u"/1"_s, u"t"_s, u"The Band"_s, u"X"_s);
    const Track other = trackOf(u"/2"_s, u"t"_s, u"Kites"_s, u"The Y"_s);
    const Track third = trackOf(u"/3"_s, u"t"_s, u"Kites"_s, u"Z"_s);
    const auto order = [](const std::vector<Track>& tracks) {
        QString titles;
        for (const Album& album : derived(tracks).albums)
            titles += album.title.back();
        return titles;
    };
    EXPECT_EQ(order({beatles, other, third}), u"YZX"_s);
    EXPECT_EQ(order({sortedAs(beatles, {u"Band, The"_s, {}, {}}), other, third}), u"XYZ"_s);
    EXPECT_EQ(order({beatles, sortedAs(other, {{}, {}, u"ZZ"_s}), third}), u"ZYX"_s);
    // An album artist is not sorted as the track's artist.
    EXPECT_EQ(order({sortedAs(numbered(beatles, u"Zebras"_s, 0, 0), {u"Band, The"_s, {}, {}}),
                     other, third}),
              u"YZX"_s);
}

TEST(AlbumDerivation, LengthTexts) {
    struct Case {
        std::optional<double> seconds;
        ResolvedLanguage language;
        QString expected;
    };
    const Case cases[] = {{std::nullopt, english, L10n::trackCount(1, english)},
                          {0.0, english, L10n::trackCount(1, english)},
                          {std::nan(""), english, L10n::trackCount(1, english)},
                          {std::nullopt, simplifiedChinese, L10n::trackCount(1, simplifiedChinese)},
                          {1.0, english, u"1 min"_s},
                          {3599.9, english, u"59 min"_s},
                          {7500.0, english, u"2h 5m"_s}};
    for (const Case& c : cases) {
        Track track = trackAt(u"/a"_s);
        track.durationSeconds = c.seconds;
        EXPECT_EQ(only({track}, c.language).duration, c.expected);
    }
}

TEST(AlbumDerivation, QualityNamesTheFirstTwoLabels) {
    const auto quality = [](const QStringList& formats) {
        std::vector<Track> tracks;
        for (const QString& format : formats) {
            tracks.push_back(trackAt(u"/f"_s));
            tracks.back().format = format;
        }
        return albumQuality(rowsOf(tracks));
    };
    EXPECT_EQ(quality({u"FLAC"_s, u"flac"_s, u" ALAC"_s, u"MP3"_s}), u"FLAC / ALAC"_s);
    EXPECT_EQ(quality({u" "_s, u"MP3"_s, u"mp3"_s}), u"MP3"_s);
    EXPECT_EQ(quality({u""_s, {}}), u"Audio"_s);
}

TEST(AlbumDerivation, MostCommonValue) {
    EXPECT_EQ(mostCommonValue({u"a"_s, u" b"_s, u"b "_s, u"B"_s}), u"b"_s);
    EXPECT_EQ(mostCommonValue({u"x"_s, u"y"_s, u"x"_s, u"y"_s, u"y"_s}), u"y"_s);
    EXPECT_FALSE(mostCommonValue({u" "_s, {}, u"\n"_s}));
    Track blank = trackAt(u"/a"_s);
    blank.genre = u" "_s;
    EXPECT_EQ(only({blank}).genre, u" "_s); // not trimmed
}

// The hash is FNV-1a over code points. That of "a" alone is e40c292c.
TEST(AlbumDerivation, ColorsFollowFromTheNames) {
    const auto hueOf = [](const QString& artistBarTitle) {
        quint32 hash = 2166136261U;
        for (const char32_t scalar : artistBarTitle.toStdU32String())
            hash = (hash ^ scalar) * 16777619U;
        return (hash % 360) / 360.0;
    };
    for (const QString& title : {u"Night Walk"_s, u""_s, u"夜𝄞"_s}) {
        const auto colors = albumColors(title, u"艺人"_s);
        ASSERT_EQ(colors.size(), 3U);
        const double hue = hueOf(u"艺人|"_s + title);
        const Hsb first = hsbOf(colors[0]);
        EXPECT_NEAR(first.hue, hue, 1e-9);
        EXPECT_NEAR(first.saturation, 0.76, 1e-9);
        EXPECT_NEAR(first.brightness, 0.88, 1e-9);
        const Hsb second = hsbOf(colors[1]);
        EXPECT_NEAR(second.hue, std::fmod(hue + 0.095, 1.0), 1e-9);
        EXPECT_NEAR(second.saturation, 0.7, 1e-9);
        EXPECT_NEAR(second.brightness, 0.72, 1e-9);
        EXPECT_EQ(colors[2], (Color{0, 0, 0, 1}));
    }
}

TEST(AlbumDerivation, SortsByArtistThenTitleWithoutRegardToCase) {
    std::vector<Track> tracks;
    const char* const names[][2] = {{"beta", "Z"},  {"Alpha", "b"}, {"BETA", "a"}, {"alpha", "A"},
                                    {"Émile", "x"}, {"Zoe", "x"},   {"eric", "x"}};
    for (const auto& [artist, title] : names)
        tracks.push_back(trackOf(u"/"_s + QString::number(tracks.size()), u"t"_s,
                                 QString::fromUtf8(artist), QString::fromUtf8(title)));
    QStringList order;
    for (const Album& album : derived(tracks).albums)
        order.append(album.artist + u"/"_s + album.title);
    EXPECT_EQ(order.join(u' '), u"alpha/A Alpha/b BETA/a beta/Z Émile/x eric/x Zoe/x"_s);
}

TEST(Collation, ComparesWholeCodePoints) {
    EXPECT_TRUE(codePointLess(u"10 - b", u"2 - a"));
    EXPECT_TRUE(codePointLess(u"a", u"aa"));
    EXPECT_FALSE(codePointLess(u"a", u"a"));
    EXPECT_TRUE(codePointLess(u"Z", u"a"));
    EXPECT_TRUE(codePointLess(u"\uFF5E", u"\U0001F3B5")); // UTF-16 units have the other order
}
