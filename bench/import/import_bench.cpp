// SPDX-License-Identifier: MIT
// Importing a library of real files, beside a bare TagLib loop over the same files, and restoring
// libraries of three sizes. HALVANE_BENCH_LIBRARY names the folder that bench/corpus made.
#include "../support/event_loop.h"
#include "../support/real_environment.h"
#include "../support/remembered_library.h"
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "library/user/settings_keys.h"
#include "platform/preferences/preferences_database.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>

#include <benchmark/benchmark.h>
#include <taglib/fileref.h>
#include <taglib/tpropertymap.h>

#include <array>
#include <malloc.h>
#include <thread>
#include <unistd.h>

using namespace halvane;
using bench::until;
using namespace Qt::StringLiterals;

namespace {

double milliseconds(clockid_t clock) {
    timespec time;
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// Measures the longest that the main thread was busy with one event. Its own processor time, so
/// that what else runs on the machine does not count.
class WatchedApplication final : public QCoreApplication {
  public:
    using QCoreApplication::QCoreApplication;
    double longest = 0; ///< milliseconds

    bool notify(QObject* receiver, QEvent* event) override {
        const double start = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        const bool result = QCoreApplication::notify(receiver, event);
        longest = std::max(longest, milliseconds(CLOCK_THREAD_CPUTIME_ID) - start);
        return result;
    }
};

WatchedApplication* app = nullptr;

double residentMegabytes() {
    ::malloc_trim(0);
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ')[1].toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE)) /
           1e6;
}

/// In an event of its own, as a click comes, so that the main thread is watched meanwhile.
template<typename Call>
void inAnEvent(Call call) {
    QMetaObject::invokeMethod(app, std::move(call), Qt::QueuedConnection);
}

QString musicFolder() {
    return qEnvironmentVariable("HALVANE_BENCH_LIBRARY");
}

void bareTagLib(benchmark::State& state) {
    std::size_t files = 0;
    for (auto _ : state) {
        const auto urls = TrackMetadataLoader::audioFileURLs({musicFolder()});
        std::atomic<std::size_t> next = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&] {
                for (std::size_t k = next++; k < urls.size(); k = next++) {
                    const TagLib::FileRef file(urls[k].path().toUtf8().constData());
                    if (!file.isNull())
                        benchmark::DoNotOptimize(file.file()->properties());
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        files = urls.size();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(files));
}

/// From the drop until rows, albums and search are published.
void importLibrary(benchmark::State& state) {
    std::size_t tracks = 0;
    app->longest = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto environment = std::make_unique<bench::RealEnvironment>();
        auto library = std::make_unique<LibraryViewModel>(*environment);
        bool isDropped = false;
        state.ResumeTiming();
        inAnEvent([&] {
            library->importing()->importDroppedURLs({QUrl::fromLocalFile(musicFolder())});
            isDropped = true;
        });
        until([&] {
            return isDropped && !library->importing()->isImporting() &&
                   library->catalog()->isCurrent();
        });
        tracks = library->store()->size();
        state.PauseTiming();
        library.reset();
        environment.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(tracks));
    state.counters["longest_ms"] = app->longest;
}

/// A library of that many files, whose records are saved.
struct Remembered {
    bench::RealEnvironment environment;
    QTemporaryDir folder;
    QStringList paths;

    explicit Remembered(int size)
        : paths(bench::rememberLibrary(size, folder.path(), environment.dataFolder(),
                                       environment.preferences())) {}
};

/// Restores a library and waits until all that follows has ended, too.
void restoreWhole(LibraryViewModel& library) {
    bool isCalm = false;
    QObject::connect(
        library.availability(), &Availability::refreshed, &library, [&] { isCalm = true; },
        Qt::SingleShotConnection);
    inAnEvent([&] { library.restoration()->restoreImportedAudio(); });
    until([&] {
        return isCalm && library.catalog()->isCurrent() && library.duplicates()->areCurrent();
    });
}

/// From the opening of the preferences until all albums are published; how long it takes until the
/// dates of all files were compared with their records, too, is given beside it.
void restoreLibrary(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    Remembered remembered(static_cast<int>(size));
    double resident = 0;
    double checked = 0;
    app->longest = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const double before = residentMegabytes();
        state.ResumeTiming();
        const double start = milliseconds(CLOCK_MONOTONIC);
        remembered.environment.reopenPreferences();
        auto library = std::make_unique<LibraryViewModel>(remembered.environment);
        inAnEvent([&] { library->restoration()->restoreImportedAudio(); });
        until([&] { return library->catalog()->published()->rows->size() == size; });
        state.PauseTiming();
        until([&] { return !library->restoration()->isRunning(); });
        checked += milliseconds(CLOCK_MONOTONIC) - start;
        resident = residentMegabytes() - before;
        library.reset();
        state.ResumeTiming();
    }
    state.counters["checked_ms"] = checked / static_cast<double>(state.iterations());
    state.counters["resident_MB"] = resident;
    state.counters["longest_ms"] = app->longest;
}

void lookAtTheDisk(benchmark::State& state) {
    const auto size = static_cast<int>(state.range(0));
    Remembered remembered(size);
    LibraryViewModel library(remembered.environment);
    int looks = 0;
    QObject::connect(library.availability(), &Availability::refreshed, [&] { ++looks; });
    library.restoration()->restoreImportedAudio(); // ends with a look
    until([&] { return looks > 0 && library.catalog()->isCurrent(); });
    app->longest = 0;
    for (auto _ : state) {
        const int before = looks;
        inAnEvent([&] { library.availability()->refreshAvailability(); });
        until([&] { return looks > before; });
    }
    state.counters["longest_ms"] = app->longest;
}

/// A tenth of a library in which every track was rated, played and loved leaves it, until the
/// preferences' file has lost it, too. How long it takes until the removal is on the disk and rows,
/// queue and albums are published without it is given beside it.
void removeATenth(benchmark::State& state) {
    const auto size = static_cast<int>(state.range(0));
    Remembered remembered(size);
    for (auto _ : state) { // once: what is gone is gone
        state.PauseTiming();
        IntegerMap numbers;
        for (const QString& path : std::as_const(remembered.paths))
            numbers.insert(path, 3);
        const std::array changes{
            PreferenceChange{SettingsKey::trackRatings, PreferenceChange::Set{numbers}},
            PreferenceChange{SettingsKey::playCounts, PreferenceChange::Set{numbers}},
            PreferenceChange{SettingsKey::lovedPaths, PreferenceChange::Set{remembered.paths}},
        };
        PreferencesDatabase(remembered.environment.preferencesFile(), 1000).apply(changes);
        remembered.environment.reopenPreferences();
        auto owned = std::make_unique<LibraryViewModel>(remembered.environment);
        LibraryViewModel& library = *owned;
        library.userData()->restore();
        bool isCalm = false;
        QObject::connect(library.availability(), &Availability::refreshed, [&] { isCalm = true; });
        library.restoration()->restoreImportedAudio(); // ends with a look at the disk
        until([&] { return isCalm && library.catalog()->isCurrent(); });
        isCalm = false;
        library.duplicates()->find([&](const std::vector<TrackRows>&) { isCalm = true; });
        until([&] { return isCalm; });
        QStringList gone;
        for (qsizetype i = 0; i < remembered.paths.size(); i += 10)
            gone.append(remembered.paths[i]);
        QCoreApplication::processEvents();
        app->longest = 0;
        state.ResumeTiming();
        const double start = milliseconds(CLOCK_MONOTONIC);
        inAnEvent([&] { library.tidying()->removeTracks(gone); });
        until([&] {
            return library.store()->size() == static_cast<std::size_t>(size - gone.size()) &&
                   library.catalog()->isCurrent();
        });
        state.PauseTiming();
        state.counters["published_ms"] = milliseconds(CLOCK_MONOTONIC) - start;
        state.counters["longest_ms"] = app->longest;
        state.ResumeTiming();
        // Nothing is left to be done behind it.
        remembered.environment.preferences().waitForWorker();
        state.PauseTiming();
        owned.reset(); // the end of the program is not part of it
        state.ResumeTiming();
    }
}

void findDuplicates(benchmark::State& state) {
    const auto size = static_cast<int>(state.range(0));
    Remembered remembered(size);
    LibraryViewModel library(remembered.environment);
    restoreWhole(library);
    app->longest = 0;
    for (auto _ : state) {
        bool isFound = false;
        inAnEvent([&] {
            library.duplicates()->find([&](const std::vector<TrackRows>&) { isFound = true; });
        });
        until([&] { return isFound; });
    }
    state.counters["longest_ms"] = app->longest;
}

void saveIndex(benchmark::State& state) {
    const auto size = static_cast<int>(state.range(0));
    Remembered remembered(size);
    LibraryViewModel library(remembered.environment);
    restoreWhole(library);
    int saves = 0;
    QObject::connect(library.persistence(), &CachePersistence::saved, [&] { ++saves; });
    app->longest = 0;
    for (auto _ : state) {
        const int before = saves;
        inAnEvent([&] { library.persistence()->persistMetadataCache(); });
        until([&] { return saves > before; });
    }
    state.counters["longest_ms"] = app->longest;
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(10'000)->Arg(100'000)->Arg(250'000);
}

} // namespace

int main(int argc, char** argv) {
    WatchedApplication application(argc, argv);
    app = &application;
    QLoggingCategory::setFilterRules(u"library=false"_s);
    const auto timed = [](benchmark::internal::Benchmark* benchmark) {
        benchmark->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
        return benchmark;
    };
    if (!musicFolder().isEmpty()) {
        timed(benchmark::RegisterBenchmark("bareTagLib", bareTagLib));
        timed(benchmark::RegisterBenchmark("importLibrary", importLibrary));
    }
    timed(benchmark::RegisterBenchmark("restoreLibrary", restoreLibrary))->Apply(sizes);
    timed(benchmark::RegisterBenchmark("lookAtTheDisk", lookAtTheDisk))->Arg(100'000);
    timed(benchmark::RegisterBenchmark("findDuplicates", findDuplicates))->Arg(100'000);
    timed(benchmark::RegisterBenchmark("removeATenth", removeATenth))->Arg(100'000)->Iterations(1);
    timed(benchmark::RegisterBenchmark("saveIndex", saveIndex))->Arg(100'000);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
