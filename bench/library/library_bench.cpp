// SPDX-License-Identifier: MIT
// What the library costs the main thread and the workers, at three sizes.
#include "library/browsing/browsing.h"
#include "library/browsing/cover_store.h"
#include "library/playback/edited_queue.h"
#include "library/sample_library.h"
#include "library/user/language_setting.h"
#include "library/user/live_lists.h"
#include "library/user/playlists.h"
#include "library/user/track_user_data.h"
#include "model/raw_value.h"
#include "support/fake_environment.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>
#include <malloc.h>
#include <map>

using namespace halvane;
using namespace halvane::bench;
using namespace Qt::StringLiterals;

namespace {

const std::shared_ptr<const TrackRows>& library(std::size_t size) {
    static std::map<std::size_t, std::shared_ptr<const TrackRows>> made;
    auto& rows = made[size];
    if (!rows)
        rows = std::make_shared<const TrackRows>(sampleLibrary(size));
    return rows;
}

std::size_t heapInUse() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Browsing over a library of a size, as the window has it.
struct Window {
    explicit Window(std::size_t size) {
        store.append(*library(size));
        catalog.rebuildImportedAlbums();
        while (!catalog.isCurrent())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    test::MemoryPreferences preferences;
    Playlists playlists{preferences};
    LiveLists liveLists{preferences};
    CoverStore covers;
    LibraryStore store;
    test::FakeLanguages languages;
    const LanguageSetting language{preferences, languages};
    TrackUserData userData{preferences};
    CatalogPublisher catalog{store, userData, language};
    TableOrder order{preferences};
    Browsing browsing{store, catalog, playlists, liveLists, userData, language, order, rowState()};

    RowState rowState() {
        RowState state = test::plainRowState();
        state.covers = &covers;
        return state;
    }
};

/// A transport over a queue of a size.
struct Player : test::TransportFixture {
    explicit Player(std::size_t size) {
        queue.append(*library(size));
        play(size / 2);
    }
};

/// Processor time of this thread.
double threadMs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e3 * double(time.tv_sec) + double(time.tv_nsec) / 1e6;
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(10'000)->Arg(100'000)->Arg(250'000)->Unit(benchmark::kMillisecond);
}

} // namespace

/// Albums from tracks: interning, grouping, sorting, colours.
static void albumsFromTracks(benchmark::State& state) {
    const auto& rows = *library(static_cast<std::size_t>(state.range(0)));
    std::size_t albums = 0;
    for (auto _ : state)
        albums = deriveAlbums(rows, columnsOf(rows), ResolvedLanguage::english).albums.size();
    state.counters["albums"] = static_cast<double>(albums);
}
BENCHMARK(albumsFromTracks)->Apply(sizes);

/// Everything that a worker derives: albums, artists, folded search texts.
static void wholeCatalog(benchmark::State& state) {
    const auto& rows = library(static_cast<std::size_t>(state.range(0)));
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::size_t before = heapInUse();
        const auto catalog = buildCatalog(rows, ResolvedLanguage::english);
        bytes = heapInUse() - before;
    }
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
}
BENCHMARK(wholeCatalog)->Apply(sizes);

/// The rows of the table by title, as a worker sorts them for a click on the column.
static void tracksByTitle(benchmark::State& state) {
    const auto catalog =
        buildCatalog(library(static_cast<std::size_t>(state.range(0))), ResolvedLanguage::english);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            sortedRows(*catalog, {TrackOrder::title, false}, {}, allRows(*catalog)));
}
BENCHMARK(tracksByTitle)->Apply(sizes);

/// What the main thread does when the table is sorted, and when a track of it is played.
static void playSortedTable(benchmark::State& state) {
    Window window(static_cast<std::size_t>(state.range(0)));
    window.browsing.selectBrowseMode(LibraryMode::songs);
    window.order.choose(TrackOrder::title);
    while (!window.catalog.sortedRows())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    PlayQueue queue(test::plainRowState());
    for (auto _ : state) {
        window.browsing.selectBrowseMode(LibraryMode::albums);
        window.browsing.selectBrowseMode(LibraryMode::songs);
        queue.assign(window.browsing.sortedTracks(), {});
    }
}
BENCHMARK(playSortedTable)->Apply(sizes);

/// From a click on a head until the table is sorted, and what of it the main thread has to do.
static void clickOnHead(benchmark::State& state) {
    Window window(static_cast<std::size_t>(state.range(0)));
    window.browsing.selectBrowseMode(LibraryMode::songs);
    const auto column = static_cast<TrackOrder>(state.range(1));
    bool isSorted = false;
    QObject::connect(&window.catalog, &CatalogPublisher::sortedRowsChanged,
                     [&] { isSorted = true; });
    double mainMs = 0;
    for (auto _ : state) {
        const double before = threadMs();
        isSorted = false;
        window.order.choose(column);
        while (!isSorted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        mainMs = std::max(mainMs, threadMs() - before);
        state.PauseTiming();
        while (window.order.by() != TrackOrder::library)
            window.order.choose(column);
        window.catalog.setSorting({});
        state.ResumeTiming();
    }
    state.SetLabel(rawValue(column).toStdString());
    state.counters["main_ms"] = mainMs;
}
BENCHMARK(clickOnHead)
    ->ArgsProduct({{250'000},
                   {int(TrackOrder::title), int(TrackOrder::artist), int(TrackOrder::plays),
                    int(TrackOrder::path)}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

/// One keystroke of someone who types a search: all three lists, as the main thread does it. Every
/// tenth track is rated.
static void searchKeystroke(benchmark::State& state, const QString& typed) {
    Window window(static_cast<std::size_t>(state.range(0)));
    const TrackRows& rows = *window.catalog.published()->rows;
    for (std::size_t row = 0; row < rows.size(); row += 10)
        window.userData.setRating(static_cast<int>(row / 10 % 5) + 1, rows[row]->path());
    double slowest = 0;
    for (auto _ : state) {
        state.PauseTiming();
        window.browsing.setSearchText({});
        state.ResumeTiming();
        for (qsizetype length = 1; length <= typed.size(); ++length) {
            const auto start = std::chrono::steady_clock::now();
            window.browsing.setSearchText(typed.left(length));
            const std::chrono::duration<double, std::milli> time =
                std::chrono::steady_clock::now() - start;
            slowest = std::max(slowest, time.count());
        }
    }
    const auto strokes =
        static_cast<double>(state.iterations()) * static_cast<double>(typed.size());
    state.counters["ms_per_keystroke"] = benchmark::Counter(
        strokes / 1000, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["slowest_ms"] = slowest;
}
BENCHMARK_CAPTURE(searchKeystroke, words, u"night walk"_s)->Apply(sizes);
BENCHMARK_CAPTURE(searchKeystroke, terms, u"year:1990..1999 -live rating:>=3 artist:a"_s)
    ->Apply(sizes);

/// The worst single query: one letter that most rows contain; and back to everything.
static void searchFrequentLetter(benchmark::State& state) {
    Window window(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        window.browsing.setSearchText(u"e"_s);
        window.browsing.setSearchText({});
    }
}
BENCHMARK(searchFrequentLetter)->Apply(sizes);

static void playNextInOrder(benchmark::State& state) {
    Player player(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        player.transport.playNext(true);
}
BENCHMARK(playNextInOrder)->Apply(sizes)->Unit(benchmark::kMicrosecond);

static void playPrevious(benchmark::State& state) {
    Player player(static_cast<std::size_t>(state.range(0)));
    player.transport.setRepeatMode(PlaybackRepeatMode::all);
    for (auto _ : state)
        player.transport.playPrevious();
}
BENCHMARK(playPrevious)->Apply(sizes)->Unit(benchmark::kMicrosecond);

static void playNextShuffled(benchmark::State& state) {
    Player player(static_cast<std::size_t>(state.range(0)));
    player.transport.toggleShuffle();
    for (auto _ : state)
        player.transport.playNext(true);
}
BENCHMARK(playNextShuffled)->Apply(sizes)->Unit(benchmark::kMicrosecond);

/// A click on a track: found in the queue and started.
static void findTrackInQueue(benchmark::State& state) {
    Player player(static_cast<std::size_t>(state.range(0)));
    const QString last = player.queue.record(player.queue.size() - 1).path();
    for (auto _ : state)
        benchmark::DoNotOptimize(player.queue.rowOfPath(last));
}
BENCHMARK(findTrackInQueue)->Apply(sizes)->Unit(benchmark::kMicrosecond);

/// One track that is to play next in a long queue, taken out, and both taken back.
static void editQueue(benchmark::State& state) {
    test::EditedQueue edited;
    const TrackRows& rows = *library(static_cast<std::size_t>(state.range(0)));
    edited.store.append(rows);
    edited.queue.append(rows);
    edited.play(rows.size() / 2);
    const QStringList path{rows.front()->path()};
    const QUuid last = edited.queue.idAt(rows.size() - 1);
    const auto timed = [&](const char* name, auto&& edit) {
        const auto begin = std::chrono::steady_clock::now();
        edit();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - begin;
        double& slowest = state.counters[name].value;
        slowest = std::max(slowest, took.count());
    };
    for (auto _ : state) {
        timed("next_ms", [&] { edited.editing.playNext(path); });
        timed("remove_ms", [&] { edited.editing.removeEntry(last); });
        timed("left_ms", [&] { benchmark::DoNotOptimize(edited.queue.secondsFrom(0)); });
        timed("undo_ms", [&] { edited.history.undo(); });
        edited.history.undo();
        timed("clear_ms", [&] { edited.editing.clear(); });
        timed("back_ms", [&] { edited.history.undo(); });
    }
}
BENCHMARK(editQueue)->Apply(sizes)->Iterations(20);

/// What the main thread does when a tenth of the library is removed.
static void removeATenth(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    QSet<QString> paths;
    for (std::size_t i = 0; i < size; i += 10)
        paths.insert((*library(size))[i]->path());
    std::optional<LibraryStore> store;
    std::shared_ptr<const TrackRows> held;
    for (auto _ : state) {
        state.PauseTiming();
        store.emplace();
        store->append(*library(size));
        held = store->snapshot(); // as the published catalog holds one
        state.ResumeTiming();
        store->remove(paths);
    }
}
BENCHMARK(removeATenth)->Apply(sizes);

/// New records for every entry of the queue, in portions, as a start brings them that finds every
/// file changed.
static void replaceAllRecords(benchmark::State& state) {
    constexpr std::ptrdiff_t portion = 500;
    const TrackRows& rows = *library(static_cast<std::size_t>(state.range(0)));
    PlayQueue queue(test::plainRowState());
    queue.append(rows);
    for (auto _ : state) {
        PlayQueue::Places places;
        for (auto begin = rows.begin(); begin != rows.end();) {
            const auto end = begin + std::min(portion, rows.end() - begin);
            queue.replace(TrackRows(begin, end), places);
            begin = end;
        }
    }
}
BENCHMARK(replaceAllRecords)->Apply(sizes);

/// The library itself: rows with their texts, the path index and the queue of all of it.
static void memoryOfRows(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        const std::size_t before = heapInUse();
        LibraryStore store;
        store.append(sampleLibrary(size));
        PlayQueue queue(test::plainRowState());
        queue.append(store.rows());
        state.counters["MB"] = static_cast<double>(heapInUse() - before) / 1e6;
    }
}
BENCHMARK(memoryOfRows)->Apply(sizes)->Iterations(1);

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(u"library=false"_s);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
