// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QThread>

namespace halvane {

/// Ends the program with a message when the calling thread is not the object's. Every build checks,
/// because a call from a worker is a programming error whose damage shows later and elsewhere.
inline void assertOwnThread(const QObject& object) {
    if (Q_UNLIKELY(QThread::currentThread() != object.thread()))
        qFatal("%s used on a thread that does not own it", object.metaObject()->className());
}

} // namespace halvane
