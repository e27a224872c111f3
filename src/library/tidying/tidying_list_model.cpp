// SPDX-License-Identifier: MIT
#include "library/tidying/tidying_list_model.h"

#include "library/browsing/list_changes.h"

namespace halvane {

void TidyingListModel::setTracks(TrackRows tracks) {
    const auto changes = listChanges(
        m_tracks.size(), tracks.size(), [&](std::size_t i) { return m_tracks[i]->path(); },
        [&](std::size_t j) { return tracks[j]->path(); },
        [&](std::size_t i, std::size_t j) { return m_tracks[i] == tracks[j]; });
    if (!changes) {
        beginResetModel();
        m_tracks = std::move(tracks);
        endResetModel();
        return;
    }
    const auto at = [](auto& rows, std::size_t row) {
        return rows.begin() + static_cast<std::ptrdiff_t>(row);
    };
    for (auto range = changes->removed.crbegin(); range != changes->removed.crend(); ++range) {
        beginRemoveRows({}, static_cast<int>(range->first),
                        static_cast<int>(range->first + range->count - 1));
        m_tracks.erase(at(m_tracks, range->first), at(m_tracks, range->first + range->count));
        endRemoveRows();
    }
    for (const RowRange& range : changes->inserted) {
        beginInsertRows({}, static_cast<int>(range.first),
                        static_cast<int>(range.first + range.count - 1));
        m_tracks.insert(at(m_tracks, range.first), at(tracks, range.first),
                        at(tracks, range.first + range.count));
        endInsertRows();
    }
}

int TidyingListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_tracks.size());
}

QVariant TidyingListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Track& track = *m_tracks[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        return track.title;
    case ArtistRole:
        return track.artist;
    case PathRole:
        return track.path();
    default:
        return {};
    }
}

QHash<int, QByteArray> TidyingListModel::roleNames() const {
    return {{TitleRole, "title"}, {ArtistRole, "artist"}, {PathRole, "path"}};
}

} // namespace halvane
