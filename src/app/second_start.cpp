// SPDX-License-Identifier: MIT
#include "app/second_start.h"

#include <cstdio>
#include <cstdlib>

namespace halvane {

namespace {

[[noreturn]] void fail(const char* why) {
    std::fputs(why, stderr);
    // exit() would destroy objects that may be waiting for the bus, too.
    std::_Exit(EXIT_FAILURE);
}

// Whether another instance has answered; false when there is none.
bool hasAnswered(HandOver outcome) {
    switch (outcome) {
    case HandOver::nobodyThere:
        return false;
    case HandOver::done:
        return true;
    case HandOver::refused:
        fail("halvane: the Halvane that runs, of another version, does not know that action\n");
    case HandOver::notAnswered:
        fail("halvane: another Halvane runs and does not answer; "
             "if it comes back, it may still do what it was asked\n");
    case HandOver::busSilent:
        fail("halvane: the session's bus does not answer, "
             "so there is no telling whether another Halvane runs\n");
    case HandOver::busLost:
        fail("halvane: the session's bus went away before another Halvane had answered\n");
    }
    return false;
}

} // namespace

bool leftToAnother(const StartRequest& request) {
    return hasAnswered(handOver(request));
}

QVariantMap runningPlayer() {
    const auto answer = askPlayer();
    if (!hasAnswered(answer.outcome))
        fail("halvane: no Halvane is running\n");
    return answer.properties;
}

} // namespace halvane
