// SPDX-License-Identifier: MIT
#include "library/catalog/catalog_publisher.h"
#include "library/catalog/catalog_search.h"
#include "library/catalog/pinyin.h"
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

TEST(FoldedTexts, DisregardCaseAccentsWidthAndComposition) {
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
        {u"Beyoncé"_s, u"beyonce"_s, true},
        {u"Beyonce"_s, u"yoncé"_s, true},
        {u"Đặng Thái Sơn"_s, u"dang thai son"_s, true},
        {u"Sigur Rós / Øystein / Æther / Łódź"_s, u"oystein / aether / lodz"_s, true},
        {u"Ξαρχάκος"_s, u"ξαρχακος"_s, true},
        {u"Алёна"_s, u"алена"_s, true},
        {u"май"_s, u"маи"_s, false}, // another letter
        {u"ｊａｚｚ １９５９"_s, u"jazz 1959"_s, true},
        {u"ｶﾞﾗｽ"_s, u"ガラス"_s, true},
        {u"かき"_s, u"がき"_s, false},
        {u"한국"_s, u"한국"_s, true},
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

TEST(FoldedTexts, FindChineseByTheInitialsOfItsPinyin) {
    const std::pair<QString, QByteArray> cases[] = {
        {u"周杰伦"_s, "zjl"},
        {u"鄧麗君"_s, "dlj"},
        {u"G.E.M. 邓紫棋"_s, "dzq"},
        {u"七里香 (Live) 2004"_s, "qlx"},
        {u"夜 · 晚风"_s, "y wf"},
        {u"初音ミク"_s, "cy"},
        {u"阿八嚓哒额发噶哈击喀垃妈拿哦啪期然撒他挖昔压匝"_s, "abcdefghjklmnopqrstwxyz"},
        {u"Night Walk"_s, {}},
        {u"ミク"_s, {}},
        {{}, {}},
    };
    for (const auto& [text, initials] : cases) {
        EXPECT_EQ(pinyinInitials(text), initials) << text.toStdString();
        FoldedTexts texts;
        texts.add(u"zyx"_s);
        texts.add(text);
        if (!initials.isEmpty()) {
            EXPECT_EQ(texts.matches(initials), (std::vector<quint8>{0, 1}));
        }
        EXPECT_EQ(texts.matches(foldedForSearch(u"zy"_s)), (std::vector<quint8>{1, 0}));
    }
    FoldedTexts tile;
    tile.add(u"七里香\n周杰伦"_s);
    EXPECT_EQ(tile.matches("qlxz"), std::vector<quint8>{0}) << "these are two fields";
}

TEST(FoldedTexts, FoldAsTheUsersLanguageDoes) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Turkish));
    EXPECT_TRUE(isFound(u"İstanbul"_s, u"istanbul"_s));
    EXPECT_TRUE(isFound(u"ILIK"_s, u"ılık"_s));
    EXPECT_FALSE(isFound(u"ILIK"_s, u"ilik"_s));
    QLocale::setDefault(QLocale(QLocale::English));
    EXPECT_TRUE(isFound(u"Işıl"_s, u"isil"_s));
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

TEST(Catalog, ListsLeadersAndKnowsTheirGuests) {
    const auto catalog = catalogOf(
        {numbered(trackOf(u"/1"_s, u"t"_s, u"Guest"_s, u"X"_s), u"Leader"_s, 1, 3),
         numbered(trackOf(u"/2"_s, u"t"_s, u"Both"_s, u"X"_s), u"Leader"_s, 2, 1),
         numbered(trackOf(u"/3"_s, u"t"_s, u"Leader"_s, u"X"_s), u"Leader"_s, 1, 2),
         numbered(trackOf(u"/4"_s, u"t"_s, u"Guest"_s, u"Y"_s), u"Various Artists"_s, 0, 0),
         trackOf(u"/5"_s, u"t"_s, u"Both"_s, u"Z"_s)});
    const auto names = [](const std::vector<CatalogArtist>& artists) {
        QStringList texts;
        for (const CatalogArtist& artist : artists)
            texts.append(
                u"%1 %2 %3"_s.arg(artist.name).arg(artist.albumCount).arg(artist.trackCount));
        return texts;
    };
    EXPECT_EQ(names(catalog->artists),
              (QStringList{u"Both 1 1"_s, u"Leader 1 3"_s, u"Various Artists 1 1"_s}));
    EXPECT_EQ(names(catalog->guests), QStringList{u"Guest 2 2"_s});
    // An artist's own albums come first, and numbered albums have their order.
    const std::pair<const char*, std::vector<quint32>> rows[] = {
        {"Leader", {2, 0, 1}}, {"Both", {4, 1}}, {"Guest", {0, 3}}, {"Nobody", {}}};
    for (const auto& [name, expected] : rows)
        EXPECT_EQ(catalog->rowsOfArtist(QString::fromUtf8(name)), expected) << name;
    EXPECT_EQ(catalog->rowsOfAlbum(u"local|leader|x"_s), (std::vector<quint32>{2, 0, 1}));
    // A search finds guests, what they sing and the albums that they sing on.
    EXPECT_EQ(rowsMatching(*catalog, "guest", nullptr), (std::vector<quint32>{0, 3}));
    EXPECT_EQ(rowsMatching(*catalog, "leader", nullptr), (std::vector<quint32>{0, 1, 2}));
    EXPECT_EQ(catalog->albumTiles.matches("guest"), (std::vector<quint8>{0, 1, 1}));
    EXPECT_EQ(catalog->artistNamed(u"Guest"_s), &catalog->guests[0]);
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

struct CatalogPublishing : testing::Test {
    LibraryStore store;
    MemoryPreferences preferences;
    TrackUserData userData{preferences};
    FakeLanguages languages;
    const LanguageSetting language{preferences, languages};
    CatalogPublisher catalog{store, userData, language};
};

TEST_F(CatalogPublishing, CountsBytesAndLovedTracksAlsoOfWhatChangesMeanwhile) {
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

TEST(TrackSorting, TiesKeepTheOrderOfTheAlbumsAndEmptyFieldsAreLast) {
    const auto timed = [](Track track, double seconds) {
        track.durationSeconds = seconds;
        track.format = seconds > 100 ? u"FLAC"_s : QString();
        return track;
    };
    // Two albums of one title; a disc whose files are not in its order; a sort name.
    Track lanterns = timed(trackOf(u"/m/2"_s, u"Élan"_s, u"The Lanterns"_s, u"Walk"_s), 90);
    SortNames names;
    names.artist = u"Lanterns"_s;
    lanterns.albumTags.sortNames = std::make_shared<const SortNames>(names);
    const auto dated = [](Track track, const QString& genre, int year, double added) {
        track.genre = genre;
        track.year = year;
        track.addedDate = added;
        return track;
    };
    const auto catalog = catalogOf({
        dated(timed(trackOf(u"/m/0"_s, u"zeal"_s, u"Moss"_s, u"Walk"_s), 200), u"rock"_s, 1999, 0),
        dated(
            numbered(timed(trackOf(u"/m/1"_s, u"Second"_s, u"Arden"_s, u"Hours"_s), 150), {}, 1, 2),
            u"Folk"_s, 2004, 0),
        lanterns,
        dated(
            numbered(timed(trackOf(u"/m/3"_s, u"First"_s, u"Arden"_s, u"Hours"_s), 120), {}, 1, 1),
            u"Folk"_s, 2004, 8e8),
        dated(timed(trackOf(u"/m/4"_s, u"eland"_s, {}, {}), 0), {}, 0, 7e8),
        dated(timed(trackOf(u"/m/5"_s, u"Fern"_s, u"moss"_s, u"Bark"_s), 60), u"Ambient"_s, 0, 0),
    });
    using Rows = std::vector<quint32>;
    const std::tuple<TrackOrder, Rows, Rows> cases[] = {
        {TrackOrder::library, {0, 1, 2, 3, 4, 5}, {0, 1, 2, 3, 4, 5}},
        {TrackOrder::title, {2, 4, 5, 3, 1, 0}, {0, 1, 3, 5, 4, 2}},
        {TrackOrder::artist, {3, 1, 2, 5, 0, 4}, {5, 0, 2, 3, 1, 4}},
        {TrackOrder::album, {5, 3, 1, 2, 0, 4}, {2, 0, 3, 1, 5, 4}},
        {TrackOrder::quality, {0, 1, 3, 2, 4, 5}, {0, 1, 3, 2, 4, 5}},
        {TrackOrder::time, {5, 2, 3, 1, 0, 4}, {0, 1, 3, 2, 5, 4}},
        {TrackOrder::number, {3, 1, 0, 2, 4, 5}, {1, 3, 0, 2, 4, 5}},
        {TrackOrder::genre, {5, 3, 1, 0, 2, 4}, {0, 3, 1, 5, 2, 4}},
        {TrackOrder::year, {0, 3, 1, 2, 5, 4}, {3, 1, 0, 2, 5, 4}},
        {TrackOrder::added, {4, 3, 0, 1, 2, 5}, {3, 4, 0, 1, 2, 5}},
        {TrackOrder::path, {0, 1, 2, 3, 4, 5}, {5, 4, 3, 2, 1, 0}},
    };
    for (const auto& [by, ascending, descending] : cases) {
        EXPECT_EQ(sortedRows(*catalog, {by, false}, {}, allRows(*catalog)), ascending)
            << static_cast<int>(by);
        EXPECT_EQ(sortedRows(*catalog, {by, true}, {}, allRows(*catalog)), descending)
            << static_cast<int>(by);
    }
    // What the user has said of the tracks; what is left keeps the order in which it came.
    const IntegerMap said{{u"/m/1"_s, 3}, {u"/m/4"_s, 9}, {u"/m/5"_s, 3}};
    for (const TrackOrder by : {TrackOrder::plays, TrackOrder::rating}) {
        EXPECT_EQ(sortedRows(*catalog, {by, false}, said, {5, 4, 3, 2, 1}), (Rows{5, 1, 4, 3, 2}));
        EXPECT_EQ(sortedRows(*catalog, {by, true}, said, {5, 4, 3, 2, 1}), (Rows{4, 5, 1, 3, 2}));
    }
    // Only some rows, among which one text stands for all.
    EXPECT_EQ(sortedRows(*catalog, {TrackOrder::album, true}, {}, {5, 2, 0}), (Rows{2, 0, 5}));
}

TEST_F(CatalogPublishing, LargeLibrariesAreSortedByAWorker) {
    TrackRows rows;
    for (int i = 0; i < 20'000; ++i)
        rows.push_back(makeRow(
            trackOf(u"/m/%1"_s.arg(i), u"%1"_s.arg(20'000 - i, 5, 10, QChar(u'0')), {}, {})));
    store.append(rows);
    catalog.rebuildImportedAlbums();
    while (!catalog.isCurrent())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    int changes = 0;
    QObject::connect(&catalog, &CatalogPublisher::sortedRowsChanged, [&] { ++changes; });
    catalog.setSorting({TrackOrder::title, true});
    catalog.setSorting({TrackOrder::title, false}); // the first one is stale
    EXPECT_EQ(catalog.sortedRows(), nullptr) << "until the worker has them";
    while (changes == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ASSERT_NE(catalog.sortedRows(), nullptr);
    EXPECT_EQ(catalog.sortedRows()->front(), 19'999U);
    // A catalog that comes is sorted as it is published, also where the order is newer.
    store.remove({u"/m/19999"_s});
    catalog.rebuildImportedAlbums();
    catalog.setSorting({TrackOrder::title, true});
    while (!catalog.isCurrent())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(catalog.sortedRows()->size(), 19'999U);
    while (catalog.sortedRows()->front() != 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    catalog.setSorting({});
    EXPECT_EQ(catalog.sortedRows(), nullptr);
}

TEST_F(CatalogPublishing, LargeLibrariesAreDerivedByAWorkerAndPublishedWhole) {
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
