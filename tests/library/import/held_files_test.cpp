// SPDX-License-Identifier: MIT
// The whole controller with the desktop's own detection of cloud files and files whose opening
// blocks.
#include "library/running_library.h"
#include "platform/cloud/desktop_cloud_files.h"
#include "support/audio_material.h"
#include "support/child_process.h"
#include "support/held_file.h"

#include <QDateTime>
#include <QFile>

#include <gtest/gtest.h>

#include <cerrno>
#include <sys/xattr.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

constexpr char placeholderMark[] = "user.nextcloud.hydrate_exec";

class HeldFilesTest : public testing::Test, public RunningLibrary {
  protected:
    void SetUp() override {
        const QString path = write(u"probe"_s, "x");
        if (!HeldFile(path).isHeld())
            GTEST_SKIP() << "the temporary folder's file system gives no leases";
        QFile::remove(path);
        start();
    }

    // Starts the program, and waits until it has restored the library and looked at the files.
    void start() {
        library = std::make_unique<LibraryViewModel>(environment.with(cloud));
        QObject::connect(library->healing(), &MetadataHealing::finished, library.get(),
                         [this] { ++healings; });
        const int before = healings;
        library->start();
        until([&] {
            return !library->restoration()->isRunning() &&
                   (library->store()->size() == 0 || healings > before);
        });
    }
    // Imports the folder, and waits until the look at the files that follows has ended.
    void importAll() {
        const int before = healings;
        library->start();
        library->importing()->importDroppedURLs({QUrl::fromLocalFile(music.path())});
        until([&] { return !library->importing()->isImporting() && healings > before; });
        saveIndex();
    }

    QString write(const QString& name, const QByteArray& bytes) {
        QFile file(music.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    QString wave(const QString& name) {
        const QString path = music.filePath(name);
        writeWave(sine(440, 0.5, 8000, 8000, 1), path);
        return path;
    }
    // Makes a placeholder of a file as a sync client does, with the server's date.
    QString mark(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        EXPECT_TRUE(file.setFileTime(QDateTime::currentDateTime().addDays(-1),
                                     QFileDevice::FileModificationTime));
        EXPECT_EQ(::setxattr(path.toUtf8().constData(), placeholderMark, "x", 1, 0), 0);
        return path;
    }
    QString replace(const QString& path, const QString& placeholder) {
        QFile::remove(path);
        return write(placeholder, " ");
    }
    [[nodiscard]] bool isRead(const QString& path) const {
        const TrackPtr track = library->store()->track(path);
        return track && track->durationSeconds;
    }
    [[nodiscard]] TrackAvailability state(const QString& path) const {
        return library->availability()->state(path);
    }
    void play(const QString& path) {
        library->transport()->playItem(library->queue()->idAt(*library->queue()->rowOfPath(path)),
                                       true);
    }

    std::shared_ptr<DesktopCloudFiles> cloud =
        std::make_shared<DesktopCloudFiles>(environment.folder.path());
    int healings = 0;
};

TEST_F(HeldFilesTest, TryingIsNoticedAndBlocks) {
    const QString path = wave(u"a.wav"_s);
    auto held = std::make_unique<HeldFile>(path);
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_FALSE(held->wasTried());
    std::atomic<bool> isOpen = false;
    std::thread opener([&] { isOpen = QFile(path).open(QIODevice::ReadOnly); });
    while (!held->wasTried())
        std::this_thread::yield();
    EXPECT_FALSE(isOpen);
    held.reset();
    opener.join();
    EXPECT_TRUE(isOpen);
}

// Opening a placeholder would start a download that nobody asked for, and wait for it.
TEST_F(HeldFilesTest, PlaceholdersAreNeverOpened) {
    const QString here = wave(u"here.wav"_s);
    const QString next = wave(u"here2.wav"_s);
    const QString strange = mark(wave(u"strange.wav"_s));
    struct Known {
        QString path;
        std::function<QString(const QString& path)> evict; // gives the placeholder's path
    };
    const Known known[] = {
        {wave(u"dot-name.wav"_s),
         [this](const QString& path) { return replace(path, u".dot-name.wav.icloud"_s); }},
        {wave(u"suffix.wav"_s),
         [this](const QString& path) { return replace(path, u"suffix.wav.nextcloud"_s); }},
        {wave(u"other suffix.wav"_s),
         [this](const QString& path) { return replace(path, u"other suffix.wav.owncloud"_s); }},
        {wave(u"marked.wav"_s), [this](const QString& path) { return mark(path); }},
    };
    std::vector<std::pair<QString, std::unique_ptr<HeldFile>>> held;
    const auto hold = [&](const QString& path) {
        held.emplace_back(path, nullptr);
        // A thread that has read it, perhaps for an ended library, may still have it open.
        ASSERT_TRUE(waitFor([&] {
            held.back().second.reset();
            held.back().second = std::make_unique<HeldFile>(path);
            return held.back().second->isHeld();
        })) << qPrintable(path);
    };

    hold(strange);
    importAll();
    EXPECT_EQ(library->store()->size(), 7U);
    EXPECT_EQ(state(strange), TrackAvailability::inCloud);
    EXPECT_FALSE(isRead(strange));
    EXPECT_EQ(library->store()->track(strange)->title, u"strange"_s);
    for (const Known& file : known)
        EXPECT_TRUE(isRead(file.path)) << qPrintable(file.path);
    library.reset();

    for (const Known& file : known)
        hold(file.evict(file.path));
    start();
    EXPECT_EQ(library->store()->size(), 7U);
    EXPECT_EQ(library->availability()->cloudPendingPaths().size(), 5);
    EXPECT_TRUE(library->availability()->unavailablePaths().isEmpty());
    EXPECT_EQ(state(here), TrackAvailability::available);
    for (const Known& file : known) {
        EXPECT_EQ(state(file.path), TrackAvailability::inCloud) << qPrintable(file.path);
        EXPECT_TRUE(isRead(file.path)) << "what is known of it stays: " << qPrintable(file.path);
        play(file.path);
        EXPECT_FALSE(library->transport()->isPlaying());
        EXPECT_TRUE(library->status()->text().startsWith(u"Downloading"_s));
    }
    library->soundCheck()->setSoundCheckEnabled(true);
    until([&] { return library->soundCheck()->trackLoudness().contains(next); });

    // The gapless successor goes to the cloud after the last look.
    hold(mark(next));
    play(here);
    EXPECT_TRUE(library->transport()->isPlaying());
    until([&] { return state(next) == TrackAvailability::inCloud; });
    library.reset();
    const auto expectNoneTried = [&held] {
        for (const auto& [path, file] : held)
            EXPECT_FALSE(file && file->wasTried()) << qPrintable(path);
    };
    expectNoneTried();

    // The download has ended.
    ASSERT_EQ(::removexattr(strange.toUtf8().constData(), placeholderMark), 0);
    held.front().second.reset();
    start();
    EXPECT_TRUE(isRead(strange));
    EXPECT_EQ(state(strange), TrackAvailability::available);
    expectNoneTried(); // nor did a worker that was left behind
}

// Such as on a drive that hangs, or under another program's lock.
TEST_F(HeldFilesTest, AFileThatDoesNotOpenHoldsUpNoOther) {
    constexpr std::size_t files = 40;
    for (std::size_t i = 10; i < 10 + files; ++i)
        wave(u"%1.wav"_s.arg(i));
    const QString stuck = music.filePath(u"30.wav"_s);
    auto held = std::make_unique<HeldFile>(stuck);
    const auto readFiles = [&] {
        return std::count_if(
            library->store()->rows().begin(), library->store()->rows().end(),
            [](const TrackPtr& track) { return track->durationSeconds.has_value(); });
    };

    importAll();
    EXPECT_TRUE(held->wasTried());
    EXPECT_EQ(library->store()->size(), files);
    EXPECT_EQ(readFiles(), files - 1);
    EXPECT_EQ(library->status()->text(), u"Added 40 to playlist"_s);
    EXPECT_TRUE(library->transport()->isPlaying());
    library.reset();
    start();
    EXPECT_EQ(readFiles(), files - 1);
    library.reset();
    held.reset();
    start();
    EXPECT_EQ(readFiles(), files);
}

} // namespace
} // namespace halvane::test
