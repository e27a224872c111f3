// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QHash>
#include <QList>
#include <QObject>

namespace halvane {

class Preferences;

/// The columns that the user has chosen for the track table beside the title, in each place that it
/// shows for itself. Each choice is stored. Main thread.
class TableColumns : public QObject {
    Q_OBJECT
    /// TrackOrder, from left to right.
    Q_PROPERTY(QList<int> shown READ shown NOTIFY changed)
    /// TrackOrder, in the order in which they are offered.
    Q_PROPERTY(QList<int> offered READ offered CONSTANT)
    /// Grows with every change, for what depends on shows().
    Q_PROPERTY(int revision MEMBER m_revision NOTIFY changed)
    Q_PROPERTY(bool isStandard READ isStandard NOTIFY changed)

  public:
    /// The preferences must outlive it.
    explicit TableColumns(Preferences& preferences, QObject* parent = nullptr);

    /// From now on the stored choices count.
    void restore();
    /// The table shows this place now. Without one the columns stay as they are: a table that goes
    /// keeps its look.
    void setPlace(const QString& place);
    /// The place is no more: nothing of it stays stored. It may come back while the program runs.
    void forget(const QString& place);
    /// A forgotten place is back: its choice is stored again.
    void remember(const QString& place);

    [[nodiscard]] QList<int> shown() const { return m_shown; }
    [[nodiscard]] QList<int> offered() const;
    /// Whether these are the columns that the place has without a choice.
    [[nodiscard]] bool isStandard() const;

    Q_INVOKABLE [[nodiscard]] bool shows(halvane::TrackOrder column) const {
        return m_shown.contains(static_cast<int>(column));
    }
    /// Shows a column, or shows it no longer.
    Q_INVOKABLE void toggle(halvane::TrackOrder column);
    /// Gives up the choice of the place that is shown.
    Q_INVOKABLE void reset();

  Q_SIGNALS:
    void changed();

  private:
    [[nodiscard]] QList<int> stored(const QString& place) const;
    QList<int> columnsOf(const QString& place);
    void store(const QString& place, const QList<int>& columns);
    void load();
    void set(const QList<int>& columns);
    void tell();

    Preferences& m_preferences;
    bool m_isRestored = false;
    QString m_place;
    QHash<QString, QList<int>> m_known; ///< by place, what has been read or chosen
    QList<int> m_shown;
    int m_revision = 0;
};

} // namespace halvane
