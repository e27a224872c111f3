// SPDX-License-Identifier: MIT
#include "metadata/cache/metadata_index.h"

#include "metadata/parallel/bounded_parallel.h"

#include <QFile>

#include <simdjson.h>

#include <array>
#include <limits>
#include <string_view>
#include <unordered_map>

namespace halvane {

namespace {

namespace dom = simdjson::dom;

using Records = std::vector<CachedTrackMetadata>;

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Decodes the records of one portion. A text that many records repeat is made once. The views that
// find it point into the parser's buffer.
class PortionDecoder {
  public:
    Records decode(const dom::array& array) {
        Records records;
        records.reserve(array.size());
        for (const dom::object object : array)
            records.push_back(decodeRecord(object));
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
        m_names = {};
        for (const dom::key_value_pair field : object)
            decodeField(record, field.key, field.value);
        if (m_found != All)
            throw simdjson::simdjson_error(simdjson::NO_SUCH_FIELD);
        if (!m_names.isEmpty())
            record.albumTags.sortNames = shared(std::move(m_names));
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
            record.artist = shared(found(Artist, value), m_last[0]);
        else if (key == "album")
            record.album = shared(found(AlbumTitle, value), m_last[1]);
        else if (key == "genre")
            record.genre = shared(found(Genre, value), m_last[2]);
        else if (key == "year")
            record.year = found(Year, value).get_int64();
        else if (key == "duration")
            record.duration = shared(found(Duration, value), m_last[3]);
        else if (key == "quality")
            record.quality = shared(found(Quality, value), m_last[4]);
        else if (key == "sampleRate")
            record.sampleRate = shared(found(SampleRate, value), m_last[5]);
        else if (key == "bitDepth")
            record.bitDepth = shared(found(BitDepth, value), m_last[6]);
        else if (key == "hasEmbeddedArtwork")
            record.hasEmbeddedArtwork = found(HasArtwork, value).get_bool();
        else if (key == "fileSize")
            record.fileSize = value.get_int64();
        else if (key == "addedDate" && value.is_number())
            record.addedDate = value.get_double();
        else if (key == "durationSeconds" && !value.is_null())
            record.durationSeconds = value.get_double();
        else if (key == "coverURLPath" && !value.is_null())
            record.coverURL = sharedUrl(value);
        else
            decodeAlbumTag(record, key, value);
    }

    void decodeAlbumTag(CachedTrackMetadata& record, std::string_view key,
                        const dom::element& value) {
        if (key == "albumArtist")
            record.albumTags.albumArtist = shared(value, m_last[7]);
        else if (key == "trackNumber")
            record.albumTags.track = small<quint16>(value);
        else if (key == "discNumber")
            record.albumTags.disc = small<quint16>(value);
        else if (key == "readerVersion")
            record.readerVersion = small<quint8>(value);
        else if (key == "identity") // one that a later version writes otherwise is not known
            record.identity =
                SoundIdentity::fromText(fromUtf8(value.get_string())).value_or(SoundIdentity());
        else if (key == "ratingTag")
            record.saidTags.rating = small<quint8>(value);
        else if (key == "playsTag")
            record.saidTags.plays = small<quint32>(value);
        else if (key == "artistSort")
            m_names.artist = shared(value, m_last[8]);
        else if (key == "albumArtistSort")
            m_names.albumArtist = shared(value, m_last[9]);
        else if (key == "albumSort")
            m_names.album = shared(value, m_last[10]);
        else
            decodeLevelTag(record.levelTags, key, value);
    }

    static void decodeLevelTag(LevelTags& tags, std::string_view key, const dom::element& value) {
        std::optional<float>* level = key == "trackGain"   ? &tags.trackGain
                                      : key == "trackPeak" ? &tags.trackPeak
                                      : key == "albumGain" ? &tags.albumGain
                                      : key == "albumPeak" ? &tags.albumPeak
                                                           : nullptr;
        if (level)
            *level = static_cast<float>(double(value.get_double()));
    }

    // A number out of range is of another kind.
    template<typename Number>
    static Number small(const dom::element& value) {
        const std::uint64_t number = value.get_uint64();
        if (number > std::numeric_limits<Number>::max())
            throw simdjson::simdjson_error(simdjson::NUMBER_OUT_OF_RANGE);
        return static_cast<Number>(number);
    }

    const dom::element& found(Required which, const dom::element& value) {
        m_found |= which;
        return value;
    }

    // The text that the record before has in one field.
    struct Last {
        std::string_view utf8;
        QString text;
    };

    QString shared(const dom::element& value, Last& last) {
        const std::string_view text = value.get_string();
        if (text == last.utf8) // as in the record before
            return last.text;
        const auto [known, isNew] = m_texts.try_emplace(text);
        if (isNew)
            known->second = fromUtf8(text);
        last = {text, known->second};
        return known->second;
    }

    std::shared_ptr<const SortNames> shared(SortNames names) {
        if (!m_lastNames || *m_lastNames != names)
            m_lastNames = std::make_shared<const SortNames>(std::move(names));
        return m_lastNames;
    }

    FileUrl sharedUrl(const dom::element& value) {
        const std::string_view text = value.get_string();
        if (!m_lastUrl || m_lastUrl->first != text)
            m_lastUrl = &*m_urls.try_emplace(text, fromUtf8(text)).first;
        return m_lastUrl->second;
    }

    std::unordered_map<std::string_view, QString> m_texts;
    std::unordered_map<std::string_view, FileUrl> m_urls;
    std::array<Last, 11> m_last; // one for each field whose texts repeat
    SortNames m_names;           // of the record that is being decoded
    std::shared_ptr<const SortNames> m_lastNames;
    const std::pair<const std::string_view, FileUrl>* m_lastUrl = nullptr;
    unsigned m_found = 0;
};

// The records in a stretch of the index that begins after a bracket or comma and ends before one;
// none when it is no such list.
std::optional<Records> decodePortion(std::string_view list) {
    // Reused for each portion, so that the parser's memory stays in the processor's cache.
    thread_local dom::parser parser;
    thread_local std::string array;
    array.assign(1, '[').append(list).append(1, ']');
    array.reserve(array.size() + simdjson::SIMDJSON_PADDING);
    try {
        const dom::array records = parser.parse(array.data(), array.size(), false);
        return PortionDecoder().decode(records);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// Cuts a list of records into portions of about one size. The characters at a cut can't stand
// inside a text, where quotes are escaped. A cut inside a nested value leaves two portions with
// unmatched brackets, which do not decode.
std::vector<std::string_view> portionsOf(std::string_view list) {
    constexpr std::size_t portionBytes = 512 << 10;
    constexpr std::string_view between = R"(},{"path":)";
    std::vector<std::string_view> portions;
    while (list.size() > portionBytes) {
        const std::size_t at = list.find(between, portionBytes);
        if (at == std::string_view::npos)
            break;
        portions.push_back(list.substr(0, at + 1));
        list.remove_prefix(at + 2);
    }
    portions.push_back(list);
    return portions;
}

std::optional<std::vector<Records>> decodePortions(const std::shared_ptr<const QByteArray>& json,
                                                   std::vector<std::string_view> portions) {
    using Decoded = std::optional<Records>;
    BoundedParallel<Decoded>::Options options;
    options.threads = std::max(1U, std::thread::hardware_concurrency());
    const std::size_t count = portions.size();
    auto decoded = BoundedParallel<Decoded>::run(
        count,
        [json, portions = std::move(portions)](std::size_t i) {
            return decodePortion(portions[i]);
        },
        options);
    std::vector<Records> records;
    records.reserve(count);
    for (auto& portion : decoded) {
        if (!portion || !*portion)
            return std::nullopt;
        records.push_back(**std::move(portion));
    }
    return records;
}

// What stands between the brackets of an array; none when there are no such brackets.
std::optional<std::string_view> listWithin(std::string_view json) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = json.find_first_not_of(blanks);
    const std::size_t last = json.find_last_not_of(blanks);
    if (first == std::string_view::npos || first == last || json[first] != '[' || json[last] != ']')
        return std::nullopt;
    return json.substr(first + 1, last - first - 1);
}

} // namespace

MetadataIndex::MetadataIndex(std::vector<Records> portions)
    : m_portions(std::move(portions)) {
    qsizetype count = 0;
    for (const Records& records : m_portions)
        count += static_cast<qsizetype>(records.size());
    m_byPath.reserve(count);
    for (const Records& records : m_portions)
        for (const CachedTrackMetadata& record : records)
            m_byPath.insert(record.path, &record);
}

MetadataIndex decodeIndex(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const auto json = std::make_shared<const QByteArray>(file.readAll());
    const auto list = listWithin({json->constData(), static_cast<std::size_t>(json->size())});
    if (!list)
        return {};
    auto records = decodePortions(json, portionsOf(*list));
    if (!records)
        records = decodePortions(json, {*list}); // as another writer may have laid it out
    return records ? MetadataIndex(std::move(*records)) : MetadataIndex();
}

} // namespace halvane
