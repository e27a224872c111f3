// SPDX-License-Identifier: MIT
#include "library/browsing/track_list_model.h"

#include <algorithm>

namespace halvane {

TrackListModel::TrackListModel(RowState state, QObject* parent)
    : CatalogListModel(parent)
    , m_state(std::move(state)) {
}

QVariant TrackListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Track& track = item(static_cast<std::size_t>(index.row()));
    switch (role) {
    case TrackIdRole:
        return track.id;
    case IsPlayingRole:
        return m_state.isCurrent(track.path());
    case TrackNumberRole:
        return track.albumTags.track;
    case DiscNumberRole:
        return std::max<int>(track.albumTags.disc, 1);
    case LeadArtistRole:
        return track.leadArtist();
    default:
        return TrackRole::value(track, role, m_state);
    }
}

QHash<int, QByteArray> TrackListModel::roleNames() const {
    auto names = TrackRole::names();
    names.insert(TrackIdRole, "trackId");
    names.insert(IsPlayingRole, "isPlaying");
    names.insert(TrackNumberRole, "trackNumber");
    names.insert(DiscNumberRole, "discNumber");
    names.insert(LeadArtistRole, "leadArtist");
    return names;
}

} // namespace halvane
