// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/catalog_list_model.h"
#include "library/browsing/row_state.h"

namespace halvane {

struct TrackKind {
    static const QUuid& keyOf(const Track& track) { return track.id; }
    static bool looksAlike(const Track& a, const Track& b) { return a == b; }
};

/// The tracks of the track table. Main thread.
class TrackListModel : public CatalogListModel<Track, TrackKind> {
    Q_OBJECT

  public:
    enum Role {
        TrackIdRole = Qt::UserRole + 1, ///< trackId: QUuid
        TitleRole,                      ///< title
        ArtistRole,                     ///< artist
        AlbumRole,                      ///< album
        QualityRole,                    ///< quality: text
        DurationRole,                   ///< duration: text
        PathRole,                       ///< path: standardized
        IsLovedRole,                    ///< isLoved
        RatingRole,                     ///< rating: 0...5
        AvailabilityRole,               ///< availability: TrackAvailability
        IsPlayingRole,                  ///< isPlaying: current, also while paused
        CoverKeyRole,                   ///< coverKey: for the cover store
    };

    explicit TrackListModel(RowState state, QObject* parent = nullptr);

    /// Where a track is shown, -1 when it is not.
    Q_INVOKABLE int rowOfPath(const QString& path) const;

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    RowState m_state;
};

} // namespace halvane
