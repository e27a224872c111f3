// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

#include <memory>
#include <utility>

namespace halvane {

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
