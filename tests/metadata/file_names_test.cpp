// SPDX-License-Identifier: MIT
// Finding files, and the names that are made of their paths.
#include "metadata/track_metadata_loader.h"
#include "model/file_size.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

using namespace TrackMetadataLoader;
const Fallbacks fallbacks{u"No Album"_s, u"No Artist"_s};

class Folders : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(root.isValid()); }

    QString touch(const QString& name) {
        const QString path = place(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return path;
    }
    [[nodiscard]] QString place(const QString& name) const { return root.path() + u"/"_s + name; }
    [[nodiscard]] QStringList found() const {
        QStringList names;
        for (const FileUrl& url : audioFileURLs({root.path()}))
            names.append(url.path().mid(root.path().size() + 1));
        return names;
    }

    QTemporaryDir root;
};

TEST_F(Folders, AreSearchedForPlayableFiles) {
    const QString decomposed = u"e\u0301.mp3"_s;
    for (const QString& name :
         {u"b/2.flac"_s, u"b/10.flac"_s, u"B/x.MP3"_s, u"a.caf"_s, u"song.Opus"_s, u"song.mkv"_s,
          u".x.mp3"_s, u".hidden/y.mp3"_s, u"Thing.app/Contents/z.mp3"_s, u"Thing.app/z.mp3"_s,
          u"b/cover.jpg"_s, u"c/"_s + decomposed, u"c/"_s + QString(251, u'n') + u".m4a"_s})
        touch(name);
    EXPECT_EQ(found(), (QStringList{u"B/x.MP3"_s, u"a.caf"_s, u"b/10.flac"_s, u"b/2.flac"_s,
                                    u"c/"_s + decomposed, u"c/"_s + QString(251, u'n') + u".m4a"_s,
                                    u"song.Opus"_s}))
        << found().join(u'\n').toStdString();
    // Single files count by their extension. Roots stay in order, even twice. A missing root gives
    // nothing.
    const QString single = touch(u"z/song.FLAC"_s);
    const auto urls = audioFileURLs({single, touch(u"z/song.txt"_s), u"/nonexistent"_s, single});
    ASSERT_EQ(urls.size(), 2U);
    EXPECT_EQ(urls[0].path(), single);
}

// A name does not make a package, nor does what lies inside make one alone.
TEST_F(Folders, ThatAreNamedLikePackagesHoldMusic) {
    const QStringList music{u"A/Contents/4.mp3"_s, u"Dave.Matthews.Band/1.mp3"_s,
                            u"The.Humble.BUNDLE/a.pkg/2.mp3"_s, u"b.component/3.mp3"_s};
    for (const QString& name : music)
        touch(name);
    touch(u"Song.band/Contents/5.mp3"_s);
    touch(u"Song.band/Media/6.mp3"_s);
    EXPECT_EQ(found(), music);
}

// Whatever a file system lists first.
TEST_F(Folders, ThatLinksLeadToKeepTheirOwnPaths) {
    const QTemporaryDir elsewhere;
    QDir(elsewhere.path()).mkpath(u"far/deep"_s);
    ASSERT_TRUE(QFile(elsewhere.filePath(u"far/deep/9.mp3"_s)).open(QIODevice::WriteOnly));
    touch(u"m/real/1.mp3"_s);
    for (int i = 0; i < 20; ++i) {
        const QString name = u"/%1"_s.arg(i, 2, 10, QLatin1Char('0'));
        QFile::link(root.path() + u"/m/real"_s, root.path() + name);
        QFile::link(root.path() + u"/m"_s, root.path() + u"/m"_s + name);
        QFile::link(elsewhere.filePath(u"far"_s), root.path() + u"/m/real"_s + name);
    }
    QFile::link(elsewhere.filePath(u"far/deep"_s), root.path() + u"/z"_s);
    EXPECT_EQ(found(), (QStringList{u"m/real/00/deep/9.mp3"_s, u"m/real/1.mp3"_s}));
}

// Whichever root comes first, a link adds nothing that a folder of another root gives.
TEST_F(Folders, ThatAreSeveralRootsKeepTheirOwnPathsToo) {
    touch(u"m/Ann/1.mp3"_s);
    touch(u"m/Kostas/2.mp3"_s);
    touch(u"m/Kostas/3.mp3"_s);
    touch(u"far/4.mp3"_s);
    QFile::link(u".."_s, place(u"m/Kostas/loop"_s));
    QFile::link(place(u"far"_s), place(u"m/Ann/far"_s));
    QFile::link(place(u"far"_s), place(u"m/Kostas/away"_s));
    QFile::link(place(u"m/Kostas/3.mp3"_s), place(u"m/Ann/best.mp3"_s));
    QFile::link(place(u"m"_s), place(u"again"_s));
    struct Row {
        QStringList roots;
        QStringList found;
    };
    const QString ann = u"m/Ann/1.mp3"_s;
    const QString far = u"m/Ann/far/4.mp3"_s;
    const QStringList kostas{u"m/Kostas/2.mp3"_s, u"m/Kostas/3.mp3"_s};
    const Row rows[] = {
        {{u"m/Kostas"_s, u"m/Ann"_s}, {kostas[0], kostas[1], u"m/Kostas/away/4.mp3"_s, ann}},
        {{u"m/Ann"_s, u"m/Kostas"_s}, QStringList{ann, far} + kostas},
        {{u"again"_s, u"m/Ann"_s, u"m/Kostas"_s}, QStringList{ann, far} + kostas},
        {{u"again/Kostas"_s, u"m"_s}, QStringList{ann, far} + kostas},
        {{u"again/Ann/1.mp3"_s, u"m/Kostas/3.mp3"_s, u"m/Ann"_s}, {kostas[1], ann, far}},
        {{u"again/Kostas"_s},
         {u"again/Kostas/2.mp3"_s, u"again/Kostas/3.mp3"_s, u"again/Kostas/away/4.mp3"_s,
          u"again/Kostas/loop/Ann/1.mp3"_s}},
        {{u"m/Ann/best.mp3"_s}, {u"m/Ann/best.mp3"_s}},
        {{u"far/4.mp3"_s, u"m/Ann"_s}, {u"far/4.mp3"_s, ann, u"m/Ann/best.mp3"_s}},
        {{u"again/Kostas"_s, u"m/Kostas/3.mp3"_s},
         {kostas[1], u"again/Kostas/2.mp3"_s, u"again/Kostas/away/4.mp3"_s,
          u"again/Kostas/loop/Ann/1.mp3"_s}},
        {{u"m/Ann"_s, u"m/Ann/1.mp3"_s}, {ann, far, u"m/Ann/best.mp3"_s, ann}}, // named twice
    };
    for (const Row& row : rows) {
        std::vector<QString> roots;
        for (const QString& name : row.roots)
            roots.push_back(place(name));
        QStringList names;
        for (const FileUrl& url : audioFileURLs(roots))
            names.append(url.path().mid(root.path().size() + 1));
        names.sort();
        QStringList expected = row.found;
        expected.sort();
        EXPECT_EQ(names, expected)
            << row.roots.join(u' ').toStdString() << ": " << names.join(u' ').toStdString();
    }
}

TEST_F(Folders, ThatLoopOrLeadFarEndTheSearch) {
    touch(u"a/1.mp3"_s);
    QFile::link(root.path(), root.path() + u"/a/up"_s);
    QFile::link(root.path() + u"/a"_s, root.path() + u"/again"_s);
    QFile::link(u"nowhere"_s, root.path() + u"/a/broken.mp3"_s);
    EXPECT_EQ(found().filter(u"1.mp3"_s).size(), 1);

    // Folders nest a thousand deep. Files deeper than a path can name are left out.
    for (const char* name : {"d", "deeper"}) {
        int folder = ::open(root.path().toUtf8().constData(), O_RDONLY | O_DIRECTORY);
        for (int depth = 0; depth < 1000; ++depth) {
            ASSERT_EQ(::mkdirat(folder, name, 0755), 0);
            const int next = ::openat(folder, name, O_RDONLY | O_DIRECTORY);
            ::close(folder);
            folder = next;
        }
        ::close(::openat(folder, "2.mp3", O_CREAT | O_WRONLY, 0644));
        ::close(folder);
    }
    const QStringList deep = found().filter(u"2.mp3"_s);
    ASSERT_EQ(deep.size(), 1);
    EXPECT_TRUE(deep.first().startsWith(u"d/d/"_s));
    // No path is long enough to name the last of them.
    QDir().setCurrent(root.path());
    ASSERT_EQ(::system("rm -rf deeper"), 0);
}

TEST_F(Folders, ThatAreForbiddenAreLeftOut) {
    constexpr uid_t nobody = 65'534;
    for (const char* name : {"a/1.mp3", "locked/2.mp3", "z/3.mp3"})
        touch(QString::fromLatin1(name));
    const QByteArray base = root.path().toUtf8();
    ::chmod(base.constData(), 0755);
    ::chmod((base + "/locked").constData(), 0);
    const uid_t user = ::geteuid();
    if (user == 0) { // nothing is forbidden to this user
        ASSERT_EQ(::seteuid(nobody), 0);
    }
    EXPECT_EQ(found(), (QStringList{u"a/1.mp3"_s, u"z/3.mp3"_s}));
    ASSERT_EQ(::seteuid(user), 0);
    ::chmod((base + "/locked").constData(), 0755);
}

TEST_F(Folders, ThatChangeMeanwhileGiveWhatStays) {
    touch(u"a/1.mp3"_s);
    touch(u"z/2.mp3"_s);
    std::atomic<bool> isOver = false;
    std::thread changes([&] {
        for (int round = 0; !isOver; ++round) {
            const QString name = u"m%1"_s.arg(round % 7);
            const QString path = touch(name + u"/away.mp3"_s);
            QDir().rename(root.path() + u"/"_s + name, root.path() + u"/a/moved"_s);
            QFile::remove(path);
            QDir(root.path() + u"/a/moved"_s).removeRecursively();
        }
    });
    for (int search = 0; search < 100; ++search) {
        const auto urls = audioFileURLs({root.path()});
        int steady = 0;
        for (const QueueItem& item : queueItems(urls, fallbacks))
            steady += item.title == u"away"_s ? 0 : 1;
        EXPECT_EQ(steady, 2);
    }
    isOver = true;
    changes.join();
}

TEST_F(Folders, WithNamesThatAreNoTextAreLeftOut) {
    touch(u"a.mp3"_s);
    const QByteArray base = root.path().toUtf8();
    ::close(::open((base + "/caf\xe9.mp3").constData(), O_CREAT | O_WRONLY, 0644));
    ::mkdir((base + "/\xff").constData(), 0755);
    ::close(::open((base + "/\xff/b.mp3").constData(), O_CREAT | O_WRONLY, 0644));
    EXPECT_EQ(found(), QStringList{u"a.mp3"_s});
    // QTemporaryDir can't remove them by their paths.
    ::unlink((base + "/caf\xe9.mp3").constData());
    ::unlink((base + "/\xff/b.mp3").constData());
    ::rmdir((base + "/\xff").constData());
}

TEST_F(Folders, GiveTheCoverBesideAFile) {
    struct Row {
        QStringList images;
        QString cover;
    };
    const Row rows[] = {
        {{u"Cover.JPG"_s, u"back.png"_s}, u"Cover.JPG"_s},
        {{u"front.png"_s, u"folder.webp"_s, u"a.tif"_s}, u"folder.webp"_s},
        {{u"封面.heic"_s, u"x.jpg"_s}, u"封面.heic"_s},
        {{u"cover.heic"_s, u"cover.jpg"_s}, u"cover.jpg"_s},
        {{u"scan1.png"_s}, u"scan1.png"_s},
        {{u"scan1.png"_s, u"scan2.png"_s}, {}},
        {{u".cover.jpg"_s, u"cover.txt"_s}, {}},
    };
    int number = 0;
    for (const Row& row : rows) {
        const QString folder = QString::number(++number) + u"/"_s;
        const FileUrl file(touch(folder + u"a.mp3"_s));
        for (const QString& image : row.images)
            touch(folder + image);
        const auto cover = folderArtworkURL(file);
        EXPECT_EQ(cover ? cover->fileName() : QString(), row.cover);
    }
    // Discs share what lies above them.
    const QString album = touch(u"Album/cover.jpg"_s);
    touch(u"Album/back.jpg"_s);
    touch(u"Album/CD 3/scan.png"_s);
    const std::pair<QString, QString> discs[] = {
        {u"CD1"_s, album},
        {u"Disc 2 - Live"_s, album},
        {u"CD 3"_s, place(u"Album/CD 3/scan.png"_s)},
        {u"Videos"_s, {}},
    };
    for (const auto& [disc, expected] : discs) {
        const auto cover = folderArtworkURL(FileUrl(touch(u"Album/%1/a.mp3"_s.arg(disc))));
        EXPECT_EQ(cover ? cover->path() : QString(), expected) << disc.toStdString();
    }
}

TEST(FileNames, GiveAlbumsAndArtists) {
    const auto album = [](const char* path) {
        return folderAlbumName(FileUrl(QString::fromUtf8(path))).value_or(u"none"_s).toStdString();
    };
    EXPECT_EQ(album("/m/02_Best  Of/a.mp3"), "Best Of");
    EXPECT_EQ(album("/m/1984/a.mp3"), "1984");
    EXPECT_EQ(album("/m/01 - /a.mp3"), "none");
    EXPECT_EQ(album("/a.mp3"), "none");
    const auto artist = [](const char* path, const char* albumName) {
        return folderArtistName(FileUrl(QString::fromUtf8(path)), QString::fromUtf8(albumName))
            .value_or(u"none"_s)
            .toStdString();
    };
    EXPECT_EQ(artist("/x/Nina/Some Album/a.mp3", "Some Album"), "Nina");
    EXPECT_EQ(artist("/x/MUSIC/Some Album/a.mp3", "Some Album"), "none");
    EXPECT_EQ(artist("/x/音乐/Some Album/a.mp3", "Some Album"), "none");
    EXPECT_EQ(artist("/x/some ALBUM/CD1/a.mp3", " Some Album "), "none");
    EXPECT_EQ(artist("/Some Album/a.mp3", "Some Album"), "none");
    const std::pair<const char*, int> discs[] = {
        {"CD1", 1},         {"CD 2", 2}, {"disc-03", 3}, {"DISK_4", 4},       {"Disc 5 - Live", 5},
        {"CD 6 (b)", 6},    {"CD", 0},   {"CD 0", 0},    {"CD 80s Hits", 0},  {"Disc 1998", 0},
        {"Discovery 2", 0}, {"CD ٣", 0}, {"1", 0},       {"Best Of CD 1", 0}, {"CD1/x", 0},
    };
    for (const auto& [folder, disc] : discs) {
        const FileUrl file(u"/m/A/%1/a.mp3"_s.arg(QString::fromUtf8(folder)));
        EXPECT_EQ(folderDiscNumber(file).value_or(0), disc) << folder;
    }
    const QueueItem unnamed = queueItem(FileUrl(u"/a.mp3"_s), fallbacks);
    EXPECT_EQ(unnamed.album, fallbacks.album);
    EXPECT_EQ(unnamed.artist, fallbacks.artist);
}

TEST(Labels, DescribeStreamsLengthsAndSizes) {
    EXPECT_EQ(sampleRateText(44100), u"44.1 kHz"_s);
    EXPECT_EQ(sampleRateText(96000), u"96 kHz"_s);
    EXPECT_EQ(sampleRateText(0), QString());
    EXPECT_EQ(qualityLabel(u"MP3"_s, u"44.1 kHz"_s, u"16-bit"_s, 320),
              u"MP3 320 kbps · 44.1 kHz"_s);
    EXPECT_EQ(qualityLabel(u"MP3"_s, {}, {}, 133), u"MP3 133 kbps"_s);
    EXPECT_EQ(qualityLabel(u"FLAC"_s, u"96 kHz"_s, u"24-bit"_s, {}), u"FLAC 96 kHz / 24-bit"_s);
    EXPECT_EQ(qualityLabel(u"WAV"_s, {}, u"16-bit"_s, {}), u"WAV / 16-bit"_s);
    EXPECT_EQ(formatDuration(187.9), u"3:07"_s);
    EXPECT_EQ(formatDuration(3725), u"1:02:05"_s);
    const std::pair<qint64, const char*> sizes[] = {
        {0, "Zero KB"},    {1, "1 byte"},         {999, "999 bytes"},  {843'200, "843 KB"},
        {999'999, "1 MB"}, {8'400'000, "8.4 MB"}, {8'000'000, "8 MB"}, {1'230'000'000, "1.2 GB"}};
    for (const auto& [bytes, text] : sizes)
        EXPECT_EQ(halvane::byteCountText(bytes).toStdString(), text);
    const std::pair<const char*, qint64> years[] = {
        {"2011-05-03", 2011},    {"03/05/11", 0}, {"c. 1875", 0},     {"1899", 0},
        {"20110503 2012", 2012}, {"1900", 1900},  {"2101 2100", 2100}};
    for (const auto& [text, year] : years)
        EXPECT_EQ(parseYear(QString::fromUtf8(text)).value_or(0), year) << text;
}

TEST(DroppedItems, AreUrlsInThreeForms) {
    const QUrl expected(u"file:///m/a%20b.mp3"_s);
    EXPECT_EQ(url(QVariant(expected)), expected);
    EXPECT_EQ(url(QVariant(QByteArray("file:///m/a%20b.mp3"))), expected);
    EXPECT_EQ(url(QVariant(u"file:///m/a%20b.mp3"_s)), expected);
    EXPECT_FALSE(url(QVariant(7)));
    EXPECT_FALSE(url(QVariant()));
}

} // namespace
} // namespace halvane::test
