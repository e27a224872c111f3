// SPDX-License-Identifier: MIT
#include "metadata/cache/cached_track_metadata.h"

#include "metadata/cache/cached_picture.h"
#include "metadata/file_dates.h"

#include <QCryptographicHash>

#include <charconv>

namespace halvane {

using namespace Qt::StringLiterals;

CachedTrackMetadata::CachedTrackMetadata(const QueueItem& item, const QString& trackPath)
    : path(trackPath)
    , modificationDate(item.readDate != 0 ? item.readDate : fileFacts(trackPath).modificationDate)
    , addedDate(item.addedDate)
    , fileSize(item.fileSize)
    , title(item.title)
    , artist(item.artist)
    , album(item.album)
    , genre(item.genre)
    , year(item.year)
    , duration(item.duration)
    , durationSeconds(item.durationSeconds)
    , quality(item.quality)
    , sampleRate(item.sampleRate)
    , bitDepth(item.bitDepth)
    , albumTags(item.albumTags)
    , levelTags(item.levelTags)
    , saidTags(item.saidTags)
    , coverURL(item.coverURL)
    , hasEmbeddedArtwork(item.coverImageData.has_value())
    , readerVersion(item.readerVersion)
    , identity(item.identity) {
}

QueueItem CachedTrackMetadata::item(const QString& cacheDirectory, const FileUrl& file) const {
    QueueItem item;
    item.title = title;
    item.artist = artist;
    item.album = album;
    item.genre = genre;
    item.year = year;
    item.duration = duration;
    item.durationSeconds = durationSeconds;
    item.quality = quality;
    item.sampleRate = sampleRate;
    item.bitDepth = bitDepth;
    item.albumTags = albumTags;
    item.levelTags = levelTags;
    item.saidTags = saidTags;
    item.readerVersion = readerVersion;
    item.identity = identity;
    item.coverURL = coverURL;
    item.sourceURL = file.path() == path ? file : FileUrl(path);
    item.readDate = modificationDate;
    item.addedDate = addedDate;
    item.fileSize = fileSize;
    if (hasEmbeddedArtwork)
        item.coverImageData = Artwork(std::make_shared<CachedPicture>(cacheDirectory, path));
    return item;
}

QString artworkPath(const QString& cacheDirectory, const QString& trackPath) {
    const QByteArray digest =
        QCryptographicHash::hash(trackPath.toUtf8(), QCryptographicHash::Sha256).toHex();
    return cacheDirectory + u"/Artwork/"_s + QString::fromLatin1(digest);
}

namespace {

void appendText(QByteArray& json, const QString& text) {
    static constexpr char hex[] = "0123456789abcdef";
    json += '"';
    const QByteArray bytes = text.toUtf8();
    for (const char c : bytes) {
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            json += "\\u00";
            json += hex[c >> 4];
            json += hex[c & 15];
        } else {
            json += c;
        }
    }
    json += '"';
}

void appendKey(QByteArray& json, const char* key) {
    json += json.endsWith('{') ? "\"" : ",\"";
    json += key;
    json += "\":";
}

void appendText(QByteArray& json, const char* key, const QString& text) {
    appendKey(json, key);
    appendText(json, text);
}

void appendTextIfAny(QByteArray& json, const char* key, const QString& text) {
    if (!text.isEmpty())
        appendText(json, key, text);
}

// The shortest digits that read back as the same number.
template<typename Number>
void appendNumber(QByteArray& json, const char* key, Number value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    appendKey(json, key);
    json.append(digits, end - digits);
}

void appendAlbumTags(QByteArray& json, const AlbumTags& tags) {
    appendTextIfAny(json, "albumArtist", tags.albumArtist);
    if (tags.disc > 0)
        appendNumber(json, "discNumber", tags.disc);
    if (tags.track > 0)
        appendNumber(json, "trackNumber", tags.track);
    if (!tags.sortNames)
        return;
    appendTextIfAny(json, "artistSort", tags.sortNames->artist);
    appendTextIfAny(json, "albumArtistSort", tags.sortNames->albumArtist);
    appendTextIfAny(json, "albumSort", tags.sortNames->album);
}

void appendLevelTags(QByteArray& json, const LevelTags& tags) {
    const std::pair<const char*, const std::optional<float>&> levels[] = {
        {"trackGain", tags.trackGain},
        {"trackPeak", tags.trackPeak},
        {"albumGain", tags.albumGain},
        {"albumPeak", tags.albumPeak}};
    for (const auto& [key, level] : levels)
        if (level)
            appendNumber(json, key, *level);
}

} // namespace

void appendJson(QByteArray& json, const CachedTrackMetadata& record) {
    json += '{';
    appendText(json, "path", record.path);
    appendNumber(json, "modificationDate", record.modificationDate);
    if (record.addedDate > 0)
        appendNumber(json, "addedDate", record.addedDate);
    if (record.fileSize >= 0)
        appendNumber(json, "fileSize", record.fileSize);
    appendText(json, "title", record.title);
    appendText(json, "artist", record.artist);
    appendText(json, "album", record.album);
    appendText(json, "genre", record.genre);
    appendNumber(json, "year", record.year);
    appendText(json, "duration", record.duration);
    if (record.durationSeconds)
        appendNumber(json, "durationSeconds", *record.durationSeconds);
    appendText(json, "quality", record.quality);
    appendText(json, "sampleRate", record.sampleRate);
    appendText(json, "bitDepth", record.bitDepth);
    appendAlbumTags(json, record.albumTags);
    appendLevelTags(json, record.levelTags);
    if (record.saidTags.rating > 0)
        appendNumber(json, "ratingTag", record.saidTags.rating);
    if (record.saidTags.plays > 0)
        appendNumber(json, "playsTag", record.saidTags.plays);
    if (record.coverURL)
        appendText(json, "coverURLPath", record.coverURL->path());
    if (record.readerVersion > 0)
        appendNumber(json, "readerVersion", record.readerVersion);
    if (record.identity.isKnown())
        appendText(json, "identity", record.identity.text());
    appendKey(json, "hasEmbeddedArtwork");
    json += record.hasEmbeddedArtwork ? "true}" : "false}";
}

} // namespace halvane
