// SPDX-License-Identifier: MIT
#include "library/catalog/catalog.h"
#include "library/catalog/catalog_publisher.h"
#include "library/tracks.h"
#include "library/user/language_setting.h"
#include "library/user/track_user_data.h"
#include "support/fake_environment.h"

#include <QCoreApplication>
#include <QLocale>

#include <gtest/gtest.h>

#include <random>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

std::shared_ptr<const Catalog> catalogOf(std::vector<Track> tracks) {
    return buildCatalog(std::make_shared<const TrackRows>(rowsOf(std::move(tracks))),
                        ResolvedLanguage::english);
}

bool isFound(const QString& text, const QString& query) {
    FoldedTexts texts;
    texts.add(u"before"_s);
    texts.add(text);
    texts.add(u"after"_s);
    const QByteArray folded = foldedForSearch(query);
    EXPECT_EQ(texts.contains(1, folded), texts.matches(folded)[1] != 0);
    return texts.contains(1, folded);
}

} // namespace

TEST(FoldedTexts, DisregardCaseAndComposition) {
    struct Case {
        QString text;
        QString query;
        bool found;
    };
    const Case cases[] = {
        {u"FLAC 96 kHz"_s, u"flac"_s, true},
        {u"Straße"_s, u"STRASSE"_s, true},
        {u"Ünïcode"_s, u"ÜNÏ"_s, true},
        {u"Cafe\u0301"_s, u"CAFÉ"_s, true},
        {u"Café"_s, u"cafe"_s, false}, // accents count
        {u"夜のうた"_s, u"のう"_s, true},
        {u"ΣΟΦΟΣ"_s, u"σοφος"_s, true}, // both sigmas fold to one
        {u"a\0b"_s, u"b"_s, true},
        {QString(), u"x"_s, false},
        {u"one"_s, u"one two"_s, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(isFound(c.text, c.query), c.found)
            << c.text.toStdString() << " / " << c.query.toStdString();
    // A match does not run over the end of a text.
    FoldedTexts texts;
    texts.add(u"ab");
    texts.add(u"cd");
    EXPECT_EQ(texts.matches("bc"), (std::vector<quint8>{0, 0}));
    EXPECT_EQ(texts.matches("d"), (std::vector<quint8>{0, 1}));
}

TEST(FoldedTexts, FoldAsTheUsersLanguageDoes) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Turkish));
    EXPECT_TRUE(isFound(u"İstanbul"_s, u"istanbul"_s));
    EXPECT_TRUE(isFound(u"ILIK"_s, u"ılık"_s));
    EXPECT_FALSE(isFound(u"ILIK"_s, u"ilik"_s));
    QLocale::setDefault(before);
}

TEST(Catalog, SearchFindsWhatAPlainSearchFinds) {
    std::mt19937 generator(11);
    const QStringList words{u"Night"_s, u"WALK"_s, u"夜"_s,  u"é"_s,
                            u"flac"_s,  u"Jazz"_s, u"a b"_s, {}};
    const auto word = [&] { return words[static_cast<qsizetype>(generator()) % words.size()]; };
    std::vector<Track> tracks;
    for (int i = 0; i < 500; ++i) {
        Track track = trackOf(u"/%1"_s.arg(i), word() + word(), word(), word());
        track.genre = word();
        track.format = word();
        tracks.push_back(track);
    }
    const auto catalog = catalogOf(tracks);
    for (const QString& query :
         {u"n"_s, u"ni"_s, u"nightw"_s, u"夜"_s, u"É"_s, u"a b"_s, u"zzz"_s}) {
        std::vector<quint32> expected, half;
        for (quint32 row = 0; row < tracks.size(); ++row) {
            const Track& track = tracks[row];
            for (const QString& field :
                 {track.title, track.artist, track.album, track.genre, track.format}) {
                if (field.toCaseFolded().contains(query.toCaseFolded())) {
                    expected.push_back(row);
                    if (row % 7 == 0)
                        half.push_back(row);
                    break;
                }
            }
        }
        std::vector<quint32> few, many;
        for (quint32 row = 0; row < tracks.size(); ++row) {
            many.push_back(row);
            if (row % 7 == 0)
                few.push_back(row);
        }
        const QByteArray folded = foldedForSearch(query);
        EXPECT_EQ(rowsMatching(*catalog, folded, nullptr), expected);
        EXPECT_EQ(rowsMatching(*catalog, folded, &many), expected);
        EXPECT_EQ(rowsMatching(*catalog, folded, &few), half);
    }
}

TEST(Catalog, CountsArtistsByTheirExactNames) {
    const auto catalog = catalogOf(
        {trackOf(u"/1"_s, u"t"_s, u"b"_s, u"X"_s), trackOf(u"/2"_s, u"t"_s, u"b"_s, u"Y"_s),
         trackOf(u"/3"_s, u"t"_s, u"b"_s, u"X"_s), trackOf(u"/4"_s, u"t"_s, u"B"_s, u"X"_s),
         trackOf(u"/5"_s, u"t"_s, u"b "_s, u"X"_s)});
    ASSERT_EQ(catalog->artists.size(), 3U);
    EXPECT_EQ(catalog->artists[0].name, u"B"_s);
    EXPECT_EQ(catalog->artists[1].name, u"b"_s);
    EXPECT_EQ(catalog->artists[1].albumCount, 2);
    EXPECT_EQ(catalog->artists[1].trackCount, 3);
    EXPECT_EQ(catalog->artists[2].albumCount, 1);
    EXPECT_EQ(catalog->artistNamed(u"b "_s), &catalog->artists[2]);
    EXPECT_EQ(catalog->artistNamed(u"c"_s), nullptr);
}

TEST(Catalog, FindsTheAlbumOfAnEntry) {
    const auto catalog =
        catalogOf({trackOf(u"/1"_s, u"t"_s, u"Å"_s, u"X"_s), trackOf(u"/2"_s, u"t"_s, {}, {})});
    using enum ResolvedLanguage;
    EXPECT_EQ(albumOfEntry(*catalog, u" x "_s, u"å"_s, english)->title, u"X"_s);
    EXPECT_EQ(albumOfEntry(*catalog, {}, {}, english)->title, u"Unknown Album"_s);
    // After a change of the language the old albums are still found by title and artist.
    EXPECT_EQ(albumOfEntry(*catalog, {}, {}, simplifiedChinese), nullptr);
    EXPECT_EQ(
        albumOfEntry(*catalog, u"UNKNOWN album"_s, u"unknown ARTIST"_s, simplifiedChinese)->id,
        u"local|unknown artist|unknown album"_s);
}

TEST(CatalogPublisher, CountsBytesAndLovedTracksAlsoOfWhatChangesMeanwhile) {
    LibraryStore store;
    MemoryPreferences preferences;
    TrackUserData userData(preferences);
    FakeLanguages languages;
    const LanguageSetting language(preferences, languages);
    CatalogPublisher catalog(store, userData, language);
    const auto derived = [&] {
        catalog.rebuildImportedAlbums();
        return catalog.isCurrent();
    };
    const auto path = [](int i) { return u"/m/%1"_s.arg(i); };
    TrackRows rows;
    for (int i = 0; i < 3000; ++i) {
        Track track = trackOf(path(i), u"t"_s, u"a"_s, u"b"_s);
        track.fileSize = i == 0 ? -1 : 10;
        rows.push_back(makeRow(std::move(track)));
    }
    store.append(rows);
    for (const int i : {1, 2, 5000})
        userData.toggleLoved(path(i));
    ASSERT_FALSE(derived()); // the worker derives it
    for (const int i : {1, 3, 6000})
        userData.toggleLoved(path(i));
    while (!catalog.isCurrent())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(catalog.published()->totalBytes, 29'990);
    EXPECT_EQ(catalog.lovedCount(), 2U); // tracks 2 and 3
    userData.toggleLoved(path(4));
    EXPECT_EQ(catalog.lovedCount(), 3U);
    QSet<QString> most;
    for (int i = 4; i < 3000; ++i)
        most.insert(path(i));
    store.remove(most);
    ASSERT_TRUE(derived());
    EXPECT_EQ(catalog.published()->totalBytes, 30);
    EXPECT_EQ(catalog.lovedCount(), 2U);
    userData.toggleLoved(path(2));
    EXPECT_EQ(catalog.lovedCount(), 1U);
}

TEST(CatalogPublisher, LargeLibrariesAreDerivedByAWorkerAndPublishedWhole) {
    LibraryStore store;
    MemoryPreferences preferences;
    const TrackUserData userData(preferences);
    FakeLanguages languages;
    const LanguageSetting language(preferences, languages);
    CatalogPublisher catalog(store, userData, language);
    int published = 0;
    QObject::connect(&catalog, &CatalogPublisher::catalogChanged, [&] {
        ++published;
        EXPECT_EQ(catalog.published()->albumOfRow.size(), catalog.published()->rows->size());
    });
    TrackRows rows;
    for (int i = 0; i < 20'000; ++i)
        rows.push_back(makeRow(trackOf(u"/m/%1"_s.arg(i), u"t"_s, u"a"_s, u"b"_s)));
    store.append(rows);
    catalog.rebuildImportedAlbums();
    EXPECT_EQ(published, 0); // the worker derives it
    EXPECT_FALSE(catalog.isCurrent());
    store.remove({u"/m/7"_s});
    catalog.rebuildImportedAlbums(); // the first one is stale
    while (!catalog.isCurrent())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(published, 1);
    EXPECT_EQ(catalog.published()->rows->size(), 19'999U);
    EXPECT_EQ(catalog.published()->albums.front().trackCount, 19'999);

    QSet<QString> most;
    for (int i = 10; i < 20'000; ++i)
        most.insert(u"/m/%1"_s.arg(i));
    store.remove(most);
    catalog.rebuildImportedAlbums(); // a small one is derived at once
    EXPECT_TRUE(catalog.isCurrent());
    EXPECT_EQ(published, 2);
}
