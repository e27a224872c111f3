// SPDX-License-Identifier: MIT
#include "metadata/cache/metadata_cache.h"

#include "metadata/cache/artwork_keeper.h"
#include "metadata/cache/atomic_file.h"
#include "metadata/file_dates.h"

#include <QDir>
#include <QSet>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

QString indexFile(const QString& directory) {
    return directory + u"/library-cache.json"_s;
}

LoadedItem known(const CachedTrackMetadata& record, const QString& directory, const FileUrl& file,
                 const FileFacts& facts) {
    QueueItem item = record.item(directory, file);
    if (facts.exists)
        item.fileSize = facts.size;
    return {std::move(item), true};
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
    // The last of several items with one path is written, so this goes backwards.
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
MetadataCache::queueItems(const std::vector<FileUrl>& urls,
                          const TrackMetadataLoader::Fallbacks& fallbacks,
                          const TrackMetadataLoader::Accompaniment& with) const {
    std::vector<QueueItem> items;
    for (LoadedItem& loaded : loadItems(urls, fallbacks, loadIndex(), with))
        items.push_back(std::move(loaded.item));
    return items;
}

std::vector<LoadedItem> MetadataCache::loadItems(
    const std::vector<FileUrl>& urls, const TrackMetadataLoader::Fallbacks& fallbacks,
    const MetadataIndex& index, const TrackMetadataLoader::Accompaniment& with) const {
    const std::vector<FileFacts> facts = fileFacts(urls, with.stop);

    std::vector<LoadedItem> items(urls.size());
    std::vector<FileUrl> misses;
    std::vector<std::size_t> positions;
    for (std::size_t i = 0; i < urls.size(); ++i) {
        const CachedTrackMetadata* record = index.find(urls[i].standardizedPath());
        if (record && (!facts[i].exists || record->modificationDate == facts[i].modificationDate)) {
            items[i] = known(*record, m_directory, urls[i], facts[i]);
        } else if (facts[i].exists) {
            misses.push_back(urls[i]);
            positions.push_back(i);
        }
    }
    auto loaded = TrackMetadataLoader::loadItems(misses, fallbacks, with);
    for (std::size_t i = 0; i < loaded.size(); ++i)
        items[positions[i]] = std::move(loaded[i]);
    // An item stayed empty where the file is missing and has no record.
    std::erase_if(items, [](const LoadedItem& item) { return !item.item.sourceURL; });
    return items;
}

void MetadataCache::streamItems(const std::vector<FileUrl>& urls,
                                const TrackMetadataLoader::Fallbacks& fallbacks,
                                std::shared_ptr<const MetadataIndex> index,
                                TrackMetadataLoader::Accompaniment with,
                                const TrackMetadataLoader::TakeItems& take) const {
    with.known = [index = std::move(index),
                  directory = m_directory](const FileUrl& url) -> std::optional<LoadedItem> {
        const CachedTrackMetadata* record = index->find(url.standardizedPath());
        if (!record)
            return std::nullopt; // the reader finds out whether there is such a file
        const FileFacts facts = fileFacts(url.path());
        if (facts.exists && record->modificationDate != facts.modificationDate)
            return std::nullopt;
        return known(*record, directory, url, facts);
    };
    TrackMetadataLoader::streamItems(urls, fallbacks, with, [&take](std::vector<LoadedItem> next) {
        std::erase_if(next, [](const LoadedItem& item) { return item.isMissing; });
        take(std::move(next));
    });
}

} // namespace halvane
