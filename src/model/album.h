// SPDX-License-Identifier: MIT
#pragma once

#include "model/color.h"
#include "model/cover_key.h"
#include "model/file_url.h"
#include "model/hash.h"

#include <QMetaType>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace halvane {

/// An album derived from the tracks; never stored. Plain value, any thread.
struct Album {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString artist MEMBER artist)
    Q_PROPERTY(int year READ shownYear)
    Q_PROPERTY(int trackCount READ shownTrackCount)
    Q_PROPERTY(int discCount READ shownDiscCount)
    Q_PROPERTY(QString duration MEMBER duration)
    Q_PROPERTY(double totalSeconds MEMBER totalSeconds)
    Q_PROPERTY(QString quality MEMBER quality)
    Q_PROPERTY(QString coverKey READ coverKey)
    Q_PROPERTY(QStringList colorList READ colorList)

  public:
    QString id; ///< from makeID; spellings that differ only in case share one
    QString title;
    QString artist;
    qint64 year = 0;
    QString genre;
    qint64 trackCount = 0;
    /// How many discs its tracks are on; 0 when they are not all numbered, and so have no order of
    /// their own.
    qint64 discCount = 0;
    QString duration; ///< display text
    double totalSeconds = 0;
    QString quality;
    std::vector<Color> colors; ///< three
    std::optional<Artwork> coverImageData;
    std::optional<FileUrl> coverURL;

    /// Names the picture, as halvane::coverKey does.
    [[nodiscard]] QString coverKey() const { return halvane::coverKey(coverImageData, coverURL); }
    /// The colours as "#rrggbb".
    [[nodiscard]] QStringList colorList() const;

    // Views know no 64-bit integers.
    [[nodiscard]] int shownYear() const { return static_cast<int>(year); }
    [[nodiscard]] int shownTrackCount() const { return static_cast<int>(trackCount); }
    [[nodiscard]] int shownDiscCount() const { return static_cast<int>(discCount); }

    bool operator==(const Album&) const = default;

    /// namespace|artist|title, both trimmed and lower-cased; namespace|unknown when both are empty.
    static QString makeID(const QString& title, const QString& artist, const QString& nameSpace);
};

inline size_t qHash(const Album& v, size_t seed = 0) {
    return Hasher(seed)
        .add(v.id)
        .add(v.title)
        .add(v.artist)
        .add(v.year)
        .add(v.genre)
        .add(v.trackCount)
        .add(v.discCount)
        .add(v.duration)
        .add(v.totalSeconds)
        .add(v.quality)
        .add(v.colors)
        .add(v.coverImageData)
        .add(v.coverURL)
        .result();
}

} // namespace halvane
