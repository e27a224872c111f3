// SPDX-License-Identifier: MIT
// Whether Sound Check's scan is ever heard: a track plays through a real sound server, alone, with
// two more processes that want the processor, and with the scan as well; what the sink played is
// compared, sample by sample, with the file. A break is a place where it does not go on as the file
// does. The argument is how many seconds each part lasts (20 by default).
#include "audio/graph/playback_engine.h"
#include "library/import/fake_files.h"
#include "library/sound/sound_check.h"
#include "library/tracks.h"
#include "platform/cloud/cloud_files.h"
#include "platform/sound/pulse_output.h"
#include "platform/sound/pulse_server.h"
#include "platform/system_clock.h"
#include "support/audio_material.h"
#include "support/memory_preferences.h"
#include "support/private_pulse.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int rate = 44'100;

class LocalFiles final : public CloudFiles {
  public:
    FilePresence presence(const QString&) const override { return FilePresence::here; }
    void startDownloading(const QStringList&) override {}
    Storage storage(const QString&) const override { return Storage::disk; }
};

/// A library of this many files that are all the same sound.
QStringList linksTo(const QString& file, const QString& folder, int count) {
    QStringList links;
    for (int i = 0; i < count; ++i) {
        links.append(u"%1/%2.flac"_s.arg(folder).arg(i));
        QFile::link(file, links.last());
    }
    return links;
}

struct Comparison {
    std::size_t frames = 0; ///< found to be the file's
    int breaks = 0;         ///< places where what was played does not go on as the file does
};

/// Follows a file through a recording that begins at any place before or in it.
Comparison follow(const std::vector<float>& recording, const std::vector<float>& file) {
    constexpr std::size_t probe = 2 * 32;
    Comparison result;
    std::size_t at = 0;
    while (at < recording.size() && recording[at] == 0)
        ++at;
    at += at % 2 + 2 * rate / 2; // beyond the fade at the start
    while (at + probe < recording.size()) {
        const auto found =
            std::search(file.begin(), file.end(), recording.begin() + std::ptrdiff_t(at),
                        recording.begin() + std::ptrdiff_t(at + probe));
        if (found == file.end()) {
            at += probe;
            continue;
        }
        const auto [recorded, original] = std::mismatch(recording.begin() + std::ptrdiff_t(at),
                                                        recording.end(), found, file.end());
        const auto same = std::size_t(original - found);
        result.frames += same / 2;
        at += same + same % 2;
        result.breaks += recorded != recording.end() && original != file.end() ? 1 : 0;
    }
    return result;
}

struct Burden {
    const char* name;
    int hogs;
    bool scans;
};

int play(const Burden& burden, int seconds, const QString& path,
         const std::vector<float>& samples) {
    PrivatePulse pulse;
    SystemClock clock;
    PulseServer server(clock, pulse.address());
    if (!waitFor([&] { return server.isReady(); }))
        return 1;
    PulseOutput output(server, clock);
    AudioPlaybackEngine engine(output, clock);
    engine.setVolume(1);
    const auto recording = pulse.record(u"null44100"_s, rate);

    const QTemporaryDir folder;
    const QStringList library = linksTo(path, folder.path(), 5'000);
    MemoryPreferences preferences;
    const auto cloud = std::make_shared<LocalFiles>();
    LibraryStore store;
    std::vector<Track> tracks;
    for (const QString& file : library)
        tracks.push_back(trackAt(file));
    store.append(rowsOf(std::move(tracks)));
    const FakeFiles files;
    SoundCheck check(preferences, store, files, cloud);

    engine.open(path);
    if (!waitFor([&] { return engine.hasFile(); }) || !engine.scheduleSegment(0, true))
        return 1;
    if (burden.scans)
        check.setSoundCheckEnabled(true);
    std::vector<std::unique_ptr<ChildProcess>> hogs;
    for (int i = 0; i < burden.hogs; ++i)
        hogs.push_back(std::make_unique<ChildProcess>(
            u"sh"_s, QStringList{u"-c"_s, u"while :; do :; done"_s},
            QProcessEnvironment::systemEnvironment(), folder.filePath(u"hog"_s)));
    for (int i = 0; i < seconds; ++i) // the wait has a limit of its own
        if (!recording->waitForFrames(rate))
            return 1;

    const Comparison heard = follow(recording->samples(), samples);
    std::printf("%-24s %6.1f s compared, %3d breaks, %4d files measured meanwhile\n", burden.name,
                double(heard.frames) / rate, heard.breaks, int(check.trackLoudness().size()));
    return 0;
}

} // namespace
} // namespace halvane::test

int main(int argc, char** argv) {
    using namespace halvane::test;
    const QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(std::atoi(argv[1]), 2) : 20;
    const Pcm track = music(std::size_t(rate) * std::size_t(seconds + 30));
    const QString path =
        encoded(track, QStringLiteral("flac"), QStringLiteral("flac -s -o \"$OUT\" \"$IN\""));
    const auto samples = track.floats();
    int failures = 0;
    for (const Burden& burden :
         {Burden{"alone", 0, false}, Burden{"scan", 0, true}, Burden{"two hogs", 2, false},
          Burden{"two hogs and the scan", 2, true}})
        failures += play(burden, seconds, path, samples);
    return failures;
}
