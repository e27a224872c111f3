// SPDX-License-Identifier: MIT
#include "metadata/track_metadata_loader.h"

#include "metadata/folder_names.h"
#include "metadata/parallel/bounded_parallel.h"
#include "metadata/parallel/reading_effort.h"
#include "metadata/parallel/reading_journal.h"
#include "metadata/readers/embedded_picture.h"
#include "metadata/readers/file_reader.h"
#include "model/string_pool.h"

#include <algorithm>
#include <cmath>
#include <iterator>

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

// True of formats that are always lossy, and of those that are where they tell no depth. An "m4a"
// may hold lossless audio, whose depth is not always known.
bool showsBitrate(const QString& lowerCasedExtension, const StreamFacts& stream) {
    static const QStringList lossy{u"mp3"_s, u"aac"_s, u"m4b"_s};
    static const QStringList lossyWithoutDepth{u"ogg"_s, u"oga"_s, u"opus"_s,
                                               u"wv"_s,  u"mpc"_s, u"wma"_s};
    return lossy.contains(lowerCasedExtension) ||
           (stream.bitsPerSample == 0 && lossyWithoutDepth.contains(lowerCasedExtension));
}

std::optional<qint64> bitrateKbps(const QString& extension, qint64 fileSize,
                                  const StreamFacts& stream) {
    if (!(stream.seconds > 1.0) || fileSize < 0 || !showsBitrate(extension.toLower(), stream))
        return std::nullopt;
    return std::llround(static_cast<double>(fileSize) * 8 / stream.seconds / 1000);
}

AlbumTags albumTagsFrom(const FileUrl& url, const TagFields& tags) {
    AlbumTags album;
    album.albumArtist = tags.albumArtist();
    album.disc = tags.disc() > 0 ? tags.disc() : folderDiscNumber(url).value_or(0);
    album.track = tags.track();
    if (!tags.sortNames().isEmpty())
        album.sortNames = std::make_shared<const SortNames>(tags.sortNames());
    return album;
}

QueueItem itemFrom(const FileUrl& url, const AudioFileReading& reading,
                   const std::optional<FileUrl>& cover, const Fallbacks& fallbacks) {
    const FileName name(url);
    const TagFields& tags = reading.metadata.tags;
    const StreamFacts& stream = reading.metadata.stream;

    QueueItem item;
    item.sourceURL = url;
    item.readDate = reading.modificationDate;
    item.fileSize = reading.fileSize;
    item.title = tags.title().isEmpty() ? name.base : tags.title();
    item.album =
        tags.album().isEmpty() ? folderAlbumName(url).value_or(fallbacks.album) : tags.album();
    item.artist = tags.artist();
    if (item.artist.isEmpty())
        item.artist = folderArtistName(url, item.album).value_or(fallbacks.artist);
    item.genre = tags.genre();
    item.year = tags.year();
    item.albumTags = albumTagsFrom(url, tags);
    item.levelTags = tags.levels();
    item.saidTags = tags.said();
    item.coverURL = cover;
    if (tags.hasPicture())
        item.coverImageData =
            Artwork(std::make_shared<EmbeddedPicture>(url, reading.modificationDate));
    item.duration = stream.seconds > 0 ? formatDuration(stream.seconds) : u"--:--"_s;
    if (stream.seconds > 0)
        item.durationSeconds = stream.seconds;
    item.identity = reading.identity;
    if (!reading.isFinished)
        item.readerVersion = unfinishedRecord;
    item.sampleRate = sampleRateText(stream.sampleRate);
    item.bitDepth = bitDepthText(stream.bitsPerSample);
    item.quality = qualityLabel(name.extension.isEmpty() ? u"Audio"_s : name.extension.toUpper(),
                                item.sampleRate, item.bitDepth,
                                bitrateKbps(name.extension, reading.fileSize, stream));
    return item;
}

// Gives the items of one batch shared texts.
class Sharing {
  public:
    void share(QueueItem& item) {
        for (QString* text : {&item.artist, &item.album, &item.genre, &item.duration, &item.quality,
                              &item.sampleRate, &item.bitDepth, &item.albumTags.albumArtist})
            *text = m_pool.shared(*text);
        auto& names = item.albumTags.sortNames;
        if (names && m_names && *names == *m_names) // as in the track before
            names = m_names;
        else if (names)
            m_names = names;
    }

  private:
    StringPool m_pool;
    std::shared_ptr<const SortNames> m_names;
};

} // namespace

QueueItem queueItem(const FileUrl& url, const Fallbacks& fallbacks) {
    return itemFrom(url, readAudioFile(url.path()), folderArtworkURL(url), fallbacks);
}

namespace {

// Reads files one by one, on any thread.
class Reader {
  public:
    Reader(std::vector<FileUrl> urls, const Fallbacks& fallbacks, const Accompaniment& with)
        : m_urls(std::move(urls))
        , m_fallbacks(fallbacks)
        , m_journal(with.journal)
        , m_known(with.known)
        , m_isEvicted(with.isEvicted)
        , m_isThorough(with.isThorough) {}

    LoadedItem read(std::size_t index, bool isAlone) {
        const FileUrl& url = m_urls[index];
        if (m_known)
            if (auto known = m_known(url))
                return std::move(*known);
        AudioFileReading reading;
        if (!(m_isEvicted && m_isEvicted(url.path())) && !isCondemned(url.path()))
            reading = readNoted(index, isAlone);
        return {itemFrom(url, reading, m_covers.cover(folderOf(url.path())), m_fallbacks), false,
                reading.isMissing};
    }
    [[nodiscard]] bool isSuspect(std::size_t index) const {
        return m_journal &&
               m_journal->verdict(m_urls[index].path()) == ReadingJournal::Verdict::suspect;
    }
    // The item of a file whose reader does not come back. A reader that waits for a disk does not
    // condemn the file, which may be in order.
    LoadedItem giveUp(std::size_t index) {
        constexpr std::chrono::seconds work{1};
        if (m_journal && m_effort.spentOn(index) > work)
            m_journal->condemn(m_urls[index].path());
        return bare(index);
    }
    [[nodiscard]] LoadedItem bare(std::size_t index) const {
        return {itemFrom(m_urls[index], {}, std::nullopt, m_fallbacks)};
    }

  private:
    [[nodiscard]] bool isCondemned(const QString& path) const {
        return m_journal && m_journal->verdict(path) == ReadingJournal::Verdict::condemned;
    }

    [[nodiscard]] AudioFileReading readWhole(const QString& path) const {
        AudioFileReading reading = readAudioFile(path);
        if (m_isThorough)
            finishReading(path, reading);
        return reading;
    }

    AudioFileReading readNoted(std::size_t index, bool isAlone) {
        const QString& path = m_urls[index].path();
        if (!m_journal)
            return readWhole(path);
        AudioFileReading reading;
        {
            const ReadingJournal::Entry entry(*m_journal, path, isAlone);
            const ReadingEffort::Scope scope(m_effort, index);
            reading = readWhole(path);
        }
        if (reading.isLate)
            m_journal->condemn(path);
        else if (isAlone)
            m_journal->acquit(path);
        return reading;
    }

    std::vector<FileUrl> m_urls;
    Fallbacks m_fallbacks;
    std::shared_ptr<ReadingJournal>
        m_journal; // shared, because a reader that is held up outlives its owner
    std::function<std::optional<LoadedItem>(const FileUrl& url)> m_known;
    std::function<bool(const QString& path)> m_isEvicted;
    const bool m_isThorough;
    FolderCovers m_covers;
    ReadingEffort m_effort; // by index
};

} // namespace

void streamItems(const std::vector<FileUrl>& urls, const Fallbacks& fallbacks,
                 const Accompaniment& with, const TakeItems& take) {
    using Parallel = BoundedParallel<LoadedItem>;
    constexpr Parallel::Portions portions{32, 256};
    // The threads share it, because one that is held up outlives this call.
    auto reader = std::make_shared<Reader>(urls, fallbacks, with);
    const auto isCancelled = [&with] { return with.stop.stop_requested(); };
    Sharing sharing;

    const auto readRange = [&](std::size_t begin, std::size_t end, std::size_t threads) {
        Parallel::Options options;
        options.threads = threads;
        options.isCancelled = isCancelled;
        if (with.progress)
            options.progress = [&with, begin](std::size_t done) { with.progress(begin + done); };
        std::size_t next = begin;
        Parallel::stream(
            end - begin,
            [reader, begin, isAlone = threads == 1](std::size_t i) {
                return reader->read(begin + i, isAlone);
            },
            options, portions,
            [&](Parallel::Results results) {
                std::vector<LoadedItem> items;
                items.reserve(results.size());
                for (auto& result : results) {
                    if (!result)
                        result = isCancelled() ? reader->bare(next) : reader->giveUp(next);
                    ++next;
                    items.push_back(std::move(*result));
                    sharing.share(items.back().item);
                }
                take(std::move(items));
            });
    };
    for (std::size_t begin = 0; begin < urls.size();) {
        // A file that may have harmed the program before is read alone.
        const bool isAlone = reader->isSuspect(begin);
        std::size_t end = begin + 1;
        while (!isAlone && end < urls.size() && !reader->isSuspect(end))
            ++end;
        readRange(begin, end, isAlone ? 1 : concurrentFiles);
        begin = end;
    }
}

std::vector<LoadedItem> loadItems(const std::vector<FileUrl>& urls, const Fallbacks& fallbacks,
                                  const Accompaniment& with) {
    std::vector<LoadedItem> items;
    items.reserve(urls.size());
    streamItems(urls, fallbacks, with, [&items](std::vector<LoadedItem> next) {
        std::move(next.begin(), next.end(), std::back_inserter(items));
    });
    return items;
}

std::vector<QueueItem> queueItems(const std::vector<FileUrl>& urls, const Fallbacks& fallbacks,
                                  const Accompaniment& with) {
    std::vector<QueueItem> items;
    for (LoadedItem& loaded : loadItems(urls, fallbacks, with))
        items.push_back(std::move(loaded.item));
    return items;
}

StreamDetails audioStreamDetails(const FileUrl& file) {
    const StreamFacts facts = readAudioFile(file.path()).metadata.stream;
    return {sampleRateText(facts.sampleRate), bitDepthText(facts.bitsPerSample)};
}

} // namespace halvane::TrackMetadataLoader
