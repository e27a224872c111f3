// SPDX-License-Identifier: MIT
// What a change of the preferences costs and how that grows with the library, and what loading
// everything costs. Files are made in the folder that TMPDIR names: it decides what a sync costs.
#include "library/user/settings_keys.h"
#include "library/user/track_user_data.h"
#include "platform/preferences/preferences_database.h"
#include "platform/preferences/sqlite_preferences.h"
#include "platform/system_clock.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <array>
#include <fcntl.h>
#include <map>
#include <unistd.h>

namespace halvane {
namespace {

using namespace Qt::StringLiterals;

QString trackPath(qint64 i) {
    return u"/home/someone/Music/Artist %1/Album of Some Length %2/%3 - A Title of Usual Length.flac"_s
        .arg(i / 120)
        .arg(i / 12)
        .arg(i % 12, 2, 10, QChar(u'0'));
}

// Preferences of a library in which every track has been rated, played and measured.
struct Filled {
    explicit Filled(qint64 tracks) {
        IntegerMap integers;
        NumbersMap loudness;
        for (qint64 i = 0; i < tracks; ++i) {
            integers.insert(trackPath(i), 1 + i % 5);
            loudness.insert(trackPath(i), {-18.0 - static_cast<double>(i % 1000) / 997,
                                           -0.1 * static_cast<double>(i % 70)});
            paths.append(trackPath(i));
        }
        const std::array changes{
            PreferenceChange{SettingsKey::trackRatings, PreferenceChange::Set{integers}},
            PreferenceChange{SettingsKey::playCounts, PreferenceChange::Set{integers}},
            PreferenceChange{SettingsKey::trackLoudness, PreferenceChange::Set{loudness}},
            PreferenceChange{SettingsKey::importedAudioPaths, PreferenceChange::Set{paths}},
        };
        PreferencesDatabase(path, 0).apply(changes);
    }

    SqlitePreferences& preferences() {
        if (!open)
            open = std::make_unique<SqlitePreferences>(path, clock);
        return *open;
    }
    // As the program does when it ends.
    void close() { open.reset(); }

    QTemporaryDir folder;
    QString path = folder.filePath(u"preferences.sqlite"_s);
    SystemClock clock;
    std::unique_ptr<SqlitePreferences> open;
    QStringList paths;
};

Filled& filled(qint64 tracks) {
    static std::map<qint64, std::unique_ptr<Filled>> all;
    auto& one = all[tracks];
    if (!one)
        one = std::make_unique<Filled>(tracks);
    return *one;
}

// The floor: what the disk takes to append a page to a file and sync it.
void syncOnePage(benchmark::State& state) {
    const QTemporaryDir folder;
    const QByteArray name = QFile::encodeName(folder.filePath(u"file"_s));
    const int file = ::open(name.constData(), O_CREAT | O_WRONLY, 0600);
    const QByteArray page(4096, 'x');
    for (auto _ : state)
        if (::write(file, page.constData(), 4096) != 4096 || ::fdatasync(file) != 0)
            state.SkipWithError("the disk refuses");
    ::close(file);
}
BENCHMARK(syncOnePage)->UseRealTime()->Unit(benchmark::kMicrosecond);

void setOneNumber(benchmark::State& state) {
    Filled& library = filled(10);
    double volume = 0;
    for (auto _ : state)
        library.preferences().setNumber(SettingsKey::volume, volume += 1e-6);
}
BENCHMARK(setOneNumber)->UseRealTime()->Unit(benchmark::kMicrosecond);

void setOneNumberToWhatItIs(benchmark::State& state) {
    Filled& library = filled(10);
    library.preferences().setNumber(SettingsKey::volume, 0.5);
    for (auto _ : state)
        library.preferences().setNumber(SettingsKey::volume, 0.5);
}
BENCHMARK(setOneNumberToWhatItIs)->UseRealTime()->Unit(benchmark::kMicrosecond);

void countOnePlay(benchmark::State& state) {
    Filled& library = filled(state.range(0));
    TrackUserData data(library.preferences());
    data.restore();
    if (data.playCounts().size() < state.range(0)) // which reads them
        state.SkipWithError("they are not all there");
    qint64 track = 0;
    for (auto _ : state)
        data.countPlay(trackPath((track += 7919) % state.range(0)));
}
BENCHMARK(countOnePlay)
    ->Arg(10)
    ->Arg(10'000)
    ->Arg(250'000)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);

void appendOnePath(benchmark::State& state) {
    Filled& library = filled(state.range(0));
    qint64 track = 1'000'000;
    for (auto _ : state)
        library.preferences().insertStrings(SettingsKey::importedAudioPaths, {trackPath(++track)});
}
BENCHMARK(appendOnePath)->Arg(10)->Arg(250'000)->UseRealTime()->Unit(benchmark::kMicrosecond);

// The whole list with one path more, as it is written for small libraries.
void setAllPathsWithOneMore(benchmark::State& state) {
    Filled& library = filled(state.range(0));
    qint64 track = 2'000'000;
    for (auto _ : state) {
        library.paths.insert(library.paths.size() / 2, trackPath(++track));
        library.preferences().setStrings(SettingsKey::importedAudioPaths, library.paths);
    }
}
BENCHMARK(setAllPathsWithOneMore)->Arg(256)->UseRealTime()->Unit(benchmark::kMicrosecond);

struct Loaded {
    IntegerMap ratings;
    IntegerMap counts;
    NumbersMap loudness;
};

// A program start: the file is opened, and ratings, counts and loudness are read.
void loadSettings(benchmark::State& state) {
    Filled& library = filled(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        library.close();
        auto kept = std::make_unique<Loaded>();
        state.ResumeTiming();
        Preferences& preferences = library.preferences();
        kept->ratings = *preferences.integerMap(SettingsKey::trackRatings);
        kept->counts = *preferences.integerMap(SettingsKey::playCounts);
        kept->loudness = *preferences.numbersMap(SettingsKey::trackLoudness);
        state.PauseTiming();
        kept.reset(); // a program that starts forgets nothing
        state.ResumeTiming();
    }
}
BENCHMARK(loadSettings)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Arg(250'000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace halvane

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
