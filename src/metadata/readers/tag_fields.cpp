// SPDX-License-Identifier: MIT
#include "metadata/readers/tag_fields.h"

#include "metadata/encodings/legacy_text.h"
#include "metadata/readers/rating_tags.h"

#include <algorithm>
#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

std::optional<qint64> parseYear(const QString& text) {
    // A piece is a run of characters that are numbers in any script; only four ASCII digits parse.
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = start;
        while (end < text.size() && text.at(end).isNumber())
            ++end;
        if (end - start == 4) {
            bool isNumber = false;
            const int year = QStringView(text).mid(start, 4).toInt(&isNumber);
            if (isNumber && year >= 1900 && year <= 2100)
                return year;
        }
        start = end + 1;
    }
    return std::nullopt;
}

std::optional<quint16> parseNumber(const QString& text) {
    qsizetype end = 0;
    while (end < text.size() && text.at(end) >= u'0' && text.at(end) <= u'9')
        ++end;
    const quint16 number = QStringView(text).first(end).toUShort();
    return number > 0 ? std::optional(number) : std::nullopt;
}

namespace {

// The number in front, which some programs write with a comma, or with a plus that none needs.
std::optional<double> leadingNumber(const QString& text) {
    QString number = text.section(u' ', 0, 0).replace(u',', u'.');
    if (number.endsWith(u"dB"_s, Qt::CaseInsensitive))
        number.chop(2);
    bool isNumber = false;
    const double value = number.toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<float> parseGain(const QString& text) {
    constexpr double largest = 64; // dB; more than any music needs
    const auto gain = leadingNumber(text);
    return gain && std::abs(*gain) <= largest ? std::optional(static_cast<float>(*gain))
                                              : std::nullopt;
}

std::optional<float> parseR128Gain(const QString& text) {
    constexpr float fromBroadcast = -18 - -23; // dB, between the two references
    bool isNumber = false;
    const qint16 gain = text.toShort(&isNumber);
    return isNumber ? std::optional(static_cast<float>(gain) / 256 + fromBroadcast) : std::nullopt;
}

std::optional<float> parsePeak(const QString& text) {
    constexpr double largest = 64; // of full scale; decoders of lossy formats give a little over 1
    const auto peak = leadingNumber(text);
    return peak && *peak > 0 && *peak <= largest
               ? std::optional(static_cast<float>(20 * std::log10(*peak)))
               : std::nullopt;
}

namespace {

// A value that can't be read leaves what an earlier tag said.
void take(std::optional<float>& level, std::optional<float> value) {
    if (value)
        level = value;
}

} // namespace

void TagFields::add(TagField field, const QString& value) {
    const QString text = value.trimmed();
    if (text.isEmpty())
        return;
    switch (field) {
    case TagField::title:
        m_title = text;
        break;
    case TagField::artist:
    case TagField::albumArtist:
        addArtists(field, {text});
        break;
    case TagField::albumName:
        m_album = text;
        break;
    case TagField::type:
        m_genre = text;
        break;
    case TagField::creationDate:
        m_year = parseYear(text).value_or(m_year);
        break;
    case TagField::discNumber:
        m_disc = parseNumber(text).value_or(m_disc);
        break;
    case TagField::trackNumber:
        m_track = parseNumber(text).value_or(m_track);
        break;
    case TagField::compilation:
        m_isCompilation = parseNumber(text).has_value();
        break;
    case TagField::artistSort:
        m_sortNames.artist = text;
        break;
    case TagField::albumArtistSort:
        m_sortNames.albumArtist = text;
        break;
    case TagField::albumSort:
        m_sortNames.album = text;
        break;
    case TagField::trackGain:
        take(m_levels.trackGain, parseGain(text));
        break;
    case TagField::trackPeak:
        take(m_levels.trackPeak, parsePeak(text));
        break;
    case TagField::albumGain:
        take(m_levels.albumGain, parseGain(text));
        break;
    case TagField::albumPeak:
        take(m_levels.albumPeak, parsePeak(text));
        break;
    case TagField::r128TrackGain:
        take(m_r128.trackGain, parseR128Gain(text));
        break;
    case TagField::r128AlbumGain:
        take(m_r128.albumGain, parseR128Gain(text));
        break;
    case TagField::shareRating:
        m_shareRating = starsOfShare(text);
        break;
    case TagField::rating:
        m_said.rating = std::max(m_said.rating, starsOfRating(text));
        break;
    case TagField::popularity:
        m_said.rating = std::max(m_said.rating, starsOfPopularity(text));
        break;
    case TagField::sharedRating:
        m_said.rating = std::max(m_said.rating, starsOfShared(text));
        break;
    case TagField::plays:
        m_said.plays = std::max(m_said.plays, parsePlays(text));
        break;
    }
}

void TagFields::decideEncodings(const QString& path) {
    QString* const texts[] = {
        &m_title, &m_artist,           &m_firstArtist,           &m_album,          &m_albumArtist,
        &m_genre, &m_sortNames.artist, &m_sortNames.albumArtist, &m_sortNames.album};
    decideTexts(texts, path);
}

void TagFields::addArtists(TagField field, const QStringList& values) {
    QStringList artists;
    for (const QString& value : values)
        if (const QString text = value.trimmed(); !text.isEmpty() && !artists.contains(text))
            artists.append(text);
    if (artists.isEmpty())
        return;
    const QString all = artists.join(u", "_s);
    if (field == TagField::albumArtist) {
        m_albumArtist = all;
        return;
    }
    m_artist = all;
    m_firstArtist = artists.size() > 1 ? artists.first() : QString();
}

QString TagFields::albumArtist() const {
    if (!m_albumArtist.isEmpty())
        return m_albumArtist;
    return m_isCompilation ? u"Various Artists"_s : m_firstArtist;
}

LevelTags TagFields::levels() const {
    LevelTags levels = m_levels;
    take(levels.trackGain, m_r128.trackGain);
    take(levels.albumGain, m_r128.albumGain);
    return levels;
}

SaidTags TagFields::said() const {
    return {m_shareRating > 0 ? m_shareRating : m_said.rating, m_said.plays};
}

void TagFields::addPicture(PictureRank rank, std::function<QByteArray()> bytes) {
    if (rank < m_rank)
        return;
    m_rank = rank;
    m_picture = std::move(bytes);
}

} // namespace halvane
