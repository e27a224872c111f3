// SPDX-License-Identifier: MIT
#pragma once

#include "library/late_value.h"

#include <QObject>
#include <QSet>
#include <QStringList>

namespace halvane {

/// What the user has made of each track: loved or not, a rating, a count of plays. Keyed by
/// standardized path; a track that is not in a map has rating 0 and no plays. Every change is
/// stored at once, as the one entry that changed. Main thread.
class TrackUserData : public QObject {
    Q_OBJECT

  public:
    /// Empty until restore. The preferences must outlive it.
    explicit TrackUserData(Preferences& preferences, QObject* parent = nullptr);

    /// Takes everything from the preferences, long maps when they are first needed; a map that is
    /// not one is left alone.
    void restore();

    const QSet<QString>& lovedPaths() const { return m_lovedPaths; }
    const IntegerMap& trackRatings() const { return m_trackRatings.get(); }
    const IntegerMap& playCounts() const { return m_playCounts.get(); }

    bool isLoved(const QString& path) const { return holds(path) && m_lovedPaths.contains(path); }
    qint64 rating(const QString& path) const {
        return holds(path) ? trackRatings().value(path) : 0;
    }
    qint64 playCount(const QString& path) const {
        return holds(path) ? playCounts().value(path) : 0;
    }

    /// Loves a track, or no longer. Nothing without a path.
    void toggleLoved(const QString& path);
    /// Whole stars: at most 5 are stored, fewer than 1 take the rating away. Nothing without a
    /// path.
    void setRating(int rating, const QString& path);
    /// Adds one play. Nothing without a path.
    void countPlay(const QString& path);
    /// Tracks left the library, and the preferences with it. Nothing is known of them from now on;
    /// many of them leave the maps themselves a few at a time.
    void forget(const QSet<QString>& paths);

  Q_SIGNALS:
    void lovedChanged(const QString& path);
    void ratingChanged(const QString& path);
    void playCountChanged(const QString& path);
    /// Several tracks at once: restored, or removed.
    void reset();

  private:
    bool holds(const QString& path) const { return !m_leaving.contains(path); }
    void takeOut(QStringList::const_iterator begin, QStringList::const_iterator end);
    void takeOutSome();
    void takeOutAll();
    void prepareChange(const QString& path);

    Preferences& m_preferences;
    QSet<QString> m_lovedPaths;
    LateValue<IntegerMap> m_trackRatings;
    LateValue<IntegerMap> m_playCounts;
    QSet<QString> m_leaving; ///< are as good as gone from the maps
    QStringList m_toTakeOut; ///< of them, those that may still be there
};

} // namespace halvane
