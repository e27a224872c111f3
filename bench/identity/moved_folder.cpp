// SPDX-License-Identifier: MIT
// moved_folder [FILES]: a folder of files of which everything is said, moved while the program was
// closed and imported again. Prints how long each step takes, the longest that the main thread was
// busy, and how many tracks have their rows and what was said of them.
#include "../support/event_loop.h"
#include "../support/real_environment.h"
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "support/audio_material.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>

using namespace halvane;
using bench::until;
using namespace Qt::StringLiterals;

namespace {

/// Measures the longest that the main thread was busy with one event.
class WatchedApplication final : public QCoreApplication {
  public:
    using QCoreApplication::QCoreApplication;
    qint64 longest = 0; ///< nanoseconds

    bool notify(QObject* receiver, QEvent* event) override {
        QElapsedTimer timer;
        timer.start();
        const bool result = QCoreApplication::notify(receiver, event);
        longest = std::max(longest, timer.nsecsElapsed());
        return result;
    }
};

WatchedApplication* app = nullptr;

template<typename Step>
void timed(const char* name, const Step& step) {
    app->longest = 0;
    QElapsedTimer timer;
    timer.start();
    step();
    std::printf("%-32s %7lld ms, longest event %5.1f ms\n", name,
                static_cast<long long>(timer.elapsed()), static_cast<double>(app->longest) * 1e-6);
    std::fflush(stdout);
}

void import(LibraryViewModel& library, const QString& folder) {
    QMetaObject::invokeMethod(
        app,
        [&library, folder] {
            library.importing()->importDroppedURLs({QUrl::fromLocalFile(folder)});
            library.importing()->giveWay();
        },
        Qt::QueuedConnection);
    until([&] { return library.importing()->isImporting(); });
    until([&] { return !library.importing()->isImporting(); });
}

void identified(LibraryViewModel& library) {
    const auto isDone = [&] {
        const TrackRows& rows = library.store()->rows();
        return std::all_of(rows.begin(), rows.end(),
                           [](const TrackPtr& track) { return track->identity.isKnown(); });
    };
    until(isDone);
    bool isSurveyed = false;
    QObject::connect(
        library.soundMemory(), &SoundMemory::surveyed, &library, [&] { isSurveyed = true; },
        Qt::SingleShotConnection);
    library.soundMemory()->survey();
    until([&] { return isSurveyed; });
}

} // namespace

int main(int argc, char** argv) {
    WatchedApplication application(argc, argv);
    app = &application;
    const QStringList arguments = QCoreApplication::arguments();
    const int files = arguments.size() > 1 ? arguments[1].toInt() : 10'000;
    const QTemporaryDir music;
    QDir(music.path()).mkpath(u"old"_s);
    for (int i = 0; i < files; ++i) {
        test::Pcm sound = test::sine(440, 0.1, 2000, 8000, 1);
        sound.samples[0] = i % 32'768;
        sound.samples[1] = i / 32'768;
        test::writeWave(sound, music.filePath(u"old/%1.wav"_s.arg(i)));
    }
    bench::RealEnvironment environment;
    {
        LibraryViewModel library(environment);
        library.start();
        timed("import", [&] { import(library, music.filePath(u"old"_s)); });
        timed("identified", [&] { identified(library); });
        QStringList paths;
        {
            const Preferences::Together together(environment.preferences());
            for (const TrackPtr& track : library.store()->rows()) {
                paths.append(track->path());
                library.userData()->setRating(4, paths.last());
                library.userData()->toggleLoved(paths.last());
            }
        }
        library.playlists()->addPlaylist(u"All"_s, paths);
        bool isSaved = false;
        QObject::connect(library.persistence(), &CachePersistence::saved, &library,
                         [&] { isSaved = true; });
        library.persistence()->persistMetadataCache();
        until([&] { return isSaved; });
    }
    QDir(music.path()).rename(u"old"_s, u"new"_s);
    environment.reopenPreferences();
    LibraryViewModel library(environment);
    timed("start, with all files missing", [&] {
        bool isFinished = false;
        QObject::connect(library.restoration(), &Restoration::finished, &library,
                         [&] { isFinished = true; });
        library.start();
        until([&] { return isFinished; });
    });
    timed("import of the moved folder", [&] { import(library, music.filePath(u"new"_s)); });
    timed("identified, everything said again", [&] { identified(library); });
    timed("playlist mended", [&] {
        const QString before = music.filePath(u"old"_s);
        until([&] {
            return !library.playlists()->all().front().trackPaths.back().startsWith(before);
        });
    });
    timed("rows kept", [&] {
        until([&] { return library.store()->size() == static_cast<std::size_t>(files); });
    });
    std::size_t right = 0;
    for (const TrackPtr& track : library.store()->rows())
        right += library.userData()->said(track->path()) == Said{true, 4, 0} ? 1 : 0;
    std::printf("%zu of %zu tracks have what was said of them\n", right, library.store()->size());
    return 0;
}
