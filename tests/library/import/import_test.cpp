// SPDX-License-Identifier: MIT
// Importing, restoring and healing, on real files and the whole controller.
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "library/tracks.h"
#include "library/user/settings_keys.h"
#include "platform/log.h"
#include "support/audio_material.h"
#include "support/fake_environment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <semaphore>
#include <thread>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class ImportTest : public testing::Test {
  protected:
    void SetUp() override { start(); }

    // Starts the program and waits until it has restored the library.
    void start() {
        library = std::make_unique<LibraryViewModel>(environment);
        library->start();
        until([&] { return !library->restoration()->isRunning(); });
    }
    static void until(const std::function<bool()>& reached) {
        while (!reached())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    void import(const QStringList& paths) {
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls.append(QUrl::fromLocalFile(path));
        library->importing()->importDroppedURLs(urls);
        until([&] { return !library->importing()->isImporting(); });
    }
    void saved() {
        bool isSaved = false;
        QObject::connect(library->persistence(), &CachePersistence::saved, library.get(),
                         [&] { isSaved = true; });
        library->persistence()->persistMetadataCache();
        until([&] { return isSaved; });
    }
    QString wave(const QString& name) {
        const QString path = music.filePath(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        writeWave(sine(440, 0.5, 8000, 8000, 1), path);
        return path;
    }
    [[nodiscard]] QStringList queued() const {
        QStringList names;
        for (std::size_t row = 0; row < library->queue()->size(); ++row)
            names.append(library->queue()->record(row).title);
        return names;
    }
    [[nodiscard]] QString current() const {
        return library->queue()->currentItem().value_or(QueueItem()).title;
    }
    QStringList storedPaths() {
        return *environment.preferences.strings(SettingsKey::importedAudioPaths);
    }

    FakeEnvironment environment;
    QTemporaryDir music;
    std::unique_ptr<LibraryViewModel> library;
};

// A file may be opened with the program before the library is restored.
TEST_F(ImportTest, WhatIsOpenedDuringTheStartTakesNothingFromTheLibrary) {
    const QStringList known{wave(u"a.wav"_s), wave(u"b.wav"_s)};
    import(known);
    saved();
    QFile::remove(known[1]); // known only by its record
    const QString opened = wave(u"c.wav"_s);

    library = std::make_unique<LibraryViewModel>(environment);
    // The beginning of the restoration, without its worker.
    library->persistence()->hold();
    library->importedPaths()->restore();
    import({opened});
    EXPECT_EQ(storedPaths(), (QStringList{known[0], known[1], opened}));
    EXPECT_EQ(library->cache()->loadIndex().size(), 2);

    bool isSaved = false;
    QObject::connect(library->persistence(), &CachePersistence::saved, library.get(),
                     [&] { isSaved = true; });
    library->restoration()->restoreImportedAudio();
    until([&] { return isSaved; });
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
    saved();
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
    saved();
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

    library = std::make_unique<LibraryViewModel>(environment);
    std::optional<Track> shown;
    QObject::connect(
        library->store(), &LibraryStore::tracksChanged, library.get(),
        [&] {
            shown = *library->store()->track(changed);
            EXPECT_EQ(library->store()->track(same)->size(), QString());
            EXPECT_FALSE(library->store()->track(late));
        },
        Qt::SingleShotConnection);
    bool isSaved = false;
    QObject::connect(library->persistence(), &CachePersistence::saved, library.get(),
                     [&] { isSaved = true; });
    library->restoration()->restoreImportedAudio();
    until([&] { return isSaved; });
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
    saved();
    ASSERT_TRUE(QFile::remove(library->cache()->cacheDirectory() + u"/library-cache.json"_s));
    start();
    EXPECT_EQ(queued(), titles);
    EXPECT_EQ(library->store()->size(), std::size_t{files});
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
    EXPECT_LT(library->importing()->importProgress(), 0) << "shown from the first second on";
    environment.clock.advance(std::chrono::milliseconds(1100));
    until([&] { return library->importing()->importProgress() > 0; });
    EXPECT_LT(library->importing()->importProgress(), 1);
    const std::size_t came = library->store()->size();
    library.reset(); // must not wait for the last file
    environment.cloudFiles->setBeforeOpening(nullptr);
    start();
    EXPECT_EQ(library->store()->size(), came);
    last->release();
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
