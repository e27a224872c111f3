// SPDX-License-Identifier: MIT
#pragma once

#include "model/album_tags.h"
#include "model/level_tags.h"
#include "model/said_tags.h"

#include <QByteArray>
#include <QStringList>

#include <functional>
#include <optional>

namespace halvane {

/// The common meaning of a tag, whatever its container calls it.
enum class TagField {
    title,
    artist,
    albumName,
    type,
    creationDate,
    albumArtist,
    discNumber,
    trackNumber,
    compilation,
    artistSort,
    albumArtistSort,
    albumSort,
    trackGain, ///< REPLAYGAIN_TRACK_GAIN, such as "-7.03 dB", and so on
    trackPeak,
    albumGain,
    albumPeak,
    r128TrackGain, ///< R128_TRACK_GAIN of Opus, such as "-512", and so on
    r128AlbumGain,
    // See rating_tags.h for their scales.
    shareRating, ///< FMPS_RATING
    rating,
    popularity,
    sharedRating,
    plays
};

/// Whether several values of a field are several artists.
constexpr bool namesArtists(TagField field) {
    return field == TagField::artist || field == TagField::albumArtist;
}

/// The first run of four digits that is a year between 1900 and 2100.
std::optional<qint64> parseYear(const QString& text);

/// The number in front: 3 of "3", of "03" and of "3/12"; none of "A3" and of 0.
std::optional<quint16> parseNumber(const QString& text);

/// A change of level in dB: -7.03 of "-7.03 dB" and of "-7,03". None of what can't be one.
std::optional<float> parseGain(const QString& text);

/// The same of a whole number of 1/256 dB that leads to -23 LUFS, as Opus has it (RFC 7845, 5.2.1).
std::optional<float> parseR128Gain(const QString& text);

/// A largest sample in dB, of a number that is 1 at full scale. None of what can't be one.
std::optional<float> parsePeak(const QString& text);

/// Which of several pictures is the cover. A front cover goes before any other, and one of no kind
/// before the back, a booklet or a portrait. The later one goes first among equals.
enum class PictureRank { none, beside, other, frontCover };

/// The tags of one file as they are found. Values are trimmed, empty ones are skipped, and a later
/// value of a field replaces an earlier one. One thread.
class TagFields {
  public:
    void add(TagField field, const QString& value);
    /// All values that one tag has of a field that names artists.
    void addArtists(TagField field, const QStringList& values);
    /// `bytes` is called when somebody wants the picture, and not after these fields are destroyed.
    void addPicture(PictureRank rank, std::function<QByteArray()> bytes);

    /// Decides what undecidedText() left open in the values. Called once, when all have been added.
    void decideEncodings(const QString& path);

    [[nodiscard]] const QString& title() const { return m_title; }
    /// Several artists are joined by commas.
    [[nodiscard]] const QString& artist() const { return m_artist; }
    [[nodiscard]] const QString& album() const { return m_album; }
    [[nodiscard]] const QString& genre() const { return m_genre; }
    [[nodiscard]] qint64 year() const { return m_year; }
    /// Who leads the album, if that need not be the artist. Without an album artist it is "Various
    /// Artists" on a compilation, or the first of several artists.
    [[nodiscard]] QString albumArtist() const;
    [[nodiscard]] quint16 disc() const { return m_disc; }   ///< 0: not known
    [[nodiscard]] quint16 track() const { return m_track; } ///< 0: not known
    [[nodiscard]] const SortNames& sortNames() const { return m_sortNames; }
    /// The gains that are Opus's own go first.
    [[nodiscard]] LevelTags levels() const;
    /// FMPS_RATING goes first, for it has one scale; else the best of several ratings. Of several
    /// play counts it is the largest.
    [[nodiscard]] SaidTags said() const;
    [[nodiscard]] bool hasPicture() const { return m_rank != PictureRank::none; }
    [[nodiscard]] QByteArray picture() const { return m_picture ? m_picture() : QByteArray(); }

  private:
    QString m_title;
    QString m_artist;
    QString m_firstArtist; // of several
    QString m_album;
    QString m_albumArtist;
    QString m_genre;
    SortNames m_sortNames;
    LevelTags m_levels;
    LevelTags m_r128; // gains only
    qint64 m_year = 0;
    SaidTags m_said;
    quint8 m_shareRating = 0;
    quint16 m_disc = 0;
    quint16 m_track = 0;
    bool m_isCompilation = false;
    PictureRank m_rank = PictureRank::none;
    std::function<QByteArray()> m_picture;
};

/// Facts of the first audio stream of a file. Zero stands for not known.
struct StreamFacts {
    double seconds = 0;
    double sampleRate = 0; ///< hertz
    int bitsPerSample = 0; ///< of lossless streams only
    /// Where the first frame begins in the file, in bytes, if the length is only guessed from some
    /// of the frames; -1 otherwise.
    qint64 guessedFrom = -1;

    [[nodiscard]] bool isComplete() const { return seconds > 0 && sampleRate > 0; }
};

/// Everything that is read out of one audio file.
struct FileMetadata {
    TagFields tags;
    StreamFacts stream;
};

} // namespace halvane
