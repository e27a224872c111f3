// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/catalog_list_model.h"
#include "library/browsing/track_roles.h"

namespace halvane {

struct TrackKind {
    static const QUuid& keyOf(const Track& track) { return track.id; }
    static bool looksAlike(const Track& a, const Track& b) { return a == b; }
};

/// The tracks of the track table. Main thread.
class TrackListModel : public CatalogListModel<Track, TrackKind> {
    Q_OBJECT

  public:
    /// Besides those of TrackRole.
    enum Role {
        TrackIdRole = TrackRole::firstOwn, ///< trackId: QUuid
        IsPlayingRole,                     ///< isPlaying: current, also while paused
        TrackNumberRole,                   ///< trackNumber: on its album; 0: not known
        DiscNumberRole,                    ///< discNumber: of its album, at least 1
        LeadArtistRole,                    ///< leadArtist: of its album
        GenreRole,                         ///< genre
        YearRole,                          ///< year: text
        PlaysRole,                         ///< plays: text; empty: none
        AddedRole,                         ///< added: text, the date when it was added
    };

    explicit TrackListModel(RowState state, QObject* parent = nullptr);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  private:
    RowState m_state;
};

} // namespace halvane
