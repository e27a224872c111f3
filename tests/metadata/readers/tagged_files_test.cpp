// SPDX-License-Identifier: MIT
// Files that other programs have written, and files that are wrong on purpose.
#include "metadata/readers/file_reader.h"
#include "metadata/track_metadata_loader.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

const TrackMetadataLoader::Fallbacks fallbacks{u"No Album"_s, u"No Artist"_s};

class TaggedFiles : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder = new QTemporaryDir;
        QProcess script;
        script.setProcessChannelMode(QProcess::MergedChannels);
        script.start(QStringLiteral(HALVANE_PYTHON),
                     {QStringLiteral(HALVANE_SAMPLES_SCRIPT), samplesFolder()});
        areMade = script.waitForFinished(100'000) && script.exitCode() == 0;
        output = script.readAll();
    }
    static void TearDownTestSuite() {
        delete folder;
        folder = nullptr;
    }
    // Checked for each test, because tests count as skipped when their suite can't be set up.
    void SetUp() override { ASSERT_TRUE(areMade) << output.toStdString(); }
    static QString samplesFolder() { return folder->path() + u"/Nina/02_Best  Of"_s; }
    static QString pathOf(const QString& name) { return samplesFolder() + u"/"_s + name; }
    static QueueItem read(const QString& name) {
        return TrackMetadataLoader::queueItem(FileUrl(pathOf(name)), fallbacks);
    }

    static inline QTemporaryDir* folder = nullptr;
    static inline bool areMade = false;
    static inline QByteArray output; // of the script that makes them
};

TEST_F(TaggedFiles, GiveTheirTagsWhateverWroteThem) {
    struct Row {
        const char* name;
        const char* title;
        const char* artist;
        const char* album;
        const char* genre;
        int year;
        QByteArray picture;
    };
    const QByteArray jpeg("\xff\xd8\xff\xe0"
                          "front");
    const char* t = "Lamplight";
    const char* a = "The Lanterns";
    const char* b = "Night Walk";
    const Row rows[] = {
        {"id3v1.mp3", t, a, b, "Rock", 2019, {}},
        {"v22.mp3", t, a, b, "Rock", 2019, jpeg},
        {"v23_bom.mp3", t, a, b, "Rock", 2019, {}},
        {"v23_nobom_le.mp3", t, a, b, "", 0, {}},
        {"v23_nobom_be.mp3", t, a, b, "", 0, {}},
        {"v24_utf8.mp3", t, a, b, "", 2019, {}},
        {"v24_unsync.mp3", t, a, b, "", 0, {}},
        {"v24_two_artists.mp3", "v24_two_artists", "One, Two", "Best Of", "", 0, {}},
        {"mutagen.mp3", t, a, b, "Folk", 2019, jpeg},
        {"lame.mp3", t, a, b, "Folk", 2019, {}},
        {"ape.mp3", t, a, b, "Folk", 2019, jpeg},
        {"ape_in_front.mp3", t, a, b, "Folk", 2019, jpeg},
        {"empty_frame.mp3", t, a, b, "", 0, {}},
        {"kinds.mp3", t, "Nina", "Best Of", "", 0, jpeg},
        {"link_picture.mp3", t, "Nina", "Best Of", "", 0, {}},
        {"empty_picture.mp3", t, "Nina", "Best Of", "", 0, {}},
        {"metaflac.flac", t, a, b, "Folk", 2019, {}},
        {"repeated.flac", t, "One, The Lanterns", "Best Of", "", 2018, jpeg},
        {"mutagen.m4a", t, a, b, "Folk", 2019, jpeg},
        {"id3.wav", t, a, b, "Folk", 2019, jpeg},
        {"info.wav", t, a, b, "Folk", 2019, {}},
        {"id3.aiff", t, a, b, "Folk", 2019, jpeg},
        {"chunks.aiff", t, a, "Best Of", "", 0, {}},
        {"id3.aac", t, a, b, "Folk", 2019, jpeg},
        {"pcm.caf", t, a, b, "", 0, {}},
        {"tagged.ogg", t, a, b, "Folk", 2019, jpeg},
        {"chained.ogg", t, a, b, "Folk", 2019, jpeg},
        {"tagged.opus", t, a, b, "Folk", 2019, jpeg},
        {"tagged.oga", t, a, b, "Folk", 2019, jpeg},
        {"tagged_speex.ogg", t, a, b, "Folk", 2019, jpeg},
        {"tagged_vorbis.mp3", t, a, b, "Folk", 2019, jpeg},
        {"tagged.wv", t, a, b, "Folk", 2019, jpeg},
        {"tagged.mpc", t, a, b, "Folk", 2019, jpeg},
        {"tagged.ape", t, a, b, "Folk", 2019, jpeg},
        {"tagged.tta", t, a, b, "Folk", 2019, jpeg},
        {"ape.tta", t, a, b, "Folk", 2019, jpeg},
        {"tagged.wma", t, a, b, "Folk", 2019, jpeg},
        {"tagged.dsf", t, a, b, "Folk", 2019, jpeg},
        {"tagged.dff", t, a, b, "Folk", 2019, jpeg},
        {"diin.dff", t, a, "Best Of", "", 0, {}},
        // Encodings that the files do not tell, or tell wrongly, field by field.
        {"id3v1_gbk.mp3", "夜曲", "周杰伦", "十一月的萧邦", "Rock", 2019, {}},
        {"id3v1_cut.mp3", "a天天天天天天天天天天天天天天", "A", "B", "Rock", 2019, {}},
        {"gbk.mp3", "中文", "Björk", "爱 Love", "", 0, {}},
        {"latin.mp3", "Jää à l'été", "Mötley Crüe", "¿Qué? «Señor» Ænima", "", 0, {}},
        {"utf8_as_latin.mp3", "Кино", "Beyoncé", "夜曲", "", 0, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const QueueItem item = read(QString::fromUtf8(row.name));
        EXPECT_EQ(item.title.toStdString(), row.title);
        EXPECT_EQ(item.artist.toStdString(), row.artist);
        EXPECT_EQ(item.album.toStdString(), row.album);
        EXPECT_EQ(item.genre.toStdString(), row.genre);
        EXPECT_EQ(item.year, row.year);
        ASSERT_EQ(item.coverImageData.has_value(), !row.picture.isEmpty());
        if (item.coverImageData) {
            EXPECT_EQ(item.coverImageData->read(), row.picture);
        }
    }
}

TEST_F(TaggedFiles, TellTheirPlaceInAnAlbum) {
    struct Row {
        QStringList names;
        const char* artist;
        const char* albumArtist;
        int disc;
        int track;
        const char* sortNames; // artist, album artist, album
    };
    const Row rows[] = {
        {{u"whole_v22.mp3"_s, u"whole_v23.mp3"_s, u"whole_v24.mp3"_s, u"whole_ape.mp3"_s,
          u"whole.aac"_s, u"whole.wav"_s, u"whole.aiff"_s, u"whole.flac"_s, u"whole.m4a"_s},
         "A Singer",
         "The Band",
         2,
         3,
         "Singer, A/Band, The/Walk, Night"},
        {{u"whole.caf"_s}, "A Singer", "The Band", 2, 3, ""},
        {{u"track.wav"_s}, "A Singer", "", 0, 3, ""},
        // The first of several artists leads, unless it is a compilation.
        {{u"duet_v23.mp3"_s, u"duet_v24.mp3"_s, u"duet_ape.mp3"_s, u"duet.aac"_s, u"duet.wav"_s,
          u"duet.aiff"_s, u"duet.flac"_s, u"duet.m4a"_s, u"frames.mp3"_s},
         "One, Two",
         "One",
         0,
         0,
         ""},
        {{u"sampler_v23.mp3"_s, u"sampler_v24.mp3"_s, u"sampler_ape.mp3"_s, u"sampler.aac"_s,
          u"sampler.wav"_s, u"sampler.aiff"_s, u"sampler.flac"_s, u"sampler.m4a"_s},
         "One, Two",
         "Various Artists",
         0,
         0,
         ""},
        {{u"spaced.flac"_s}, "One", "The Band", 0, 0, ""},
        {{u"gbk_band.mp3"_s}, "周杰伦", "华语群星", 0, 0, "//十一月的萧邦"},
        {{u"twice.flac"_s, u"no_sampler.flac"_s}, "One", "", 0, 0, ""},
        // The folder tells the disc that no tag tells.
        {{u"CD 2/duet.flac"_s}, "One, Two", "One", 2, 0, ""},
    };
    for (const Row& row : rows) {
        for (const QString& name : row.names) {
            SCOPED_TRACE(name.toStdString());
            const QueueItem item = read(name);
            const AlbumTags& tags = item.albumTags;
            EXPECT_EQ(item.artist.toStdString(), row.artist);
            EXPECT_EQ(tags.albumArtist.toStdString(), row.albumArtist);
            EXPECT_EQ(tags.disc, row.disc);
            EXPECT_EQ(tags.track, row.track);
            const SortNames sort = tags.sortNames ? *tags.sortNames : SortNames();
            const QStringList texts{sort.artist, sort.albumArtist, sort.album};
            EXPECT_EQ(sort.isEmpty() ? std::string() : texts.join(u'/').toStdString(),
                      row.sortNames);
        }
    }
}

TEST_F(TaggedFiles, TellTheirLevels) {
    struct Row {
        QStringList names;
        LevelTags levels;
    };
    const auto peak = [](double amplitude) { return float(20 * std::log10(amplitude)); };
    const Row rows[] = {
        {{u"level.mp3"_s,     u"level_v23.mp3"_s, u"level.aac"_s,      u"level.tta"_s,
          u"level.dsf"_s,     u"level.dff"_s,     u"level.wav"_s,      u"level.aiff"_s,
          u"level.flac"_s,    u"level.ogg"_s,     u"level.oga"_s,      u"level_speex.ogg"_s,
          u"level.opus"_s,    u"level_ape.mp3"_s, u"level_ape.wv"_s,   u"level_ape.mpc"_s,
          u"level_ape.ape"_s, u"level_aac.m4a"_s, u"level_alac.m4a"_s, u"level.wma"_s,
          u"level.caf"_s},
         {-7.03F, peak(0.5), 2.5F, peak(1.25)}},
        // Opus counts from another reference, and its own gains go first.
        {{u"r128.opus"_s}, {3.0F, {}, 6.0F, {}}},
        {{u"r128_too.opus"_s}, {3.0F, peak(0.5), 2.5F, peak(1.25)}},
        {{u"level_short.flac"_s}, {-7.03F, peak(0.5), {}, {}}},
        {{u"level_nonsense.flac"_s, u"bare.flac"_s}, {}},
    };
    for (const Row& row : rows)
        for (const QString& name : row.names) {
            SCOPED_TRACE(name.toStdString());
            EXPECT_EQ(read(name).levelTags, row.levels);
        }
}

TEST_F(TaggedFiles, TellWhatAListenerSaidOfThem) {
    const QString rated[] = {u"said.mp3"_s,        u"said_user.mp3"_s,  u"said.wav"_s,
                             u"said.flac"_s,       u"said.ogg"_s,       u"said.opus"_s,
                             u"said_whose.flac"_s, u"said_both.flac"_s, u"said.wv"_s,
                             u"said.m4a"_s,        u"said_free.m4a"_s,  u"said.wma"_s,
                             u"said.caf"_s};
    for (const QString& name : rated)
        EXPECT_EQ(read(name).saidTags, (SaidTags{4, 12})) << name.toStdString();
    for (const QString& name : {u"said_nonsense.flac"_s, u"bare.flac"_s, u"bare.mp3"_s})
        EXPECT_EQ(read(name).saidTags, SaidTags()) << name.toStdString();
}

TEST_F(TaggedFiles, GiveTheFactsOfTheirStreamsByTheirContent) {
    const std::pair<const char*, const char*> rows[] = {
        {"bare.flac", "FLAC 44.1 kHz / 16-bit"},
        {"deep.flac", "FLAC 96 kHz / 24-bit"},
        {"deep.wav", "WAV 96 kHz / 24-bit"},
        {"float.wav", "WAV 44.1 kHz / 32-bit"},
        {"adpcm.wav", "WAV 44.1 kHz"},
        {"bare.aiff", "AIFF 44.1 kHz / 16-bit"},
        {"short.aif", "AIF 44.1 kHz / 16-bit"},
        {"sowt.aifc", "AIFC 44.1 kHz / 16-bit"},
        {"ulaw.aifc", "AIFC 44.1 kHz"},
        {"bare_aac.m4a", "M4A 44.1 kHz"},
        {"bare_alac.m4a", "M4A 44.1 kHz / 16-bit"},
        {"fragmented.m4a", "M4A 44.1 kHz"},
        {"book.m4b", "M4B * kbps · 44.1 kHz"},
        {"pcm.caf", "CAF 44.1 kHz / 16-bit"},
        {"alac.caf", "CAF 44.1 kHz / 16-bit"},
        {"vorbis.ogg", "OGG * kbps · 44.1 kHz"},
        {"bare.opus", "OPUS * kbps · 48 kHz"},
        {"flac.oga", "OGA 44.1 kHz / 16-bit"},
        {"speex.ogg", "OGG * kbps · 32 kHz"},
        {"bare.wv", "WV 44.1 kHz / 16-bit"},
        {"deep.wv", "WV 96 kHz / 32-bit"},
        {"bare.tta", "TTA 44.1 kHz / 16-bit"},
        {"bare.ape", "APE 44.1 kHz / 16-bit"},
        {"bare.mpc", "MPC * kbps · 44.1 kHz"},
        {"bare.wma", "WMA * kbps · 44.1 kHz"},
        {"bare.dsf", "DSF 2822.4 kHz / 1-bit"},
        {"bare.dff", "DFF 2822.4 kHz / 1-bit"},
        {"really_vorbis.mp3", "MP3 * kbps · 44.1 kHz"},
        {"really_mp4.alac", "ALAC 44.1 kHz / 16-bit"},
        {"really_flac.mp3", "MP3 * kbps · 44.1 kHz"},
        {"really_mp4.aac", "AAC * kbps · 44.1 kHz"},
        {"bare.mp3", "MP3 * kbps · 44.1 kHz"},
        {"bare.aac", "AAC * kbps · 44.1 kHz"},
        {"adif.aac", "AAC 16 kbps · 44.1 kHz"},
        {"noext", "Audio 44.1 kHz"},
    };
    for (const auto& [name, quality] : rows) {
        SCOPED_TRACE(name);
        const QueueItem item = read(QString::fromUtf8(name));
        const QStringList parts = QString::fromUtf8(quality).split(u'*');
        EXPECT_TRUE(item.quality.startsWith(parts.first()) && item.quality.endsWith(parts.last()))
            << item.quality.toStdString();
        ASSERT_TRUE(item.durationSeconds);
        // Only some formats tell what surrounds the music.
        EXPECT_NEAR(*item.durationSeconds, 2.0,
                    QLatin1StringView(name) == "bare.mp3"_L1 ? 0.002 : 0.11);
        EXPECT_EQ(item.duration, TrackMetadataLoader::formatDuration(*item.durationSeconds));
    }
}

TEST_F(TaggedFiles, ThatAreWrongYieldWhatTheirNamesSay) {
    const char* names[] = {"empty.mp3",  "text.flac",  "claims.mp3",      "claims.flac",
                           "claims.wav", "pipe.mp3",   "claims_info.wav", "nested.m4a",
                           "self.m4a",   "missing.mp3"};
    const auto mostMemory = [] {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss / 1024;
    };
    const auto before = mostMemory();
    for (const char* name : names) {
        SCOPED_TRACE(name);
        const QueueItem item = read(QString::fromUtf8(name));
        EXPECT_EQ(item.title, QString::fromUtf8(name).section(u'.', 0, 0));
        EXPECT_EQ(item.artist, u"Nina"_s);
        EXPECT_EQ(item.album, u"Best Of"_s);
        EXPECT_EQ(item.duration, u"--:--"_s);
        EXPECT_FALSE(item.durationSeconds);
        EXPECT_FALSE(item.coverImageData);
    }
    EXPECT_LT(mostMemory() - before, 200) << "megabytes, where one claims to need 1600";
    // A tag of 200,000 frames is not worth its memory. The stream is read nevertheless.
    EXPECT_EQ(read(u"crowded.mp3"_s).title, u"crowded"_s);
}

TEST_F(TaggedFiles, AreReadInTheOrderAskedForAndLeaveThemUntouched) {
    std::vector<FileUrl> urls = TrackMetadataLoader::audioFileURLs({folder->path()});
    std::reverse(urls.begin(), urls.end());
    ASSERT_GT(urls.size(), 40U);
    const auto before = QFileInfo(pathOf(u"mutagen.mp3"_s)).lastModified();
    std::size_t lastDone = 0;
    TrackMetadataLoader::Accompaniment with;
    with.progress = [&](std::size_t done) { lastDone = done; };
    const auto items = TrackMetadataLoader::queueItems(urls, fallbacks, with);
    ASSERT_EQ(items.size(), urls.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        EXPECT_EQ(items[i].path(), urls[i].standardizedPath());
    EXPECT_EQ(lastDone, urls.size());
    EXPECT_EQ(QFileInfo(pathOf(u"mutagen.mp3"_s)).lastModified(), before);
}

TEST_F(TaggedFiles, InTheCloudAreNotOpened) {
    const FileUrl url(pathOf(u"mutagen.mp3"_s));
    TrackMetadataLoader::Accompaniment with;
    with.isEvicted = [&](const QString& path) { return path == url.path(); };
    const auto items = TrackMetadataLoader::queueItems({url}, fallbacks, with);
    EXPECT_EQ(items.front().title, u"mutagen"_s);
}

TEST_F(TaggedFiles, KeepTheTextsBehindLargePictures) {
    for (const char* name : {"large_picture.mp3", "pictures_first.flac"}) {
        const QueueItem item = read(QString::fromUtf8(name));
        EXPECT_EQ(item.title, u"Lamplight"_s) << name;
        EXPECT_EQ(item.artist, u"The Lanterns"_s) << name;
        EXPECT_EQ(item.album, u"Night Walk"_s) << name;
        EXPECT_TRUE(item.coverImageData) << name;
    }
}

// Every kind of file, cut short and with bytes changed, by a fixed seed.
TEST_F(TaggedFiles, SurviveDamage) {
    const char* names[] = {"mutagen.mp3",   "v22.mp3",     "ape.mp3",    "metaflac.flac",
                           "repeated.flac", "mutagen.m4a", "id3.wav",    "info.wav",
                           "id3.aiff",      "sowt.aifc",   "pcm.caf",    "alac.caf",
                           "bare_alac.m4a", "id3.aac",     "tagged.ogg", "tagged.opus",
                           "tagged.oga",    "tagged.wv",   "tagged.mpc", "tagged.ape",
                           "ape.tta",       "tagged.wma",  "tagged.dsf", "tagged.dff"};
    constexpr int variants = 60;
    std::mt19937 random(20260101);
    for (const char* name : names) {
        SCOPED_TRACE(name);
        QFile original(pathOf(QString::fromUtf8(name)));
        ASSERT_TRUE(original.open(QIODevice::ReadOnly));
        const QByteArray bytes = original.readAll();
        const QString path = pathOf(u"damaged."_s + QFileInfo(original).suffix());
        for (int variant = 0; variant < variants; ++variant) {
            QByteArray damaged = bytes;
            if (variant % 3 == 0)
                damaged.truncate(static_cast<qsizetype>(random() % damaged.size()));
            for (unsigned int i = 0; i < 1 + random() % 24 && !damaged.isEmpty(); ++i)
                damaged[static_cast<qsizetype>(random() %
                                               std::min<qsizetype>(damaged.size(), 2048))] =
                    static_cast<char>(random() % 3 ? random() : 0xff);
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(damaged);
            file.close();
            const AudioFileReading reading = readAudioFile(path);
            EXPECT_EQ(reading.fileSize, damaged.size());
            EXPECT_FALSE(reading.isLate);
        }
    }
}

} // namespace
} // namespace halvane::test
