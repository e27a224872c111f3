// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/parallel/bounded_parallel.h"

#include <QStringList>

#include <stop_token>

namespace halvane {

/// What one look at each of many paths gives, in their order. It is empty for those on a disk that
/// does not answer within `patience`, and for those that are left when a stop is requested. `look`
/// is called on several threads and must own all that it uses, because one that is held up outlives
/// this call.
template<typename Value>
std::vector<std::optional<Value>>
lookAtEach(QStringList paths, std::function<Value(const QString& path)> look,
           const std::stop_token& stop,
           std::chrono::milliseconds patience = std::chrono::milliseconds(20'000)) {
    constexpr qsizetype portion = 64;
    using Parallel = BoundedParallel<std::vector<Value>>;
    const auto inputs = std::make_shared<const QStringList>(std::move(paths));
    typename Parallel::Options options;
    options.threads = lookingThreads();
    options.patience = patience;
    options.isCancelled = [&stop] { return stop.stop_requested(); };
    const auto portions = Parallel::run(
        static_cast<std::size_t>((inputs->size() + portion - 1) / portion),
        [inputs, look](std::size_t index) {
            std::vector<Value> values;
            const QStringList own = inputs->mid(static_cast<qsizetype>(index) * portion, portion);
            for (const QString& path : own)
                values.push_back(look(path));
            return values;
        },
        options);
    std::vector<std::optional<Value>> all(static_cast<std::size_t>(inputs->size()));
    for (std::size_t p = 0; p < portions.size(); ++p)
        if (portions[p])
            std::move(portions[p]->begin(), portions[p]->end(),
                      all.begin() + static_cast<std::ptrdiff_t>(p) * portion);
    return all;
}

} // namespace halvane
