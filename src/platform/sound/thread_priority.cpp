// SPDX-License-Identifier: MIT
#include "platform/sound/thread_priority.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <sys/resource.h>
#include <unistd.h>

namespace halvane {

using namespace Qt::StringLiterals;

void preferThisThread() {
    // What desktops give to sound. Not the real-time class: a fault of ours could then hold up the
    // whole machine.
    constexpr int niceLevel = -11;
    const auto thread = gettid();
    if (setpriority(PRIO_PROCESS, id_t(thread), niceLevel) == 0)
        return;
    const auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return;
    auto request = QDBusMessage::createMethodCall(
        u"org.freedesktop.RealtimeKit1"_s, u"/org/freedesktop/RealtimeKit1"_s,
        u"org.freedesktop.RealtimeKit1"_s, u"MakeThreadHighPriority"_s);
    request << quint64(thread) << qint32(niceLevel);
    (void)bus.send(request);
}

} // namespace halvane
