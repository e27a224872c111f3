// SPDX-License-Identifier: MIT
// Importing, on real files and the whole controller.
#include "library/running_library.h"
#include "library/user/settings_keys.h"
#include "metadata/file_dates.h"
#include "presentation/l10n.h"

#include <gtest/gtest.h>

#include <semaphore>
#include <thread>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class ImportTest : public testing::Test, public RunningLibrary {
  protected:
    void SetUp() override { start(); }

    QStringList storedPaths() {
        return *environment.preferences.strings(SettingsKey::importedAudioPaths);
    }
};

// A file may be opened with the program before the library is restored.
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
    for (const TrackPtr& track : library->store()->rows())
        EXPECT_EQ(track->addedDate, environment.clock.wallTime() - referenceDateOffset);
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

// So many files are taken over in several portions.
// An index that older readers wrote serves at once. Its files are read again without a word.
// Only its frames tell how long such a file is, and an import does not wait for their count.
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

} // namespace
} // namespace halvane::test
