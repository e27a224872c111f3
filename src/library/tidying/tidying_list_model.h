// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"

#include <QAbstractListModel>

namespace halvane {

/// Tracks that need attention, for one list of the maintenance window. Main thread.
class TidyingListModel : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role {
        TitleRole = Qt::UserRole + 1, ///< title
        ArtistRole,                   ///< artist
        PathRole,                     ///< path: standardized
    };

    using QAbstractListModel::QAbstractListModel;

    void setTracks(TrackRows tracks);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  private:
    TrackRows m_tracks;
};

} // namespace halvane
