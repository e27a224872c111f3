// SPDX-License-Identifier: MIT
#include "metadata/cached_track_metadata.h"

#include "metadata/cached_picture.h"
#include "metadata/file_dates.h"

#include <QCryptographicHash>

#include <simdjson.h>

#include <charconv>
#include <string_view>
#include <unordered_map>

namespace halvane {

using namespace Qt::StringLiterals;

CachedTrackMetadata::CachedTrackMetadata(const QueueItem& item, const QString& trackPath)
    : path(trackPath)
    , modificationDate(fileFacts(trackPath).modificationDate)
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
    , coverURL(item.coverURL)
    , hasEmbeddedArtwork(item.coverImageData.has_value()) {
}

QueueItem CachedTrackMetadata::item(const QString& cacheDirectory) const {
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
    item.coverURL = coverURL;
    item.sourceURL = FileUrl(path);
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

/// The shortest digits that read back as the same number.
template<typename Number>
void appendNumber(QByteArray& json, const char* key, Number value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    appendKey(json, key);
    json.append(digits, end - digits);
}

} // namespace

void appendJson(QByteArray& json, const CachedTrackMetadata& record) {
    json += '{';
    appendText(json, "path", record.path);
    appendNumber(json, "modificationDate", record.modificationDate);
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
    if (record.coverURL)
        appendText(json, "coverURLPath", record.coverURL->path());
    appendKey(json, "hasEmbeddedArtwork");
    json += record.hasEmbeddedArtwork ? "true}" : "false}";
}

namespace {

namespace dom = simdjson::dom;

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Decodes the records of one index. Texts that many records repeat are made once; the views by
/// which they are found live as long as the parser's buffer.
class IndexDecoder {
  public:
    QHash<QString, CachedTrackMetadata> decode(const dom::array& index) {
        QHash<QString, CachedTrackMetadata> records;
        records.reserve(static_cast<qsizetype>(index.size()));
        for (const dom::object object : index) {
            CachedTrackMetadata record = decodeRecord(object);
            const QString path = record.path;
            records.insert(path, std::move(record));
        }
        return records;
    }

  private:
    enum Required : unsigned {
        Path = 1,
        ModificationDate = 2,
        Title = 4,
        Artist = 8,
        AlbumTitle = 16,
        Genre = 32,
        Year = 64,
        Duration = 128,
        Quality = 256,
        SampleRate = 512,
        BitDepth = 1024,
        HasArtwork = 2048,
        All = 4095
    };

    CachedTrackMetadata decodeRecord(const dom::object& object) {
        CachedTrackMetadata record;
        m_found = 0;
        for (const dom::key_value_pair field : object)
            decodeField(record, field.key, field.value);
        if (m_found != All)
            throw simdjson::simdjson_error(simdjson::NO_SUCH_FIELD);
        return record;
    }

    void decodeField(CachedTrackMetadata& record, std::string_view key, const dom::element& value) {
        if (key == "path")
            record.path = fromUtf8(found(Path, value).get_string());
        else if (key == "modificationDate")
            record.modificationDate = found(ModificationDate, value).get_double();
        else if (key == "title")
            record.title = fromUtf8(found(Title, value).get_string());
        else if (key == "artist")
            record.artist = shared(found(Artist, value));
        else if (key == "album")
            record.album = shared(found(AlbumTitle, value));
        else if (key == "genre")
            record.genre = shared(found(Genre, value));
        else if (key == "year")
            record.year = found(Year, value).get_int64();
        else if (key == "duration")
            record.duration = shared(found(Duration, value));
        else if (key == "quality")
            record.quality = shared(found(Quality, value));
        else if (key == "sampleRate")
            record.sampleRate = shared(found(SampleRate, value));
        else if (key == "bitDepth")
            record.bitDepth = shared(found(BitDepth, value));
        else if (key == "hasEmbeddedArtwork")
            record.hasEmbeddedArtwork = found(HasArtwork, value).get_bool();
        else if (key == "durationSeconds" && !value.is_null())
            record.durationSeconds = value.get_double();
        else if (key == "coverURLPath" && !value.is_null())
            record.coverURL = sharedUrl(value);
    }

    const dom::element& found(Required which, const dom::element& value) {
        m_found |= which;
        return value;
    }

    QString shared(const dom::element& value) {
        const std::string_view text = value.get_string();
        const auto [known, isNew] = m_texts.try_emplace(text);
        if (isNew)
            known->second = fromUtf8(text);
        return known->second;
    }

    FileUrl sharedUrl(const dom::element& value) {
        const std::string_view text = value.get_string();
        const auto known = m_urls.find(text);
        return known != m_urls.end() ? known->second
                                     : m_urls.emplace(text, FileUrl(fromUtf8(text))).first->second;
    }

    std::unordered_map<std::string_view, QString> m_texts;
    std::unordered_map<std::string_view, FileUrl> m_urls;
    unsigned m_found = 0;
};

} // namespace

std::optional<QHash<QString, CachedTrackMetadata>> decodeIndex(const QString& file) {
    try {
        dom::parser parser;
        const dom::array index = parser.load(file.toStdString());
        return IndexDecoder().decode(index);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace halvane
