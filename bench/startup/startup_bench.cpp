// SPDX-License-Identifier: MIT
// Time from a program's start until its window is on the display, until something is drawn in it,
// and until that no longer changes, with libraries of several sizes. To be run on a display of its
// own: tools/private-desktop bench_startup
#include "../support/remembered_library.h"
#include "platform/preferences/sqlite_preferences.h"
#include "platform/system_clock.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr int leastWidth = 200; // smaller windows are the toolkit's own
constexpr auto patience = 20s;
constexpr double calm = 1.0; ///< seconds without a change, after which none is expected

int ignoreErrors(Display*, XErrorEvent*) {
    return 0; // a window may go away while it is looked at
}

/// Every seventh pixel of every seventh row; none while the window is not there.
std::vector<unsigned long> picture(Display* display, Window window) {
    std::vector<unsigned long> pixels;
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, window, &attributes) || attributes.map_state != IsViewable)
        return pixels;
    XImage* image = XGetImage(display, window, 0, 0, unsigned(attributes.width),
                              unsigned(attributes.height), AllPlanes, ZPixmap);
    if (!image)
        return pixels;
    for (int y = 0; y < attributes.height; y += 7)
        for (int x = 0; x < attributes.width; x += 7)
            pixels.push_back(XGetPixel(image, x, y));
    XDestroyImage(image);
    return pixels;
}

bool isDrawn(const std::vector<unsigned long>& pixels) {
    return std::any_of(pixels.begin(), pixels.end(),
                       [&](unsigned long pixel) { return pixel != pixels.front(); });
}

pid_t start(const std::vector<std::string>& command) {
    const pid_t pid = fork();
    if (pid != 0)
        return pid;
    std::vector<char*> arguments;
    for (const auto& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

struct Times {
    double window = 0;    ///< seconds until the window is there
    double picture = 0;   ///< seconds until something shows in it
    double whole = 0;     ///< seconds until the picture has changed for the last time
    double processor = 0; ///< seconds of processor time in all; hardly moved by other load
};

Times measure(const std::vector<std::string>& command) {
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return {};
    XSetErrorHandler(ignoreErrors);
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, False);
    const auto began = Clock::now();
    const auto since = [began] {
        return std::chrono::duration<double>(Clock::now() - began).count();
    };
    const pid_t pid = start(command);
    Times times;
    Window window = 0;
    while (times.picture == 0 && Clock::now() - began < patience) {
        while (XPending(display)) {
            XEvent event;
            XNextEvent(display, &event);
            XWindowAttributes attributes;
            if (event.type == MapNotify && !window &&
                XGetWindowAttributes(display, event.xmap.window, &attributes) &&
                attributes.width >= leastWidth) {
                window = event.xmap.window;
                times.window = since();
            }
        }
        if (window && isDrawn(picture(display, window)))
            times.picture = since();
        std::this_thread::sleep_for(1ms);
    }
    times.whole = times.picture;
    for (auto last = picture(display, window); since() < times.whole + calm;) {
        std::this_thread::sleep_for(10ms); // leaves the processors to what is measured
        if (auto now = picture(display, window); now != last) {
            last = std::move(now);
            times.whole = since();
        }
    }
    kill(pid, SIGTERM);
    rusage usage{};
    wait4(pid, nullptr, 0, &usage);
    const auto seconds = [](const timeval& time) {
        return double(time.tv_sec) + double(time.tv_usec) / 1e6;
    };
    times.processor = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    XCloseDisplay(display);
    return times;
}

/// Until a second start has handed its files to the one that runs, and has ended.
void handOver(benchmark::State& state) {
    const pid_t running = start({HALVANE_PROGRAM});
    const auto second = [] {
        const auto began = Clock::now();
        const pid_t pid = start({HALVANE_PROGRAM, "/nonexistent.flac"});
        waitpid(pid, nullptr, 0);
        return std::chrono::duration<double>(Clock::now() - began).count();
    };
    // One that comes before the first has its name would become a first one itself.
    if (std::system("gdbus wait --session --timeout 20 org.halvane.Halvane") != 0)
        state.SkipWithError("the first does not start");
    second(); // is answered when the first has made its window
    for (auto _ : state)
        state.SetIterationTime(second());
    kill(running, SIGTERM);
    waitpid(running, nullptr, 0);
}

/// The command that starts the program on a library of its own.
std::vector<std::string> programWithLibrary(const QTemporaryDir& home, int size) {
    using namespace Qt::StringLiterals;
    const QString config = home.filePath(u"config"_s);
    const QString data = home.filePath(u"data"_s);
    {
        halvane::SystemClock clock;
        halvane::SqlitePreferences preferences(config + u"/Halvane/preferences.sqlite"_s, clock);
        halvane::bench::rememberLibrary(size, home.filePath(u"music"_s), data + u"/Halvane"_s,
                                        preferences);
    }
    return {"env", "XDG_CONFIG_HOME=" + config.toStdString(), "XDG_DATA_HOME=" + data.toStdString(),
            HALVANE_PROGRAM};
}

void startUp(benchmark::State& state, const std::vector<std::string>& command) {
    for (auto _ : state) {
        const auto times = measure(command);
        if (times.picture == 0)
            state.SkipWithError("no window");
        state.SetIterationTime(times.picture);
        state.counters["window_ms"] = times.window * 1000;
        state.counters["whole_ms"] = times.whole * 1000;
        state.counters["processor_ms"] = times.processor * 1000;
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    // A display server starts anew when its last client has gone.
    Display* const held = XOpenDisplay(nullptr);
    if (!held)
        return 1;
    const std::array<QTemporaryDir, 4> homes;
    const std::vector<std::pair<std::string, std::vector<std::string>>> programs{
        {"halvane/0", programWithLibrary(homes[0], 0)},
        {"halvane/10000", programWithLibrary(homes[1], 10'000)},
        {"halvane/100000", programWithLibrary(homes[2], 100'000)},
        {"halvane/250000", programWithLibrary(homes[3], 250'000)},
        {"mpv", {"mpv", "--no-config", "--idle", "--force-window", "--really-quiet"}},
        {"plain_qt_quick_window", {PLAIN_WINDOW}},
    };
    for (const auto& [name, command] : programs) {
        benchmark::RegisterBenchmark(name.c_str(), startUp, command)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1)
            ->Repetitions(7)
            ->ReportAggregatesOnly(true);
    }
    benchmark::RegisterBenchmark("second_start", handOver)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(9)
        ->ReportAggregatesOnly(true);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    XCloseDisplay(held);
}
