// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace halvane {

/// The common meaning of a tag, whatever its container calls it.
enum class TagField { title, artist, albumName, type, creationDate };

/// The first run of four digits that is a year between 1900 and 2100.
std::optional<qint64> parseYear(const QString& text);

/// Which of several pictures is the cover. A front cover goes before any other, and the later one
/// goes first among equals.
enum class PictureRank { none, other, frontCover };

/// The tags of one file as they are found. Values are trimmed, empty ones are skipped, and a later
/// value of a field replaces an earlier one. One thread.
class TagFields {
  public:
    void add(TagField field, const QString& value);
    /// `bytes` is called when somebody wants the picture, and not after these fields are destroyed.
    void addPicture(PictureRank rank, std::function<QByteArray()> bytes);

    [[nodiscard]] const QString& title() const { return m_title; }
    [[nodiscard]] const QString& artist() const { return m_artist; }
    [[nodiscard]] const QString& album() const { return m_album; }
    [[nodiscard]] const QString& genre() const { return m_genre; }
    [[nodiscard]] qint64 year() const { return m_year; }
    [[nodiscard]] bool hasPicture() const { return m_rank != PictureRank::none; }
    [[nodiscard]] QByteArray picture() const { return m_picture ? m_picture() : QByteArray(); }

  private:
    QString m_title;
    QString m_artist;
    QString m_album;
    QString m_genre;
    qint64 m_year = 0;
    PictureRank m_rank = PictureRank::none;
    std::function<QByteArray()> m_picture;
};

/// Facts of the first audio stream of a file. Zero stands for not known.
struct StreamFacts {
    double seconds = 0;
    double sampleRate = 0; ///< hertz
    int bitsPerSample = 0; ///< of lossless streams only

    [[nodiscard]] bool isComplete() const { return seconds > 0 && sampleRate > 0; }
};

/// Everything that is read out of one audio file.
struct FileMetadata {
    TagFields tags;
    StreamFacts stream;
};

} // namespace halvane
