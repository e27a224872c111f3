// SPDX-License-Identifier: MIT
#include "library/catalog/library_size.h"

#include "library/background.h"
#include "library/catalog/library_catalog.h"
#include "metadata/file_dates.h"
#include "metadata/parallel/bounded_parallel.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace halvane {

namespace {

qint64 totalSizeOf(const std::shared_ptr<const TrackRows>& rows,
                   const std::shared_ptr<std::atomic<bool>>& cancelled) {
    constexpr std::size_t portion = 256;
    BoundedParallel<qint64>::Options options;
    options.threads = 1;
    options.patience = 5s; // with one portion
    options.isCancelled = [cancelled] { return cancelled->load(); };
    const auto sizeOfPortion = [rows](std::size_t index) {
        qint64 size = 0;
        const std::size_t end = std::min(rows->size(), (index + 1) * portion);
        for (std::size_t i = index * portion; i < end; ++i) {
            const Track& track = *(*rows)[i];
            if (!track.fileSize.isKnown() && track.sourceURL) {
                const FileFacts facts = fileFacts(track.sourceURL->path());
                if (facts.exists)
                    track.fileSize.learn(facts.size);
            }
            size += std::max(track.fileSize.bytes(), qint64(0));
        }
        return size;
    };
    qint64 total = 0;
    for (const auto& size : BoundedParallel<qint64>::run((rows->size() + portion - 1) / portion,
                                                         sizeOfPortion, options))
        total += size.value_or(0);
    return total;
}

} // namespace

LibrarySize::LibrarySize(const LibraryCatalog& catalog, QObject* parent)
    : QObject(parent)
    , m_catalog(catalog) {
    m_worker.setMaxThreadCount(1);
}

LibrarySize::~LibrarySize() {
    cancel();
    m_worker.waitForDone();
}

void LibrarySize::cancel() {
    if (m_cancelled)
        *m_cancelled = true;
    m_worker.clear();
}

void LibrarySize::measure() {
    cancel();
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    runInBackground(
        m_worker, this,
        [rows = m_catalog.catalog()->rows, cancelled = m_cancelled] {
            yieldToTheWindow();
            return totalSizeOf(rows, cancelled);
        },
        [this, cancelled = m_cancelled](qint64 total) {
            if (*cancelled || total == m_totalBytes)
                return;
            m_totalBytes = total;
            Q_EMIT totalBytesChanged();
        });
}

} // namespace halvane
