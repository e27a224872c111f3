// SPDX-License-Identifier: MIT
// Importing, restoring and healing, on real files and the whole controller.
#include "audio/files/audio_file.h"
#include "library/running_library.h"
#include "library/tracks.h"
#include "library/user/settings_keys.h"
#include "platform/log.h"
#include "presentation/l10n.h"
#include "support/audio_material.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <semaphore>
#include <sys/stat.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class ImportTest : public testing::Test, public RunningLibrary {
  protected:
    void SetUp() override { start(); }

    QString wave(const QString& name) {
        const QString path = music.filePath(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        writeWave(sine(440, 0.5, 8000, 8000, 1), path);
        return path;
    }
    QStringList storedPaths() {
        return *environment.preferences.strings(SettingsKey::importedAudioPaths);
    }
};

// A file may be opened with the program before the library is restored.
TEST_F(ImportTest, WhatIsOpenedDuringTheStartTakesNothingFromTheLibrary) {
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

TEST_F(ImportTest, AddsWhatIsNewAndPlaysTheFirstOfIt) {
    QStringList paths;
    for (int i = 0; i < 10; ++i)
        paths.append(wave(u"album/%1.wav"_s.arg(i)));
    import(paths.mid(0, 3));
    EXPECT_EQ(library->status()->text(), u"Added 3 to playlist"_s);
    EXPECT_EQ(current(), u"0"_s);

    import({music.path()});
    EXPECT_EQ(library->status()->text(), u"Added 7, skipped 3"_s);
    EXPECT_FALSE(library->status()->isError());
    EXPECT_EQ(current(), u"3"_s);
    EXPECT_EQ(library->store()->size(), 10U);
    EXPECT_EQ(storedPaths(), paths);
    EXPECT_EQ(library->store()->track(paths[0])->size(), u"16 KB"_s);

    // What nothing here plays is counted, and what belongs to an album's folder is not.
    for (const char* name : {"album/clip.mkv", "album/old.MID", "album/rip.log", "album/a.cue"})
        QFile::copy(paths[0], music.filePath(QString::fromUtf8(name)));
    import({music.path()});
    EXPECT_EQ(library->status()->text(), u"Already in playlist · 2 of other kinds left out"_s);

    import(paths.mid(4, 3));
    EXPECT_EQ(library->status()->text(), u"Already in playlist"_s);
    EXPECT_EQ(current(), u"4"_s);

    QFile text(music.filePath(u"notes.txt"_s));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    import({text.fileName()});
    EXPECT_EQ(library->status()->text(), u"No supported audio files found"_s);
    EXPECT_TRUE(library->status()->isError());
    EXPECT_EQ(queued().size(), 10);
    EXPECT_LT(library->importing()->importProgress(), 0);
}

TEST_F(ImportTest, TakesDropsOneAfterTheOther) {
    const QString first = wave(u"a/1.wav"_s);
    wave(u"a/2.wav"_s);
    const QUrl folder = QUrl::fromLocalFile(music.path());
    library->importing()->importDroppedURLs({QUrl::fromLocalFile(first)});
    library->importing()->importDroppedURLs({folder, folder});
    until([&] { return !library->importing()->isImporting(); });
    EXPECT_EQ(queued(), (QStringList{u"1"_s, u"2"_s}));
    EXPECT_EQ(library->status()->text(), u"Added 1, skipped 3"_s);
}

// As when a disk has kept the files waiting.
TEST_F(ImportTest, WhatWasChosenMeanwhilePlaysOn) {
    const auto give = [&](const QString& path) {
        library->importing()->importDroppedURLs({QUrl::fromLocalFile(path)});
    };
    const auto playing = [&] { return library->player()->currentTrack().title; };
    const auto isDone = [&] { return !library->importing()->isImporting(); };
    const QString known = wave(u"known.wav"_s);
    import({known, wave(u"other.wav"_s)});
    until([&] { return playing() == u"known"_s; });
    give(wave(u"early.wav"_s));
    library->transport()->playItem(library->queue()->idAt(1), true);
    until(isDone);
    EXPECT_EQ(library->queue()->size(), 3U);
    EXPECT_EQ(playing(), u"other"_s);
    give(wave(u"late.wav"_s));
    give(known);
    until(isDone);
    EXPECT_EQ(playing(), u"known"_s) << "given last";
    give(wave(u"last.wav"_s));
    until(isDone);
    EXPECT_EQ(playing(), u"last"_s) << "nothing was chosen since";
}

TEST_F(ImportTest, WaitsForAllItemsOfADrop) {
    std::vector<std::thread> threads;
    std::vector<DroppedItem> items;
    for (const QVariant& answer :
         {QVariant(QUrl::fromLocalFile(wave(u"1.wav"_s))),
          QVariant(QUrl::fromLocalFile(wave(u"2.wav"_s)).toEncoded()), QVariant(7)})
        items.push_back([&threads, answer](std::function<void(const QVariant&)> tell) {
            threads.emplace_back([tell, answer] { tell(answer); });
        });
    EXPECT_TRUE(library->importing()->importDroppedProviders(items));
    for (std::thread& thread : threads)
        thread.join();
    until([&] { return library->queue()->size() == 2 && !library->importing()->isImporting(); });
    EXPECT_FALSE(library->importing()->importDroppedProviders({}));
}

TEST_F(ImportTest, AsksInTheDesktopsPanel) {
    library->importing()->chooseAndImportMusic(false, true);
    ASSERT_TRUE(environment.fileChooser.request);
    EXPECT_EQ(environment.fileChooser.request->title, u"Import Music Folder"_s);
    EXPECT_EQ(environment.fileChooser.request->prompt, u"Import Music Folder"_s);
    EXPECT_EQ(environment.fileChooser.request->message, u"Added files appear in the playlist"_s);
    EXPECT_FALSE(environment.fileChooser.request->files);
    EXPECT_TRUE(environment.fileChooser.request->directories);
    wave(u"1.wav"_s);
    environment.fileChooser.chosen({music.path()});
    until([&] { return !library->importing()->isImporting(); });
    EXPECT_EQ(queued(), QStringList{u"1"_s});
}

TEST_F(ImportTest, IsThereAgainAtTheNextStartWithNothingPlaying) {
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

TEST_F(ImportTest, ShowsWhatIsKnownBeforeItLooksAtTheFiles) {
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

// So many files are taken over in several portions.
TEST_F(ImportTest, ALostIndexCostsNothingButTime) {
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

// An index that older readers wrote serves at once. Its files are read again without a word.
TEST_F(ImportTest, RenewsTheRecordsOfOlderReaders) {
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

// Only its frames tell how long such a file is, and an import does not wait for their count.
TEST_F(ImportTest, CountsTheFramesOfAFileWithoutALengthAfterwards) {
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

TEST_F(ImportTest, QuittingInTheMiddleLosesNothingThatCame) {
    for (int i = 10; i < 50; ++i)
        wave(u"%1.wav"_s.arg(i));
    const auto last = std::make_shared<std::binary_semaphore>(0);
    environment.cloudFiles->setBeforeOpening([last](const QString& path) {
        if (path.endsWith(u"49.wav"_s))
            last->acquire();
    });
    library->importing()->importDroppedURLs({QUrl::fromLocalFile(music.path())});
    until([&] { return library->store()->size() > 0; });
    until([&] { return library->importing()->importProgress() > 0; });
    EXPECT_LT(library->importing()->importProgress(), 1);
    const std::size_t came = library->store()->size();
    library.reset(); // must not wait for the last file
    environment.cloudFiles->setBeforeOpening(nullptr);
    start();
    EXPECT_EQ(library->store()->size(), came);
    last->release();
}

TEST_F(ImportTest, StoppingKeepsWhatCame) {
    for (int i = 10; i < 50; ++i)
        wave(u"a/%1.wav"_s.arg(i));
    wave(u"b/next.wav"_s);
    const auto last = std::make_shared<std::binary_semaphore>(0);
    environment.cloudFiles->setBeforeOpening([last](const QString& path) {
        if (path.endsWith(u"49.wav"_s))
            last->acquire();
    });
    const QUrl folder = QUrl::fromLocalFile(music.filePath(u"a"_s));
    library->importing()->importDroppedURLs({folder});
    EXPECT_TRUE(library->importing()->isImporting()) << "shown while it searches";
    EXPECT_LT(library->importing()->importProgress(), 0);
    library->importing()->importDroppedURLs({folder}); // waits
    until([&] { return library->store()->size() > 0; });

    library->importing()->stopImport();
    EXPECT_FALSE(library->importing()->isImporting());
    const auto came = static_cast<qint64>(library->store()->size());
    EXPECT_EQ(library->status()->text(), L10n::importStopped(came, ResolvedLanguage::english));
    EXPECT_EQ(storedPaths().size(), came);

    // The file that hangs holds nobody up.
    import({music.filePath(u"b"_s)});
    EXPECT_EQ(library->store()->size(), static_cast<std::size_t>(came) + 1);
    library->importing()->stopImport();
    EXPECT_EQ(library->status()->text(), u"Added 1 to playlist"_s) << "there was nothing to stop";
    last->release();
}

TEST_F(ImportTest, AFileKnownUnderAnotherPathAddsNothing) {
    const QString real = wave(u"real/1.wav"_s);
    wave(u"real/2.wav"_s);
    const QString link = music.filePath(u"link"_s);
    ASSERT_TRUE(QFile::link(music.filePath(u"real"_s), link));
    import({real, link + u"/2.wav"_s});
    ASSERT_EQ(queued(), (QStringList{u"1"_s, u"2"_s}));

    import({link});
    EXPECT_EQ(library->status()->text(), u"Already in playlist"_s);
    EXPECT_EQ(current(), u"1"_s) << "known by its own path";
    import({music.filePath(u"real/2.wav"_s)});
    EXPECT_EQ(current(), u"2"_s) << "known by the link's";
    wave(u"other/1.wav"_s);
    import({music.path()});
    EXPECT_EQ(library->status()->text(), u"Added 1, skipped 2"_s);
    EXPECT_EQ(library->store()->size(), 3U);
}

// Whatever the queue is made of, and before the library is restored, too.
TEST_F(ImportTest, ALinkToTheLibraryStandsForIt) {
    const QStringList known{wave(u"m/Nina/Fern/1.wav"_s), wave(u"m/Nina/Moss/2.wav"_s)};
    const QString link = music.filePath(u"mlink"_s);
    ASSERT_TRUE(QFile::link(music.filePath(u"m"_s), link));
    import({music.filePath(u"m"_s)});
    library->queue()->assign({library->store()->track(known[0])}, u"Fern"_s);
    import({link});
    EXPECT_EQ(library->status()->text(), u"Added 1, skipped 1"_s);
    EXPECT_EQ(library->queue()->currentPath(), known[1]);
    EXPECT_EQ(library->store()->size(), 2U);
    EXPECT_EQ(storedPaths(), known);
    saveIndex();

    build();
    library->persistence()->hold();
    library->importedPaths()->restore();
    import({link + u"/Nina/Moss/2.wav"_s});
    EXPECT_EQ(library->queue()->currentPath(), known[1]);
    EXPECT_EQ(library->store()->track(known[1])->album, u"Moss"_s);
    EXPECT_EQ(storedPaths(), known);
}

TEST_F(ImportTest, NamesWhatIsNotThere) {
    const QString gone = music.filePath(u"gone.wav"_s);
    import({gone, music.filePath(u"away"_s)});
    EXPECT_EQ(library->status()->text(), u"Not found: gone.wav and 1 more"_s);
    EXPECT_TRUE(library->status()->isError());
    environment.clock.advance(std::chrono::seconds(5));
    const QString there = wave(u"1.wav"_s);
    for (const auto& result : {u"Added 1 to playlist"_s, u"Already in playlist"_s}) {
        import({gone, there});
        EXPECT_EQ(library->status()->text(), result + u" · Not found: gone.wav"_s);
        EXPECT_FALSE(library->status()->isError());
    }
    import({there});
    EXPECT_EQ(library->status()->text(), u"Already in playlist"_s);
}

TEST_F(ImportTest, SaysWhyNothingCameAndHidesNoFailure) {
    ASSERT_TRUE(QFile::link(u"nowhere"_s, music.filePath(u"gone.wav"_s)));
    import({music.path()});
    EXPECT_EQ(library->status()->text(), u"Nothing was added: the files are no longer there"_s);
    EXPECT_TRUE(library->status()->isError());

    library->importing()->importDroppedURLs({QUrl::fromLocalFile(wave(u"a/1.wav"_s))});
    library->status()->show(u"Can't play it"_s, true);
    until([&] { return !library->importing()->isImporting(); });
    EXPECT_EQ(library->status()->text(), u"Can't play it\nAdded 1 to playlist"_s);
    EXPECT_TRUE(library->status()->isError());
    environment.clock.advance(std::chrono::seconds(5));
    import({wave(u"b/2.wav"_s)});
    EXPECT_EQ(library->status()->text(), u"Added 1 to playlist"_s);
    EXPECT_FALSE(library->status()->isError());
}

TEST_F(ImportTest, ReadsAgainOnceWhatCouldNotBeRead) {
    const QString path = music.filePath(u"half.wav"_s);
    QFile half(path);
    ASSERT_TRUE(half.open(QIODevice::WriteOnly));
    half.write("RIFF");
    half.close();
    import({path});
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

TEST_F(ImportTest, HealingKeepsWhatIsTheTracksOwn) {
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

TEST_F(ImportTest, BookmarksAreKeptWhileTheirPathsExist) {
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
