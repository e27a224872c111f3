// SPDX-License-Identifier: MIT
#include "metadata/cache/metadata_cache.h"
#include "support/small_disk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

const TrackMetadataLoader::Fallbacks fallbacks{u"No Album"_s, u"No Artist"_s};

class MetadataCacheTest : public testing::Test {
  protected:
    QString touch(const QString& name, const QByteArray& content = "x") {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }
    [[nodiscard]] QString indexPath() const {
        return cache.cacheDirectory() + u"/library-cache.json"_s;
    }
    [[nodiscard]] QByteArray index() const {
        QFile file(indexPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void writeIndex(const QByteArray& json) {
        cache.ensureDirectoriesExist();
        QFile file(indexPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(json);
    }
    static QueueItem item(const QString& path) {
        QueueItem item;
        item.title = u"Line\n\"quoted\" \\ \u0001 夜"_s;
        item.artist = u"The Lanterns"_s;
        item.album = u"Night Walk"_s;
        item.genre = u"Folk"_s;
        item.year = 2019;
        item.duration = u"3:07"_s;
        item.durationSeconds = 187.1234567890123;
        item.quality = u"FLAC"_s;
        item.sampleRate = u"44.1 kHz"_s;
        item.bitDepth = u"16-bit"_s;
        item.sourceURL = FileUrl(path);
        item.coverURL = FileUrl(u"/m/cover.jpg"_s);
        return item;
    }

    QTemporaryDir folder;
    MetadataCache cache{folder.filePath(u"data/Halvane"_s)};
};

TEST_F(MetadataCacheTest, GivesBackWhatItSaved) {
    QueueItem full = item(touch(u"a.flac"_s));
    full.coverImageData = Artwork::fromBytes("picture");
    full.fileSize = 7;
    full.addedDate = 785'000'000.25;
    full.albumTags = {u"The Band"_s,
                      std::make_shared<SortNames>(SortNames{u"L"_s, u"Band, The"_s, u"Walk"_s}), 2,
                      65535};
    full.levelTags = {-7.03F, {}, 0.0F, -0.25F};
    full.saidTags = {4, 1200};
    QueueItem bare = item(touch(u"b.flac"_s));
    bare.durationSeconds.reset();
    bare.coverURL.reset();
    bare.year = 0;
    QueueItem withoutFile = bare;
    withoutFile.sourceURL.reset();
    cache.save({full, withoutFile, bare});

    const auto items = cache.queueItems({*full.sourceURL, *bare.sourceURL}, fallbacks);
    ASSERT_EQ(items.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        QueueItem expected = i == 0 ? full : bare;
        expected.id = items[i].id;
        expected.readDate = MetadataCache::modificationDate(expected.path());
        expected.fileSize = QFileInfo(expected.path()).size(); // as it is now
        QueueItem actual = items[i];
        actual.coverImageData = expected.coverImageData;
        EXPECT_EQ(actual, expected);
    }
    ASSERT_TRUE(items[0].coverImageData);
    EXPECT_EQ(items[0].coverImageData->read(), "picture");
    EXPECT_FALSE(items[1].coverImageData);

    // Another JSON reader must agree.
    const QJsonArray records = QJsonDocument::fromJson(index()).array();
    ASSERT_EQ(records.size(), 2);
    const QJsonObject one = records[0].toObject();
    const QJsonObject other = records[1].toObject();
    const QJsonObject& record = one[u"path"_s] == full.path() ? one : other;
    EXPECT_EQ(record[u"title"_s].toString(), full.title);
    EXPECT_EQ(record[u"durationSeconds"_s].toDouble(), *full.durationSeconds);
    EXPECT_EQ(record[u"modificationDate"_s].toDouble(),
              MetadataCache::modificationDate(full.path()));
    EXPECT_EQ(record[u"fileSize"_s].toInteger(), full.fileSize);
    EXPECT_EQ(record[u"addedDate"_s].toDouble(), full.addedDate);
    EXPECT_EQ(record[u"coverURLPath"_s].toString(), u"/m/cover.jpg"_s);
    EXPECT_TRUE(record[u"hasEmbeddedArtwork"_s].toBool());
    EXPECT_EQ(record[u"albumArtist"_s].toString(), u"The Band"_s);
    EXPECT_EQ(record[u"readerVersion"_s].toInteger(), currentReaderVersion);
    EXPECT_EQ((&record == &one ? other : one).keys().size(), 13);
    EXPECT_EQ(record[u"trackGain"_s].toDouble(), -7.03);
}

TEST_F(MetadataCacheTest, KnowsHitsMissesAndWhatIsGone) {
    const QString known = touch(u"known.mp3"_s);
    const QString touched = touch(u"touched.mp3"_s);
    const QString gone = touch(u"gone.mp3"_s);
    // The tags change after they are read and before they are saved.
    QueueItem retagged = item(touch(u"retagged.mp3"_s));
    retagged.readDate = MetadataCache::modificationDate(retagged.path()) - 1;
    cache.save({item(known), item(touched), item(gone), retagged});
    QFile::remove(gone);
    // A nanosecond is enough to be another date.
    struct stat facts;
    ASSERT_EQ(::stat(touched.toUtf8().constData(), &facts), 0);
    const timespec times[2] = {facts.st_atim, {facts.st_mtim.tv_sec + 1, facts.st_mtim.tv_nsec}};
    ::utimensat(AT_FDCWD, touched.toUtf8().constData(), times, 0);

    const QString title = item(known).title;
    const std::vector<FileUrl> urls{FileUrl(folder.path() + u"/./known.mp3"_s), FileUrl(touched),
                                    FileUrl(u"/nonexistent.mp3"_s), FileUrl(gone),
                                    *retagged.sourceURL};
    const QStringList expected{title, u"touched"_s, title, u"retagged"_s};
    QStringList together, streamed;
    for (const QueueItem& found : cache.queueItems(urls, fallbacks))
        together += found.title;
    EXPECT_EQ(together, expected);
    cache.streamItems(urls, fallbacks, std::make_shared<MetadataIndex>(cache.loadIndex()), {},
                      [&](const std::vector<LoadedItem>& next) {
                          for (const LoadedItem& found : next)
                              streamed += found.item.title;
                      });
    EXPECT_EQ(streamed, expected);
}

TEST_F(MetadataCacheTest, AKnownFileAndItsPictureAreNotOpened) {
    // Reading a pipe would block; a hit needs its date only.
    QueueItem pipe = item(folder.filePath(u"pipe.mp3"_s));
    ASSERT_EQ(::mkfifo(pipe.path().toUtf8().constData(), 0644), 0);
    pipe.coverImageData = Artwork::fromBytes("picture");
    cache.save({pipe});
    const QString picture = cache.artworkFileURL(pipe.path()).path();
    EXPECT_TRUE(QFile::remove(picture));
    ASSERT_EQ(::mkfifo(picture.toUtf8().constData(), 0644), 0);
    const QueueItem known = cache.queueItems({*pipe.sourceURL}, fallbacks).front();
    EXPECT_EQ(known.title, pipe.title);
    EXPECT_TRUE(known.coverImageData);
}

TEST_F(MetadataCacheTest, AnIndexThatIsNotOneIsEmpty) {
    const QByteArray good =
        R"({"path":"/m/a.flac","modificationDate":7,"title":"A","artist":"B","album":"C",)"
        R"("genre":"","year":0,"duration":"0:01","quality":"FLAC","sampleRate":"","bitDepth":"",)"
        R"("hasEmbeddedArtwork":false)";
    const auto with = [&](const char* from, const char* to) {
        return "[" + QByteArray(good).replace(from, to) + "}]";
    };
    const std::pair<QByteArray, int> rows[] = {
        {"[" + good + "}]", 1},
        {"[" + good + R"(,"mood":{"calm":[1]},"durationSeconds":null}])", 1},
        {"[" + good + R"(,"trackNumber":7,"albumSort":"A"}])", 1},
        {"[" + good + R"(,"trackNumber":-7}])", 0},
        {"[" + good + R"(,"discNumber":70000}])", 0},
        {with(R"("quality":"FLAC",)", ""), 0},
        {with("\"year\":0", "\"year\":\"0\""), 0},
        {with("false", "0"), 0},
        {good + "}", 0},
        {"[" + good + "}", 0},
        {"[7]", 0},
        {"", 0},
        {"[]", 0},
    };
    for (const auto& [json, records] : rows) {
        writeIndex(json);
        EXPECT_EQ(cache.loadIndex().size(), records) << json.toStdString();
    }
}

TEST_F(MetadataCacheTest, KeepsPicturesUnderTheHashOfThePath) {
    EXPECT_EQ(cache.artworkFileURL(u"/Music/a.flac"_s).fileName(),
              u"c734c2e3033d52cce17fed0366f7716db777d34211e10c083f8fb50ddb7a3c22"_s);
    // Tracks of one album share a file; changing one picture leaves the others.
    std::vector<QueueItem> album;
    for (const char* name : {"1.flac", "2.flac", "3.flac"}) {
        album.push_back(item(touch(QString::fromLatin1(name))));
        album.back().coverImageData = Artwork::fromBytes("front");
    }
    cache.save(album);
    const auto inode = [&](const QueueItem& track) {
        struct stat facts = {};
        ::stat(cache.artworkFileURL(track.path()).path().toUtf8().constData(), &facts);
        return std::pair(facts.st_ino, facts.st_nlink);
    };
    EXPECT_EQ(inode(album[0]), inode(album[2]));
    EXPECT_EQ(inode(album[0]).second, 3U);
    const auto before = inode(album[0]).first;
    cache.save(album);
    EXPECT_EQ(inode(album[0]).first, before) << "written again";
    album[1].coverImageData = Artwork::fromBytes("other");
    cache.save(album);
    const auto items = cache.queueItems({*album[0].sourceURL, *album[1].sourceURL}, fallbacks);
    EXPECT_EQ(items[0].coverImageData->read(), "front");
    EXPECT_EQ(items[1].coverImageData->read(), "other");
}

TEST_F(MetadataCacheTest, SurvivesBeingKilledAtAnyMoment) {
    std::vector<QueueItem> items;
    for (int i = 0; i < 3000; ++i)
        items.push_back(item(u"/m/%1.flac"_s.arg(i)));
    cache.save({items.begin(), items.begin() + 1});
    for (int round = 0; round < 12; ++round) {
        int saving[2];
        ASSERT_EQ(::pipe(saving), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            for (std::size_t count = items.size();; count = count == 1 ? items.size() : 1) {
                if (::write(saving[1], "", 1) != 1)
                    ::_exit(1);
                cache.save({items.begin(), items.begin() + static_cast<std::ptrdiff_t>(count)});
            }
        }
        char begun = 0;
        ASSERT_EQ(::read(saving[0], &begun, 1), 1);
        // The process is killed later from round to round. Readers always find a whole index.
        for (int look = 0; look <= round; ++look) {
            const auto records = cache.loadIndex().size();
            EXPECT_TRUE(records == 1 || records == 3000) << records;
        }
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ::close(saving[0]);
        ::close(saving[1]);
        const auto records = cache.loadIndex().size();
        EXPECT_TRUE(records == 1 || records == 3000) << records;
    }
}

TEST_F(MetadataCacheTest, AFullDiskAndAReadOnlyHomeLeaveTheOldIndexAndPictures) {
    SmallDisk disk(folder.path());
    std::vector<QueueItem> few{item(u"/m/0.flac"_s)};
    few[0].coverImageData = Artwork::fromBytes("old");
    std::vector<QueueItem> many(150, item(u"/m/0.flac"_s));
    for (std::size_t i = 0; i < many.size(); ++i)
        many[i].sourceURL = FileUrl(u"/m/%1.flac"_s.arg(i));
    const QByteArray large(16 << 10, 'x');
    many[0].coverImageData = many[1].coverImageData = Artwork::fromBytes(large);
    const auto picture = [&] {
        QFile file(cache.artworkFileURL(few[0].path()).path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const auto files = [&] {
        QStringList names;
        for (const QString& inside : {QString(), u"/Artwork"_s})
            names += QDir(cache.cacheDirectory() + inside).entryList(QDir::Files);
        return names.size();
    };
    const auto setFault = [&](bool isFull, bool isThere) {
        if (!isFull)
            disk.setReadOnly(isThere);
        else
            isThere ? disk.fillUp() : disk.makeRoom();
    };
    for (const bool isFull : {true, false}) {
        SCOPED_TRACE(isFull ? "full" : "read-only");
        cache.save(few);
        const QByteArray before = index();
        setFault(isFull, true);
        cache.save(many);
        EXPECT_EQ(index(), before);
        EXPECT_EQ(picture(), "old");
        EXPECT_EQ(files(), isFull ? 2 : 3) << "nothing half written stays behind";
        setFault(isFull, false);
        cache.save(many);
        EXPECT_EQ(cache.loadIndex().size(), 150);
        EXPECT_EQ(picture(), large);
    }
    // Nothing happens where nothing can be made.
    MetadataCache(u"/proc/nowhere"_s).save(many);
}

} // namespace
} // namespace halvane::test
