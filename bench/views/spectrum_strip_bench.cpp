// SPDX-License-Identifier: MIT
// Processor time of the spectrum strips in the real main window while it plays, 30 results a
// second: with the strips on screen and without them, in one run. The whole process includes what
// draws the pixels in place of a graphics card; the main thread and the scene graph's have their
// own columns.
#include "gallery/gallery_world.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 7;
constexpr int roundMs = 1500;

double milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void collectStrips(QQuickItem* within, QList<QQuickItem*>& found) {
    if (QByteArrayView(within->metaObject()->className()).startsWith("SpectrumStrip"))
        found.append(within);
    for (QQuickItem* child : within->childItems())
        collectStrips(child, found);
}

/// Of each round: results and frames a second, and shares of a core.
struct Rounds {
    std::vector<double> results, frames, process, mainThread, graph;

    void add(QQuickWindow& window, SpectrumModel& spectrum) {
        int shown = 0;
        std::atomic<int> drawn = 0;
        std::atomic<double> graphFrom = 0;
        std::atomic<double> graphTo = 0;
        const auto onResult =
            QObject::connect(&spectrum, &SpectrumModel::changed, &window, [&shown] { ++shown; });
        const auto onFrame = QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window,
            [&] { // on the scene graph's thread
                graphTo = milliseconds(CLOCK_THREAD_CPUTIME_ID);
                if (drawn++ == 0)
                    graphFrom = graphTo.load();
            },
            Qt::DirectConnection);
        QElapsedTimer since;
        since.start();
        const double processBefore = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
        const double mainBefore = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        test::GalleryWorld::waitFor([] { return false; }, roundMs);
        const double elapsed = double(since.nsecsElapsed()) / 1e6;
        process.push_back(100 * (milliseconds(CLOCK_PROCESS_CPUTIME_ID) - processBefore) / elapsed);
        mainThread.push_back(100 * (milliseconds(CLOCK_THREAD_CPUTIME_ID) - mainBefore) / elapsed);
        QObject::disconnect(onResult);
        QObject::disconnect(onFrame);
        results.push_back(shown * 1e3 / elapsed);
        frames.push_back(drawn * 1e3 / elapsed);
        graph.push_back(100 * (graphTo - graphFrom) / elapsed);
    }
    void print(const char* what) const {
        std::printf("%-12s %5.1f results a second, %5.1f frames a second, %5.2f %% of a core, "
                    "main thread %5.2f %%, scene graph %5.2f %%\n",
                    what, median(results), median(frames), median(process), median(mainThread),
                    median(graph));
    }
};

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QGuiApplication app(argc, argv);
    test::GalleryWorld world(12);
    world.furnish();
    QQuickWindow* window = world.open(u"main"_s);
    if (!window)
        return 1;
    world.library().views()->setShowNowPlayingPanel(true);
    if (!world.library().transport()->isPlaying())
        world.library().transport()->togglePlayback();
    test::GalleryWorld::waitFor([] { return false; }, 3000);
    QList<QQuickItem*> strips;
    collectStrips(window->contentItem(), strips);
    std::printf("%d strips\n", int(strips.size()));
    Rounds with, without;
    for (int round = 0; round < rounds; ++round) {
        for (const bool shown : {true, false}) {
            for (QQuickItem* strip : strips)
                strip->setVisible(shown);
            test::GalleryWorld::waitFor([] { return false; }, 300);
            (shown ? with : without).add(*window, *world.library().spectrum());
        }
    }
    with.print("on screen");
    without.print("not there");
    return strips.isEmpty() ? 1 : 0;
}
