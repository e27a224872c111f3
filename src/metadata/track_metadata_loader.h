// SPDX-License-Identifier: MIT
// Turns files on disk into library entries: finds the playable ones, reads their tags, streams and
// sizes, and derives from file and folder names what the tags do not say. Any thread, but functions
// that look at files block on the disk and must not run on the main thread. Audio files are only
// ever opened for reading.
#pragma once

#include "model/file_url.h"
#include "model/queue_item.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

class QUrl;

namespace halvane {

class ReadingJournal;

/// What reading a file yields.
struct LoadedItem {
    QueueItem item;
    bool isFromCache = false; ///< the file was not opened
    bool isMissing = false;   ///< there is no file, and the item is what its name says
};

namespace TrackMetadataLoader {

/// Whether the extension, in any case, is one of those that can be played.
bool isPlayable(const QString& fileName);

/// What was found under some roots.
struct AudioFiles {
    std::vector<FileUrl> urls;
    std::size_t leftOut = 0;      ///< files of music of kinds that can't be played
    std::vector<QString> missing; ///< roots that are not there
};

/// The playable files under the roots (files or folders), root by root. Each folder's files are
/// sorted by path, code point by code point. Hidden files and folders, the insides of packages,
/// unreadable folders and names that are not valid UTF-8 are left out. A link, which a root may be
/// too, gives only what no root gives by its own path. Duplicates across overlapping roots are
/// kept.
AudioFiles findAudioFiles(const std::vector<QString>& roots, const std::stop_token& stop = {});
/// The same without the count.
std::vector<FileUrl> audioFileURLs(const std::vector<QString>& roots,
                                   const std::stop_token& stop = {});

/// Helpers for reading many files. All members may be left out.
struct Accompaniment {
    std::shared_ptr<ReadingJournal> journal; ///< remembers files that crash or hang readers
    std::stop_token stop;                    ///< on request the files not yet read stay bare
    /// Whether the length of a file that does not state it is counted, for which the whole file is
    /// read, and every sound identified, for which some of it is. The length is guessed otherwise,
    /// and only a sound whose file states a checksum has its identity.
    bool isThorough = false;
    /// Whether opening a file would block until it is downloaded. Such a file yields what its name
    /// says. Called on many threads, and must own what it uses.
    std::function<bool(const QString& path)> isEvicted;
    /// Gives an item that is known without opening the file. Called on many threads, and must own
    /// what it uses.
    std::function<std::optional<LoadedItem>(const FileUrl& url)> known;
    /// Called now and then with the number of files done, on the calling thread.
    std::function<void(std::size_t done)> progress;
};

/// The names, in the user's language, of what neither tags nor folders name.
struct Fallbacks {
    QString album;
    QString artist;
};

/// How many files are read at the same time, at most.
inline constexpr int concurrentFiles = 8;

/// One item for each file, in the order of the input. Blocks until all are read. A file that takes
/// too long is given up and yields what its name says.
std::vector<QueueItem> queueItems(const std::vector<FileUrl>& urls, const Fallbacks& fallbacks,
                                  const Accompaniment& with = {});
/// The same, and whether each came from the cache.
std::vector<LoadedItem> loadItems(const std::vector<FileUrl>& urls, const Fallbacks& fallbacks,
                                  const Accompaniment& with = {});

/// Gets the next items. Called on the calling thread.
using TakeItems = std::function<void(std::vector<LoadedItem> next)>;
/// The same, handed over in the order of the input while later files are read. They come in
/// portions, of which the first is small, or as many as there are every tenth of a second.
void streamItems(const std::vector<FileUrl>& urls, const Fallbacks& fallbacks,
                 const Accompaniment& with, const TakeItems& take);

/// One file. Never fails: fields that can't be read get a default.
QueueItem queueItem(const FileUrl& url, const Fallbacks& fallbacks);

/// One item of a drop as a URL. Bytes are an encoded URL, and a string is parsed. None for anything
/// else.
std::optional<QUrl> url(const QVariant& fromDroppedItem);

/// The cover file in a file's folder: by a preferred name, or the only picture there. A folder of
/// one disc without a cover has that of the folder above.
std::optional<FileUrl> folderArtworkURL(const FileUrl& near);
/// The name of a file's folder, cleaned of a leading number and underscores; none where nothing is
/// left of it.
std::optional<QString> folderAlbumName(const FileUrl& file);
/// The name of the folder above a file's folder, where it can be an artist's.
std::optional<QString> folderArtistName(const FileUrl& file, const QString& album);
/// The disc that the name of a file's folder tells, such as "CD1", "CD 2 - Live" or "Disc 03".
std::optional<quint16> folderDiscNumber(const FileUrl& file);

/// The sample rate and bit depth of a file's first audio stream as texts; empty when not known.
struct StreamDetails {
    QString sampleRate;
    QString bitDepth;
};
StreamDetails audioStreamDetails(const FileUrl& file);
QString sampleRateText(double hertz);
QString bitDepthText(int bits);

/// "MP3 320 kbps · 44.1 kHz" with a bitrate, "FLAC 96 kHz / 24-bit" without.
QString qualityLabel(const QString& format, const QString& sampleRate, const QString& bitDepth,
                     std::optional<qint64> bitrateKbps);
/// "3:07", "1:02:05". The seconds must be finite and not negative.
QString formatDuration(double seconds);
/// The size of a file as a text, empty when it can't be read.
QString fileSizeString(const FileUrl& file);
std::optional<qint64> parseYear(const QString& text);

} // namespace TrackMetadataLoader

} // namespace halvane
