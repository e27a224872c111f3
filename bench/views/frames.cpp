// SPDX-License-Identifier: MIT
// Processor time per frame of the real main window while its lists scroll from end to end, so that
// other work on the machine does not count. The basic render loop does everything on one thread,
// and each part can be told: the main thread's (scrolling, delegates, layout, synchronizing), the
// scene graph's (its commands for the graphics card), and what llvmpipe, which stands for that
// card, needs to draw the pixels on all its threads.
#include "gallery/gallery_world.h"

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <span>
#include <utility>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

struct Frame {
    double mainMs = 0;
    double graphMs = 0;
    double pixelsMs = 0;
};

double processorMs(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return 1e3 * double(time.tv_sec) + double(time.tv_nsec) / 1e6;
}

double quantile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[std::size_t(share * double(values.size() - 1))];
}

void reportPart(const char* what, std::span<const Frame> frames) {
    std::printf("%-20s %4zu frames", what, frames.size());
    const auto part = [&](const char* name, double Frame::*member) {
        std::vector<double> values;
        for (const Frame& frame : frames)
            values.push_back(frame.*member);
        std::printf("  %s: median %5.2f p95 %5.2f max %5.2f", name, quantile(values, 0.5),
                    quantile(values, 0.95), quantile(values, 1));
    };
    part("main", &Frame::mainMs);
    part("graph", &Frame::graphMs);
    part("pixels", &Frame::pixelsMs);
    std::printf(" ms\n");
}

void report(const char* what, std::span<const Frame> frames) {
    reportPart(what, frames);
    reportPart("  as a wheel turns", frames.first(frames.size() / 2));
    reportPart("  in leaps", frames.subspan(frames.size() / 2));
}

/// The view that shows a model, by its accessible name's class: a list or a grid with many rows.
QQuickItem* viewOf(QQuickItem* from, const QAbstractItemModel* model) {
    if (from->property("model").value<QAbstractItemModel*>() == model &&
        from->property("contentY").isValid())
        return from;
    for (QQuickItem* child : from->childItems())
        if (auto* found = viewOf(child, model))
            return found;
    return nullptr;
}

std::vector<Frame> scroll(QQuickWindow& window, QQuickItem& view, int count) {
    std::vector<Frame> frames;
    Frame frame;
    double thread = processorMs(CLOCK_THREAD_CPUTIME_ID);
    double process = processorMs(CLOCK_PROCESS_CPUTIME_ID);
    bool shown = false;
    const auto lap = [&thread] {
        const double now = processorMs(CLOCK_THREAD_CPUTIME_ID);
        return now - std::exchange(thread, now);
    };
    const std::array connections{
        QObject::connect(&window, &QQuickWindow::afterSynchronizing, [&] { frame.mainMs = lap(); }),
        QObject::connect(&window, &QQuickWindow::afterRendering, [&] { frame.graphMs = lap(); }),
        QObject::connect(&window, &QQuickWindow::frameSwapped, [&] {
            frame.pixelsMs =
                processorMs(CLOCK_PROCESS_CPUTIME_ID) - process - frame.mainMs - frame.graphMs;
            shown = true;
        })};
    const double top = view.property("originY").toDouble();
    const double reach = view.property("contentHeight").toDouble() - view.height();
    // Half of the frames as fast as a wheel turns, half in leaps that change every row.
    for (int i = 0; i < count; ++i) {
        const double y = i < count / 2 ? 100.0 * i : reach * (i - count / 2) / (count / 2.0);
        shown = false;
        QCoreApplication::processEvents();
        thread = processorMs(CLOCK_THREAD_CPUTIME_ID);
        process = processorMs(CLOCK_PROCESS_CPUTIME_ID);
        view.setProperty("contentY", top + std::min(y, reach));
        window.update();
        test::GalleryWorld::waitFor([&] { return shown; });
        frames.push_back(frame);
    }
    for (const auto& connection : connections)
        QObject::disconnect(connection);
    return frames;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QSG_RENDER_LOOP", "basic");
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QGuiApplication app(argc, argv);
    const int albums = argc > 1 ? atoi(argv[1]) : 8000;
    test::GalleryWorld world(albums);
    LibraryViewModel& library = world.library();
    world.waitFor([&] { return library.browsing()->visibleAlbums()->rowCount() > 0; }, 60000);
    QQuickWindow* window = world.open(u"main"_s);
    if (!window)
        return 1;
    std::printf("%d tracks, %d albums\n", library.trackCount(),
                library.browsing()->visibleAlbums()->rowCount());
    const auto measure = [&](const char* what, const QAbstractItemModel* model) {
        QQuickItem* view = nullptr;
        world.waitFor([&] { return (view = viewOf(window->contentItem(), model)) != nullptr; });
        if (view)
            report(what, scroll(*window, *view, 160));
    };
    measure("album grid", library.browsing()->visibleAlbums());
    const auto open = [&](LibraryMode mode, const char* what) {
        const double before = processorMs(CLOCK_THREAD_CPUTIME_ID);
        bool shown = false;
        double synchronized = 0;
        const auto ready = QObject::connect(window, &QQuickWindow::afterRendering, [&] {
            if (synchronized == 0)
                synchronized = processorMs(CLOCK_THREAD_CPUTIME_ID) - before;
        });
        const auto swapped =
            QObject::connect(window, &QQuickWindow::frameSwapped, [&] { shown = true; });
        library.browsing()->selectBrowseMode(mode);
        world.waitFor([&] { return shown; });
        QObject::disconnect(swapped);
        QObject::disconnect(ready);
        std::printf("%-12s opened with %.1f ms\n", what, synchronized);
    };
    open(LibraryMode::songs, "track table");
    measure("track table", library.browsing()->visibleTracks());
    open(LibraryMode::artists, "artist grid");
    measure("artist grid", library.browsing()->visibleArtists());
    open(LibraryMode::albums, "album grid");

    // The full-screen player draws by its own clock.
    library.views()->setShowFullPlayer(true);
    world.waitFor([] { return false; }, 1000);
    int frames = 0;
    const auto counted = QObject::connect(window, &QQuickWindow::frameSwapped, [&] { ++frames; });
    world.waitFor([] { return false; }, 4000);
    QObject::disconnect(counted);
    std::printf("full-screen player: %.1f frames a second\n", frames / 4.0);
    library.views()->setShowFullPlayer(false);
    world.waitFor([] { return false; }, 1500);

    // Nothing plays and nobody does anything: no frames.
    int idle = 0;
    QObject::connect(window, &QQuickWindow::frameSwapped, [&] { ++idle; });
    world.waitFor([] { return false; }, 3000);
    std::printf("idle: %d frames in 3 s\n", idle);
    return 0;
}
