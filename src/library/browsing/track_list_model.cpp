// SPDX-License-Identifier: MIT
#include "library/browsing/track_list_model.h"

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
    default:
        return TrackRole::value(track, role, m_state);
    }
}

QHash<int, QByteArray> TrackListModel::roleNames() const {
    auto names = TrackRole::names();
    names.insert(TrackIdRole, "trackId");
    names.insert(IsPlayingRole, "isPlaying");
    return names;
}

} // namespace halvane
