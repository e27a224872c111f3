// SPDX-License-Identifier: MIT
#include "metadata/file_dates.h"

#include "metadata/parallel/bounded_parallel.h"

#include <sys/stat.h>

namespace halvane {

FileFacts fileFacts(const QString& path) {
    struct stat facts;
    if (path.isEmpty() || ::stat(path.toUtf8().constData(), &facts) != 0)
        return {};
    return {true, referenceDate(facts.st_mtim), facts.st_size};
}

std::vector<FileFacts> fileFacts(const std::vector<FileUrl>& files, const std::stop_token& stop) {
    constexpr std::size_t portion = 512;
    // The threads own the files, because one that is held up by a dead mount outlives this call.
    const auto inputs = std::make_shared<const std::vector<FileUrl>>(files);
    BoundedParallel<std::vector<FileFacts>>::Options options;
    options.threads = lookingThreads();
    options.isCancelled = [&stop] { return stop.stop_requested(); };
    const auto portions = BoundedParallel<std::vector<FileFacts>>::run(
        (files.size() + portion - 1) / portion,
        [inputs](std::size_t index) {
            std::vector<FileFacts> facts;
            facts.reserve(portion);
            const std::size_t end = std::min(inputs->size(), (index + 1) * portion);
            for (std::size_t i = index * portion; i < end; ++i)
                facts.push_back(fileFacts((*inputs)[i].path()));
            return facts;
        },
        options);
    std::vector<FileFacts> facts(files.size());
    for (std::size_t p = 0; p < portions.size(); ++p)
        if (portions[p])
            std::copy(portions[p]->begin(), portions[p]->end(),
                      facts.begin() + static_cast<std::ptrdiff_t>(p * portion));
    return facts;
}

} // namespace halvane
