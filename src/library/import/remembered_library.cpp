// SPDX-License-Identifier: MIT
#include "library/import/remembered_library.h"

#include "library/catalog/track_conversion.h"
#include "metadata/parallel/bounded_parallel.h"

#include <future>
#include <iterator>

namespace halvane {

namespace {

// A second thread sorts one half.
void sortByPath(QStringList& paths) {
    if (std::is_sorted(paths.cbegin(), paths.cend()))
        return;
    const auto begin = paths.begin();
    const auto middle = begin + paths.size() / 2;
    const auto end = paths.end();
    auto secondHalf = std::async(std::launch::async, [middle, end] { std::sort(middle, end); });
    std::sort(begin, middle);
    secondHalf.get();
    std::inplace_merge(begin, middle, end);
}

struct Portion {
    TrackRows rows;
    std::vector<FileUrl> unknown;
};

std::vector<std::optional<Portion>> portionsOf(QStringList paths,
                                               const std::shared_ptr<const MetadataIndex>& index,
                                               const QString& cacheDirectory) {
    constexpr qsizetype length = 2048;
    BoundedParallel<Portion>::Options options;
    options.threads = std::max(1U, std::thread::hardware_concurrency());
    const auto count = static_cast<std::size_t>((paths.size() + length - 1) / length);
    const auto portionAt = [paths = std::move(paths), index, cacheDirectory](std::size_t number) {
        Portion portion;
        portion.rows.reserve(length);
        const qsizetype begin = static_cast<qsizetype>(number) * length;
        const qsizetype end = std::min(paths.size(), begin + length);
        for (qsizetype i = begin; i < end; ++i) {
            FileUrl file(paths[i]);
            if (const CachedTrackMetadata* record = index->find(file.standardizedPath()))
                portion.rows.push_back(
                    makeRow(trackFromQueueItem(record->item(cacheDirectory, file), {})));
            else
                portion.unknown.push_back(std::move(file));
        }
        return portion;
    };
    return BoundedParallel<Portion>::run(count, portionAt, options);
}

} // namespace

RememberedLibrary rememberedLibrary(QStringList paths,
                                    const std::shared_ptr<const MetadataIndex>& index,
                                    const QString& cacheDirectory) {
    sortByPath(paths);
    TrackRows rows;
    rows.reserve(static_cast<std::size_t>(paths.size()));
    RememberedLibrary remembered;
    for (auto& portion : portionsOf(std::move(paths), index, cacheDirectory)) {
        if (!portion)
            continue; // does not happen: nothing there can hang
        std::move(portion->rows.begin(), portion->rows.end(), std::back_inserter(rows));
        std::move(portion->unknown.begin(), portion->unknown.end(),
                  std::back_inserter(remembered.unknown));
    }
    remembered.rows = indexed(rows);
    return remembered;
}

} // namespace halvane
