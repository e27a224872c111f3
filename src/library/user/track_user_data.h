// SPDX-License-Identifier: MIT
#pragma once

#include "library/user/late_value.h"
#include "library/user/said.h"

#include <QObject>
#include <QSet>

#include <utility>
#include <vector>

namespace halvane {

/// The user's data of each track: loved or not, a rating, a count of plays and when the last of
/// them was. The keys are standardized paths. A track that is not in a map has rating 0 and no
/// plays. Every change is stored at once, as the one entry that changed. Main thread.
class TrackUserData : public QObject {
    Q_OBJECT

  public:
    /// Empty until restore. The preferences must outlive it.
    explicit TrackUserData(Preferences& preferences, QObject* parent = nullptr);

    /// Takes the loved paths from the preferences. The long maps are taken when they are first
    /// needed. A stored value that is no map is left alone.
    void restore();

    [[nodiscard]] const QSet<QString>& lovedPaths() const { return m_lovedPaths; }
    [[nodiscard]] const IntegerMap& trackRatings() const { return m_trackRatings.get(); }
    [[nodiscard]] const IntegerMap& playCounts() const { return m_playCounts.get(); }
    /// In whole seconds since 2001-01-01 UTC.
    [[nodiscard]] const IntegerMap& lastPlayed() const { return m_lastPlayed.get(); }

    [[nodiscard]] bool isLoved(const QString& path) const { return m_lovedPaths.contains(path); }
    [[nodiscard]] qint64 rating(const QString& path) const { return trackRatings().value(path); }
    [[nodiscard]] qint64 playCount(const QString& path) const { return playCounts().value(path); }

    /// Loves a track that is not loved, and the reverse. Does nothing without a path.
    Q_INVOKABLE void toggleLoved(const QString& path);
    /// Loves all of these tracks; where all are loved already, none of them.
    Q_INVOKABLE void toggleLovedTogether(const QStringList& paths);
    /// Rates a track by whole stars. At most 5 are stored, and fewer than 1 remove the rating. Does
    /// nothing without a path.
    Q_INVOKABLE void setRating(int rating, const QString& path);
    Q_INVOKABLE void rateTogether(int rating, const QStringList& paths);
    /// Adds one play, at that time in whole seconds since 2001-01-01 UTC; 0: nobody knows when.
    /// Does nothing without a path.
    void countPlay(const QString& path, qint64 at = 0) { addPlays(1, at, path); }
    [[nodiscard]] Said said(const QString& path) const;
    /// Says this of a track that has come back, beside what was said of it since.
    void sayAgain(const Said& said, const QString& path);
    /// Says exactly this of each path. It is not the user who says it, so `saying` is not sent.
    void say(const std::vector<std::pair<QString, Said>>& ofPaths);
    /// These tracks have left the library and the stored preferences. No signal is sent, because no
    /// list shows them any more.
    void forget(const QSet<QString>& paths);

  Q_SIGNALS:
    /// The user has said something of a track, with which more can be stored in one piece.
    void saying(const QString& path, const Said& before);
    void lovedChanged(const QString& path);
    void ratingChanged(const QString& path);
    void playsChanged(const QString& path);
    /// Everything may have changed.
    void reset();

  private:
    void addPlays(qint64 plays, qint64 lastPlayed, const QString& path);
    void storeLoved(bool isLoved, const QString& path);
    void storeRating(qint64 rating, const QString& path);
    void storePlays(qint64 plays, qint64 lastPlayed, const QString& path);
    void storeNumber(IntegerMap& map, const QString& key, qint64 number, const QString& path);

    Preferences& m_preferences;
    QSet<QString> m_lovedPaths;
    LateValue<IntegerMap> m_trackRatings;
    LateValue<IntegerMap> m_playCounts;
    LateValue<IntegerMap> m_lastPlayed;
};

} // namespace halvane
