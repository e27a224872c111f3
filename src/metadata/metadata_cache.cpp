// SPDX-License-Identifier: MIT
#include "metadata/metadata_cache.h"

#include "metadata/artwork_keeper.h"
#include "metadata/atomic_file.h"
#include "metadata/bounded_parallel.h"
#include "metadata/file_dates.h"

#include <QDir>
#include <QSet>

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

QString indexFile(const QString& directory) {
    return directory + u"/library-cache.json"_s;
}

/// Looks at the dates of many files at once. A disk that does not answer leaves its files without
/// facts, as if they were gone: their records stand.
std::vector<FileFacts> factsOf(const std::vector<FileUrl>& urls,
                               const TrackMetadataLoader::Accompaniment& with) {
    constexpr std::size_t portion = 512;
    auto inputs = std::make_shared<const std::vector<FileUrl>>(urls);
    BoundedParallel<std::vector<FileFacts>>::Options options;
    options.threads = lookingThreads();
    options.isCancelled = [&with] { return with.cancelled && *with.cancelled; };
    const auto portions = BoundedParallel<std::vector<FileFacts>>::run(
        (urls.size() + portion - 1) / portion,
        [inputs](std::size_t index) {
            std::vector<FileFacts> facts;
            const std::size_t end = std::min(inputs->size(), (index + 1) * portion);
            for (std::size_t i = index * portion; i < end; ++i)
                facts.push_back(fileFacts((*inputs)[i].path()));
            return facts;
        },
        options);
    std::vector<FileFacts> facts(urls.size());
    for (std::size_t p = 0; p < portions.size(); ++p)
        if (portions[p])
            std::copy(portions[p]->begin(), portions[p]->end(),
                      facts.begin() + static_cast<std::ptrdiff_t>(p * portion));
    return facts;
}

} // namespace

void MetadataCache::ensureDirectoriesExist() const {
    QDir().mkpath(m_directory + u"/Artwork"_s);
}

FileUrl MetadataCache::artworkFileURL(const QString& forPath) const {
    return FileUrl(artworkPath(m_directory, forPath));
}

double MetadataCache::modificationDate(const QString& atPath) {
    return fileFacts(atPath).modificationDate;
}

MetadataIndex MetadataCache::loadIndex() const {
    return decodeIndex(indexFile(m_directory));
}

void MetadataCache::save(const std::vector<QueueItem>& items) const {
    save(items.size(), [&items](std::size_t index) { return items[index]; });
}

void MetadataCache::save(std::size_t count,
                         const std::function<QueueItem(std::size_t)>& itemAt) const {
    constexpr qsizetype portion = 1 << 20;
    ensureDirectoriesExist();
    ArtworkKeeper artwork(m_directory);
    AtomicFile index(indexFile(m_directory));
    QByteArray json("[");
    QSet<QString> written;
    // Backwards, so that of several items with one path the last is the one that is written.
    for (std::size_t i = count; i-- > 0;) {
        const QueueItem item = itemAt(i);
        const QString path = item.path();
        if (!item.sourceURL || written.contains(path))
            continue;
        if (item.coverImageData)
            artwork.keep(*item.coverImageData, path);
        if (!written.isEmpty())
            json += ',';
        written.insert(path);
        appendJson(json, CachedTrackMetadata(item, path));
        if (json.size() > portion) {
            index.write(json);
            json.resize(0);
        }
    }
    index.write(json + ']');
    index.commit();
}

std::vector<QueueItem>
MetadataCache::queueItems(const std::vector<FileUrl>& urls, ResolvedLanguage language,
                          const TrackMetadataLoader::Accompaniment& with) const {
    std::vector<QueueItem> items;
    for (LoadedItem& loaded : loadItems(urls, language, loadIndex(), with))
        items.push_back(std::move(loaded.item));
    return items;
}

std::vector<LoadedItem>
MetadataCache::loadItems(const std::vector<FileUrl>& urls, ResolvedLanguage language,
                         const MetadataIndex& index,
                         const TrackMetadataLoader::Accompaniment& with) const {
    const std::vector<FileFacts> facts = factsOf(urls, with);

    std::vector<LoadedItem> items(urls.size());
    std::vector<FileUrl> misses;
    std::vector<std::size_t> positions;
    for (std::size_t i = 0; i < urls.size(); ++i) {
        const CachedTrackMetadata* record = index.find(urls[i].standardizedPath());
        if (record && (!facts[i].exists || record->modificationDate == facts[i].modificationDate)) {
            items[i] = {record->item(m_directory, urls[i]), facts[i].exists ? facts[i].size : -1,
                        true};
        } else if (facts[i].exists) {
            misses.push_back(urls[i]);
            positions.push_back(i);
        }
    }
    auto loaded = TrackMetadataLoader::loadItems(misses, language, with);
    for (std::size_t i = 0; i < loaded.size(); ++i)
        items[positions[i]] = std::move(loaded[i]);
    // What is neither there nor known has no file.
    std::erase_if(items, [](const LoadedItem& item) { return !item.item.sourceURL; });
    return items;
}

void MetadataCache::streamItems(const std::vector<FileUrl>& urls, ResolvedLanguage language,
                                std::shared_ptr<const MetadataIndex> index,
                                TrackMetadataLoader::Accompaniment with,
                                const TrackMetadataLoader::TakeItems& take) const {
    with.known = [index = std::move(index),
                  directory = m_directory](const FileUrl& url) -> std::optional<LoadedItem> {
        const CachedTrackMetadata* record = index->find(url.standardizedPath());
        if (!record)
            return std::nullopt; // whether there is such a file its reader finds out
        const FileFacts facts = fileFacts(url.path());
        if (facts.exists && record->modificationDate != facts.modificationDate)
            return std::nullopt;
        return LoadedItem{record->item(directory, url), facts.exists ? facts.size : -1, true};
    };
    TrackMetadataLoader::streamItems(urls, language, with, [&take](std::vector<LoadedItem> next) {
        std::erase_if(next, [](const LoadedItem& item) { return item.isGone; });
        take(std::move(next));
    });
}

} // namespace halvane
