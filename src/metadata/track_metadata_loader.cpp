// SPDX-License-Identifier: MIT
#include "metadata/track_metadata_loader.h"

#include "metadata/bounded_parallel.h"
#include "metadata/embedded_picture.h"
#include "metadata/file_reader.h"
#include "metadata/folder_names.h"
#include "model/string_pool.h"
#include "presentation/l10n.h"

#include <QSet>

#include <cmath>

namespace halvane::TrackMetadataLoader {

using namespace Qt::StringLiterals;

namespace {

struct FileName {
    QString base;
    QString extension;

    explicit FileName(const FileUrl& url) {
        const QString name = url.fileName();
        const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
        const bool hasExtension = dot > 0 && dot + 1 < name.size();
        base = hasExtension ? name.left(dot) : name;
        extension = hasExtension ? name.mid(dot + 1) : QString();
    }
};

/// Only of formats that are always lossy: "m4a" may hold lossless audio.
bool showsBitrate(const QString& lowerCasedExtension) {
    static const QSet<QString> extensions{u"mp3"_s, u"aac"_s, u"m4b"_s};
    return extensions.contains(lowerCasedExtension);
}

std::optional<qint64> bitrateKbps(const QString& extension, qint64 fileSize, double seconds) {
    if (!(seconds > 1.0) || fileSize < 0 || !showsBitrate(extension.toLower()))
        return std::nullopt;
    return std::llround(static_cast<double>(fileSize) * 8 / seconds / 1000);
}

QueueItem itemFrom(const FileUrl& url, const AudioFileReading& reading,
                   const std::optional<FileUrl>& cover, ResolvedLanguage language) {
    const FileName name(url);
    const TagFields& tags = reading.metadata.tags;
    const StreamFacts& stream = reading.metadata.stream;

    QueueItem item;
    item.sourceURL = url;
    item.title = tags.title().isEmpty() ? name.base : tags.title();
    item.album = tags.album().isEmpty() ? folderAlbumName(url, language) : tags.album();
    item.artist = tags.artist();
    if (item.artist.isEmpty())
        item.artist =
            folderArtistName(url, item.album).value_or(L10n::text(L10nKey::localFile, language));
    item.genre = tags.genre();
    item.year = tags.year();
    item.coverURL = cover;
    if (tags.hasPicture())
        item.coverImageData =
            Artwork(std::make_shared<EmbeddedPicture>(url, reading.modificationDate));
    item.duration = stream.seconds > 0 ? formatDuration(stream.seconds) : u"--:--"_s;
    if (stream.seconds > 0)
        item.durationSeconds = stream.seconds;
    item.sampleRate = sampleRateText(stream.sampleRate);
    item.bitDepth = bitDepthText(stream.bitsPerSample);
    item.quality = qualityLabel(name.extension.isEmpty() ? u"Audio"_s : name.extension.toUpper(),
                                item.sampleRate, item.bitDepth,
                                bitrateKbps(name.extension, reading.fileSize, stream.seconds));
    return item;
}

void shareTexts(QueueItem& item, StringPool& pool) {
    for (QString* text : {&item.artist, &item.album, &item.genre, &item.duration, &item.quality,
                          &item.sampleRate, &item.bitDepth})
        *text = pool.shared(*text);
}

} // namespace

QueueItem queueItem(const FileUrl& url, ResolvedLanguage language) {
    return itemFrom(url, readAudioFile(url.path()), folderArtworkURL(url), language);
}

std::vector<LoadedItem> loadItems(const std::vector<FileUrl>& urls, ResolvedLanguage language,
                                  const Accompaniment& with) {
    // Shared with the readers, of which a stuck one may outlive this call.
    struct Inputs {
        std::vector<FileUrl> urls;
        FolderCovers covers;
    };
    auto inputs = std::make_shared<Inputs>();
    inputs->urls = urls;

    BoundedParallel<LoadedItem>::Options options;
    options.threads = concurrentFiles;
    options.isCancelled = [&with] { return with.cancelled && *with.cancelled; };
    options.progress = with.progress;
    auto results = BoundedParallel<LoadedItem>::run(
        urls.size(),
        [inputs, language, isEvicted = with.isEvicted](std::size_t index) {
            const FileUrl& url = inputs->urls[index];
            const bool isElsewhere = isEvicted && isEvicted(url.path());
            const AudioFileReading reading =
                isElsewhere ? AudioFileReading() : readAudioFile(url.path());
            return LoadedItem{
                itemFrom(url, reading, inputs->covers.cover(folderOf(url.path())), language),
                reading.fileSize};
        },
        options);

    std::vector<LoadedItem> items;
    items.reserve(results.size());
    StringPool pool;
    for (std::size_t i = 0; i < results.size(); ++i) {
        items.push_back(results[i] ? std::move(*results[i])
                                   : LoadedItem{itemFrom(urls[i], {}, std::nullopt, language)});
        shareTexts(items.back().item, pool);
    }
    return items;
}

std::vector<QueueItem> queueItems(const std::vector<FileUrl>& urls, ResolvedLanguage language,
                                  const Accompaniment& with) {
    std::vector<QueueItem> items;
    for (LoadedItem& loaded : loadItems(urls, language, with))
        items.push_back(std::move(loaded.item));
    return items;
}

StreamDetails audioStreamDetails(const FileUrl& file) {
    const StreamFacts facts = readAudioFile(file.path()).metadata.stream;
    return {sampleRateText(facts.sampleRate), bitDepthText(facts.bitsPerSample)};
}

} // namespace halvane::TrackMetadataLoader
