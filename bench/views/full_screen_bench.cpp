// SPDX-License-Identifier: MIT
// Frames a second and processor time per frame of the real full-screen player: playing, paused, and
// hidden. The processor time is that of the whole process, drawing included, so that it tells what
// a frame costs also on a loaded machine. Give sizes as WIDTHxHEIGHT.
#include "gallery/gallery_world.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 5;
constexpr int roundMs = 1500;

double processorMs() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void measure(QQuickWindow& window, const char* what) {
    test::GalleryWorld::waitFor([] { return false; }, 3000);
    std::vector<double> rates;
    std::vector<double> costs;
    std::vector<double> shares;
    for (int round = 0; round < rounds; ++round) {
        int frames = 0;
        const auto counted = QObject::connect(&window, &QQuickWindow::frameSwapped, &window,
                                              [&frames] { ++frames; });
        QElapsedTimer clock;
        clock.start();
        const double before = processorMs();
        test::GalleryWorld::waitFor([] { return false; }, roundMs);
        const double spent = processorMs() - before;
        const double elapsed = double(clock.nsecsElapsed()) / 1e6;
        QObject::disconnect(counted);
        rates.push_back(frames * 1e3 / elapsed);
        costs.push_back(frames > 0 ? spent / frames : 0);
        shares.push_back(100 * spent / elapsed);
    }
    std::printf("%4dx%-4d %-8s %5.1f frames a second, %6.2f ms of processor time a frame, "
                "%5.1f %% of a core\n",
                window.width(), window.height(), what, median(rates), median(costs),
                median(shares));
}

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QGuiApplication app(argc, argv);
    test::GalleryWorld world(12);
    world.furnish();
    LibraryViewModel& library = world.library();
    QQuickWindow* window = world.open(u"main"_s);
    if (!window)
        return 1;
    QStringList sizes = app.arguments().mid(1);
    if (sizes.isEmpty())
        sizes = QStringList{u"1360x720"_s};
    for (const QString& size : sizes) {
        window->resize(size.section(u'x', 0, 0).toInt(), size.section(u'x', 1, 1).toInt());
        library.views()->setShowFullPlayer(true);
        if (!library.transport()->isPlaying())
            library.transport()->togglePlayback();
        measure(*window, "playing");
        library.transport()->togglePlayback();
        measure(*window, "paused");
        window->hide();
        measure(*window, "hidden");
        window->show();
        library.views()->setShowFullPlayer(false);
        measure(*window, "closed");
    }
    return 0;
}
