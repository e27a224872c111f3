// SPDX-License-Identifier: MIT
#include "app/signal_watch.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace halvane {

namespace {

// A signal handler may do little more than write; the event loop reads the other end.
int pipeEnds[2] = {-1, -1};
constexpr int wanted[] = {SIGTERM, SIGINT, SIGHUP};

// One that is ignored from the start, as below nohup, is to stay so.
bool isIgnored(int number) {
    struct sigaction before {};
    return sigaction(number, nullptr, &before) == 0 && before.sa_handler == SIG_IGN;
}

void handle(int) {
    const int before = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = write(pipeEnds[1], &byte, 1);
    errno = before;
}

} // namespace

SignalWatch::SignalWatch(QObject* parent)
    : QObject(parent) {
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the signals end the program the hard way, which loses nothing either
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte;
        while (read(pipeEnds[0], &byte, 1) == 1) {
        }
        Q_EMIT endRequested();
    });
    struct sigaction action {};
    action.sa_handler = handle;
    action.sa_flags = SA_RESTART;
    for (const int number : wanted) {
        if (isIgnored(number))
            continue;
        sigaction(number, &action, nullptr);
        m_watched.push_back(number);
    }
}

SignalWatch::~SignalWatch() {
    if (!m_notifier)
        return;
    for (const int number : m_watched)
        std::signal(number, SIG_DFL);
    m_notifier.reset();
    close(pipeEnds[0]);
    close(pipeEnds[1]);
}

} // namespace halvane
