// SPDX-License-Identifier: MIT
// Time per frame of the real main window while its lists scroll from end to end. Run with
// QSG_RENDER_LOOP=basic, so that everything happens on one thread and each part can be told: the
// main thread's (scrolling, delegates, layout, synchronizing) and the scene graph's (rendering and
// showing).
#include "gallery/gallery_world.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

struct Frame {
    double mainMs = 0;
    double graphMs = 0;
};

double quantile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[std::size_t(share * double(values.size() - 1))];
}

void report(const char* what, const std::vector<Frame>& frames) {
    std::vector<double> main;
    std::vector<double> graph;
    for (const Frame& frame : frames) {
        main.push_back(frame.mainMs);
        graph.push_back(frame.graphMs);
    }
    std::printf("%-34s %4zu frames  main: median %.2f p95 %.2f max %.2f ms  graph: median %.2f "
                "p95 %.2f max %.2f ms\n",
                what, frames.size(), quantile(main, 0.5), quantile(main, 0.95), quantile(main, 1),
                quantile(graph, 0.5), quantile(graph, 0.95), quantile(graph, 1));
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
    QElapsedTimer clock;
    bool shown = false;
    const auto synchronized = QObject::connect(&window, &QQuickWindow::afterSynchronizing, [&] {
        frame.mainMs = double(clock.nsecsElapsed()) / 1e6;
        clock.start();
    });
    const auto swapped = QObject::connect(&window, &QQuickWindow::frameSwapped, [&] {
        frame.graphMs = double(clock.nsecsElapsed()) / 1e6;
        shown = true;
    });
    const double top = view.property("originY").toDouble();
    const double reach = view.property("contentHeight").toDouble() - view.height();
    // Half of the frames as fast as a wheel turns, half in leaps that change every row.
    for (int i = 0; i < count; ++i) {
        const double y = i < count / 2 ? 100.0 * i : reach * (i - count / 2) / (count / 2.0);
        shown = false;
        QCoreApplication::processEvents();
        clock.start();
        view.setProperty("contentY", top + std::min(y, reach));
        window.update();
        test::GalleryWorld::waitFor([&] { return shown; });
        frames.push_back(frame);
    }
    QObject::disconnect(synchronized);
    QObject::disconnect(swapped);
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
    world.waitFor([&] { return library.visibleAlbums()->rowCount() > 0; }, 60000);
    QQuickWindow* window = world.open(u"main"_s);
    if (!window)
        return 1;
    std::printf("%d tracks, %d albums\n", library.trackCount(),
                library.visibleAlbums()->rowCount());
    const auto measure = [&](const char* what, const QAbstractItemModel* model) {
        QElapsedTimer opening;
        opening.start();
        QQuickItem* view = nullptr;
        world.waitFor([&] { return (view = viewOf(window->contentItem(), model)) != nullptr; });
        if (view)
            report(what, scroll(*window, *view, 160));
    };
    measure("album grid", library.visibleAlbums());
    const auto open = [&](LibraryMode mode, const char* what) {
        QElapsedTimer opening;
        opening.start();
        bool shown = false;
        const auto swapped =
            QObject::connect(window, &QQuickWindow::frameSwapped, [&] { shown = true; });
        library.selectBrowseMode(mode);
        world.waitFor([&] { return shown; });
        QObject::disconnect(swapped);
        std::printf("%-34s opened in %.1f ms\n", what, double(opening.nsecsElapsed()) / 1e6);
    };
    open(LibraryMode::songs, "track table");
    measure("track table", library.visibleTracks());
    open(LibraryMode::artists, "artist grid");
    measure("artist grid", library.visibleArtists());
    open(LibraryMode::albums, "album grid");

    // The full-screen player draws by its own clock.
    library.setShowFullPlayer(true);
    world.waitFor([] { return false; }, 1000);
    int frames = 0;
    const auto counted = QObject::connect(window, &QQuickWindow::frameSwapped, [&] { ++frames; });
    world.waitFor([] { return false; }, 4000);
    QObject::disconnect(counted);
    std::printf("full-screen player: %.1f frames a second\n", frames / 4.0);
    library.setShowFullPlayer(false);
    world.waitFor([] { return false; }, 1500);

    // Nothing plays and nobody does anything: no frames.
    int idle = 0;
    QObject::connect(window, &QQuickWindow::frameSwapped, [&] { ++idle; });
    world.waitFor([] { return false; }, 3000);
    std::printf("idle: %d frames in 3 s\n", idle);
    return 0;
}
