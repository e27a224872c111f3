// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/track_sorting.h"

#include <QHash>
#include <QObject>

namespace halvane {

class Preferences;

/// The order that the user has chosen for the track table, in each place that it shows for itself.
/// It is stored. Main thread.
class TableOrder : public QObject {
    Q_OBJECT
    Q_PROPERTY(halvane::TrackOrder by READ by NOTIFY changed)
    Q_PROPERTY(bool isDescending READ isDescending NOTIFY changed)

  public:
    /// The preferences must outlive it.
    explicit TableOrder(Preferences& preferences, QObject* parent = nullptr);

    /// From now on the stored choices count.
    void restore();
    /// The table shows this place now; empty: there is no table.
    void setPlace(const QString& place);
    /// The place is no more: nothing of it stays stored. It may come back while the program runs.
    void forget(const QString& place);
    /// A forgotten place is back: its choice is stored again.
    void remember(const QString& place);

    /// The choice for any place, shown or not.
    TrackSorting sortingOf(const QString& place);
    [[nodiscard]] const TrackSorting& sorting() const { return m_sorting; }
    [[nodiscard]] TrackOrder by() const { return m_sorting.by; }
    [[nodiscard]] bool isDescending() const { return m_sorting.isDescending; }

    /// Sorts by a column. The column by which it is sorted already is reversed, and then given up
    /// for the place's own order. Does nothing while there is no table.
    Q_INVOKABLE void choose(halvane::TrackOrder column);

  Q_SIGNALS:
    void changed();
    /// The user has chosen another order for the place that is shown.
    void chosen();

  private:
    [[nodiscard]] TrackSorting stored(const QString& place) const;
    void store(const QString& place, const TrackSorting& sorting);
    void load();
    void set(const TrackSorting& sorting);

    Preferences& m_preferences;
    bool m_isRestored = false;
    QString m_place;
    QHash<QString, TrackSorting> m_known; ///< by place, what has been read or chosen
    TrackSorting m_sorting;
};

} // namespace halvane
