// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

#include <memory>
#include <sys/resource.h>
#include <utility>

namespace halvane {

/// Where processors are scarce the window comes first: the calling thread, and those that it
/// starts, get less of them from now on. (A thread of Qt's can't be given a priority under the
/// usual scheduler.)
inline void yieldToTheWindow() {
    constexpr int nicer = 5;
    ::setpriority(PRIO_PROCESS, 0, nicer);
}

/// Runs `work` on the pool and then `done` with its result on the main thread, unless the owner has
/// gone by then. Called on the main thread. `work` must own what it uses, or its pool must be
/// waited for before that goes.
template<typename Work, typename Done>
void runInBackground(QThreadPool& pool, QObject* owner, Work work, Done done) {
    pool.start([weak = QPointer<QObject>(owner), work = std::move(work), done = std::move(done)] {
        auto result = std::make_shared<decltype(work())>(work());
        // Posted to the application, which outlives us: whether the owner still lives can only be
        // asked on the main thread.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [weak, result, done] {
                if (weak)
                    done(std::move(*result));
            },
            Qt::QueuedConnection);
    });
}

} // namespace halvane
