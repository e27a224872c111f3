// SPDX-License-Identifier: MIT
// What the next start makes of what was stored, on real files and the whole controller.
#include "audio/files/audio_file.h"
#include "library/running_library.h"
#include "library/tracks.h"
#include "library/user/settings_keys.h"
#include "support/audio_material.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

// Collects what is logged during its life.
class Log {
  public:
    Log() {
        lines().clear();
        m_before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { lines() += line; });
    }
    ~Log() { qInstallMessageHandler(m_before); }
    static QStringList& lines() {
        static QStringList collected;
        return collected;
    }

  private:
    QtMessageHandler m_before;
};

class RestorationTest : public testing::Test, public RunningLibrary {
  protected:
    void SetUp() override { start(); }

    QStringList storedPaths() {
        return *environment.preferences.strings(SettingsKey::importedAudioPaths);
    }
};

TEST_F(RestorationTest, WhatIsOpenedDuringTheStartTakesNothingFromTheLibrary) {
    const QStringList known{wave(u"a.wav"_s), wave(u"b.wav"_s)};
    import(known);
    saveIndex();
    QFile::remove(known[1]); // known only by its record
    const QString opened = wave(u"c.wav"_s);

    build();
    // The beginning of the restoration, without its worker.
    library->persistence()->hold();
    library->importedPaths()->restore();
    import({opened});
    EXPECT_EQ(storedPaths(), (QStringList{known[0], known[1], opened}));
    EXPECT_EQ(library->cache()->loadIndex().size(), 2);

    untilSaved([&] { library->restoration()->restoreImportedAudio(); });
    EXPECT_EQ(queued(), (QStringList{u"c"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(library->cache()->loadIndex().size(), 3);
}

TEST_F(RestorationTest, IsThereAgainAtTheNextStartWithNothingPlaying) {
    const QString kept = wave(u"kept.wav"_s);
    const QString unplugged = wave(u"unplugged.wav"_s);
    import({music.path()});
    saveIndex();
    const int writes = environment.preferences.changes(SettingsKey::importedAudioPaths);
    library.reset();
    QFile::remove(unplugged);
    environment.preferences.insertString(SettingsKey::importedAudioPaths, u"/gone/unknown.wav"_s);

    start();
    EXPECT_EQ(queued(), (QStringList{u"kept"_s, u"unplugged"_s}));
    EXPECT_EQ(library->store()->size(), 2U);
    EXPECT_TRUE(library->store()->track(kept)->durationSeconds);
    EXPECT_FALSE(library->queue()->currentRow());
    EXPECT_FALSE(library->transport()->isPlaying());
    EXPECT_EQ(library->status()->text(), QString());
    EXPECT_EQ(environment.preferences.changes(SettingsKey::importedAudioPaths), writes + 1);
    until([&] { return !library->availability()->unavailablePaths().isEmpty(); });
    EXPECT_EQ(library->availability()->unavailablePaths(), QSet{unplugged});

    // The drive is back.
    wave(u"unplugged.wav"_s);
    library->availability()->refreshAvailability();
    until([&] { return library->availability()->unavailablePaths().isEmpty(); });
}

TEST_F(RestorationTest, ShowsWhatIsKnownBeforeItLooksAtTheFiles) {
    const QString same = wave(u"same.wav"_s);
    const QString changed = wave(u"changed.wav"_s);
    import({music.path()});
    saveIndex();
    QFile index(library->cache()->cacheDirectory() + u"/library-cache.json"_s);
    library.reset();
    // An older index has no sizes.
    ASSERT_TRUE(index.open(QIODevice::ReadWrite));
    const QString records = QString::fromUtf8(index.readAll());
    index.resize(0);
    index.write(QString(records).remove(QRegularExpression(u"\"fileSize\":\\d+,"_s)).toUtf8());
    ASSERT_LT(index.size(), records.size());
    index.close();
    writeWave(sine(440, 0.5, 24000, 8000, 1), changed);
    const QString late = wave(u"late.wav"_s); // its path is stored without a record
    environment.preferences.insertString(SettingsKey::importedAudioPaths, late);

    build();
    std::optional<Track> shown;
    QObject::connect(
        library->store(), &LibraryStore::tracksChanged, library.get(),
        [&] {
            shown = *library->store()->track(changed);
            EXPECT_EQ(library->store()->track(same)->size(), QString());
            EXPECT_FALSE(library->store()->track(late));
        },
        Qt::SingleShotConnection);
    untilSaved([&] { library->restoration()->restoreImportedAudio(); });
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->duration, u"0:01"_s);
    const TrackPtr now = library->store()->track(changed);
    EXPECT_EQ(now->duration, u"0:03"_s);
    EXPECT_EQ(now->id, shown->id);
    EXPECT_EQ(queued(), (QStringList{u"changed"_s, u"same"_s, u"late"_s}));
    EXPECT_EQ(&library->queue()->record(0), now.get());
    EXPECT_EQ(library->store()->track(same)->size(), u"16 KB"_s);
    EXPECT_EQ(library->cache()->loadIndex().size(), 3);
    EXPECT_TRUE(library->catalog()->isCurrent());
    EXPECT_EQ(library->catalog()->published()->totalBytes,
              QFileInfo(same).size() + QFileInfo(changed).size() + QFileInfo(late).size());
}

TEST_F(RestorationTest, ALostIndexCostsNothingButTime) {
    constexpr int files = 1100;
    const QString sample = wave(u"0000.wav"_s);
    QStringList titles{u"0000"_s};
    for (int i = 1; i < files; ++i) {
        titles.append(u"%1"_s.arg(i, 4, 10, QLatin1Char('0')));
        ASSERT_TRUE(QFile::copy(sample, music.filePath(titles.last() + u".wav"_s)));
    }
    import({music.path()});
    saveIndex();
    ASSERT_TRUE(QFile::remove(library->cache()->cacheDirectory() + u"/library-cache.json"_s));
    start();
    EXPECT_EQ(queued(), titles);
    EXPECT_EQ(library->store()->size(), std::size_t{files});
}

TEST_F(RestorationTest, RenewsTheRecordsOfOlderReaders) {
    const QString there = wave(u"CD 2/there.wav"_s);
    const QString broken = wave(u"CD 2/broken.wav"_s);
    const QString gone = wave(u"CD 2/gone.wav"_s);
    import({music.path()});
    saveIndex();
    QFile index(library->cache()->cacheDirectory() + u"/library-cache.json"_s);
    library.reset();
    ASSERT_TRUE(index.open(QIODevice::ReadWrite));
    QString records = QString::fromUtf8(index.readAll());
    records.remove(u"\"readerVersion\":%1,"_s.arg(currentReaderVersion));
    records.remove(u"\"discNumber\":2,"_s).replace(u"\"genre\":\"\""_s, u"\"genre\":\"Old\""_s);
    index.resize(0);
    index.write(records.toUtf8());
    index.close();
    ASSERT_TRUE(QFile::remove(gone));
    // It has its date and size, and no longer its content.
    struct stat facts = {};
    ASSERT_EQ(::stat(broken.toUtf8().constData(), &facts), 0);
    QFile damaged(broken);
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.write(QByteArray(damaged.size(), 'x'));
    damaged.close();
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, broken.toUtf8().constData(), times, 0), 0);

    build();
    bool isRenewed = false;
    QObject::connect(library->renewal(), &RecordRenewal::finished, library.get(),
                     [&] { isRenewed = true; });
    QUuid id;
    QObject::connect(
        library->store(), &LibraryStore::tracksChanged, library.get(),
        [&] {
            const TrackPtr shown = library->store()->track(there);
            EXPECT_EQ(shown->genre, u"Old"_s);
            EXPECT_EQ(shown->albumTags.disc, 0);
            id = shown->id;
        },
        Qt::SingleShotConnection);
    library->restoration()->restoreImportedAudio();
    until([&] { return isRenewed; });
    const TrackPtr renewed = library->store()->track(there);
    EXPECT_EQ(renewed->id, id);
    EXPECT_EQ(renewed->genre, QString());
    EXPECT_EQ(renewed->albumTags.disc, 2);
    EXPECT_EQ(&library->queue()->record(2), renewed.get());
    for (const QString& path : {broken, gone}) {
        const TrackPtr kept = library->store()->track(path);
        EXPECT_EQ(kept->genre, u"Old"_s);
        EXPECT_TRUE(kept->durationSeconds);
        EXPECT_EQ(kept->readerVersion, 0) << "to be read at another start";
    }
    saveIndex();
    const MetadataIndex after = library->cache()->loadIndex();
    EXPECT_EQ(after.find(there)->albumTags.disc, 2);
    EXPECT_EQ(after.find(there)->readerVersion, currentReaderVersion);
    EXPECT_EQ(after.find(gone)->readerVersion, 0);
}

TEST_F(RestorationTest, CountsTheFramesOfAFileWithoutALengthAfterwards) {
    Pcm sound = sine(440, 0.001, 100'000);
    const Pcm loud = halvane::test::music(300'000);
    sound.samples.insert(sound.samples.end(), loud.samples.begin(), loud.samples.end());
    const QString path = music.filePath(u"a.mp3"_s);
    ASSERT_TRUE(
        QFile::copy(encoded(sound, u"mp3"_s, u"lame --quiet -t -V4 \"$IN\" \"$OUT\""_s), path));
    std::optional<double> guess;
    QObject::connect(library->store(), &LibraryStore::tracksChanged, library.get(), [&] {
        const TrackPtr track = library->store()->track(path);
        if (track && !guess)
            guess = track->durationSeconds;
    });
    import({wave(u"0.wav"_s), path}); // the first one plays
    until([&] { return library->store()->track(path)->readerVersion == currentReaderVersion; });
    const double length = (*AudioFile::open(path))->durationSeconds();
    EXPECT_GT(std::abs(guess.value_or(length) - length), 1);
    EXPECT_NEAR(*library->store()->track(path)->durationSeconds, length, 1e-6);
}

TEST_F(RestorationTest, ReadsAgainOnceWhatCouldNotBeRead) {
    const QString path = music.filePath(u"half.wav"_s);
    QFile half(path);
    ASSERT_TRUE(half.open(QIODevice::WriteOnly));
    half.write("RIFF");
    half.close();
    bool isRenewed = false; // which looks at the file, too
    QObject::connect(library->renewal(), &RecordRenewal::finished, library.get(),
                     [&] { isRenewed = true; });
    import({path});
    until([&] { return isRenewed; });
    const auto refreshed = [&] {
        bool isHealed = false;
        const auto connection = QObject::connect(library->healing(), &MetadataHealing::finished,
                                                 [&] { isHealed = true; });
        library->availability()->refreshAvailability();
        until([&] { return isHealed; });
        QObject::disconnect(connection);
    };
    until([&] { return library->healing()->metadataHealAttempts().contains(path); });
    // A file that was tried is left alone until the next start.
    wave(u"half.wav"_s);
    refreshed();
    EXPECT_FALSE(library->store()->track(path)->durationSeconds);
    library.reset();
    start();
    until([&] { return library->store()->track(path)->durationSeconds.has_value(); });
}

TEST_F(RestorationTest, HealingKeepsWhatIsTheTracksOwn) {
    const QString path = wave(u"a.wav"_s);
    Track track = trackAt(path);
    track.rating = 4;
    library->store()->append(rowsOf({track}));
    library->queue()->append(library->store()->rows());
    const QUuid entry = library->queue()->idAt(0);
    library->healing()->healIncompleteMetadata();
    until([&] { return library->store()->track(path)->durationSeconds.has_value(); });
    const TrackPtr healed = library->store()->track(path);
    EXPECT_EQ(healed->id, track.id);
    EXPECT_EQ(healed->rating, 4);
    EXPECT_EQ(healed->title, u"a"_s);
    EXPECT_EQ(library->queue()->idAt(0), entry);
    EXPECT_EQ(&library->queue()->record(0), healed.get());
}

TEST_F(RestorationTest, BookmarksAreKeptWhileTheirPathsExist) {
    wave(u"folder/a.wav"_s);
    const QString folder = music.filePath(u"folder"_s);
    const auto stored = [&] {
        return *environment.preferences.blobs(SettingsKey::securityBookmarks);
    };
    bool isStored = false;
    const auto watch = [&] {
        isStored = false;
        QObject::connect(library->bookmarks(), &Bookmarks::stored, library.get(),
                         [&] { isStored = true; });
    };
    watch();
    library->bookmarks()->persistBookmarks({folder + u"/"_s, music.path(), folder});
    until([&] { return isStored; });
    EXPECT_EQ(stored(), (std::vector<QByteArray>{folder.toUtf8(), music.path().toUtf8()}));
    EXPECT_TRUE(library->bookmarks()->accessedPaths().contains(folder));

    QDir(folder).removeRecursively();
    const Log log;
    watch();
    library->bookmarks()->restoreBookmarkAccess();
    until([&] { return isStored; });
    EXPECT_EQ(stored(), std::vector<QByteArray>{music.path().toUtf8()});
    EXPECT_TRUE(
        Log::lines().contains(u"bookmark restore: stored=2 resolved=1 accessed=1 stale=0"_s));
    watch();
    library->bookmarks()->persistBookmarks({u"/dev/null/none"_s});
    until([&] { return isStored; });
    EXPECT_TRUE(Log::lines().contains(u"bookmark creation failed (accessed=false)"_s));
    environment.preferences.remove(SettingsKey::securityBookmarks);
    library->bookmarks()->restoreBookmarkAccess();
    EXPECT_TRUE(Log::lines().contains(u"bookmark restore: none stored"_s));
}

} // namespace
} // namespace halvane::test
