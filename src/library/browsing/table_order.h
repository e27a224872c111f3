// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/track_sorting.h"

#include <QObject>

namespace halvane {

class CatalogPublisher;
class Preferences;

/// The order that the user has chosen for the table of all tracks and of the loved ones. It is
/// stored. Main thread.
class TableOrder : public QObject {
    Q_OBJECT
    Q_PROPERTY(halvane::TrackOrder by READ by NOTIFY changed)
    Q_PROPERTY(bool isDescending READ isDescending NOTIFY changed)

  public:
    /// Both references must outlive it.
    TableOrder(Preferences& preferences, CatalogPublisher& catalog, QObject* parent = nullptr);

    void restore();

    [[nodiscard]] TrackOrder by() const { return m_sorting.by; }
    [[nodiscard]] bool isDescending() const { return m_sorting.isDescending; }

    /// Sorts by a column. The column by which it is sorted already is reversed, and then given up
    /// for the library's own order.
    Q_INVOKABLE void choose(halvane::TrackOrder column);

  Q_SIGNALS:
    void changed();

  private:
    void set(const TrackSorting& sorting);

    Preferences& m_preferences;
    CatalogPublisher& m_catalog;
    TrackSorting m_sorting;
};

} // namespace halvane
