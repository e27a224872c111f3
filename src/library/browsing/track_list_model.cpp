// SPDX-License-Identifier: MIT
#include "library/browsing/track_list_model.h"

#include "library/browsing/cover_store.h"

namespace halvane {

TrackListModel::TrackListModel(RowState state, QObject* parent)
    : CatalogListModel(parent)
    , m_state(std::move(state)) {
}

int TrackListModel::rowOfPath(const QString& path) const {
    for (std::size_t row = 0; row < size(); ++row) {
        if (item(row).path() == path)
            return static_cast<int>(row);
    }
    return -1;
}

QVariant TrackListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Track& track = item(static_cast<std::size_t>(index.row()));
    switch (role) {
    case TrackIdRole:
        return track.id;
    case Qt::DisplayRole:
    case TitleRole:
        return track.title;
    case ArtistRole:
        return track.artist;
    case AlbumRole:
        return track.album;
    case QualityRole:
        return track.format;
    case DurationRole:
        return track.duration;
    case PathRole:
        return track.path();
    case IsLovedRole:
        return m_state.isLoved(track.path());
    case RatingRole:
        return m_state.rating(track.path());
    case AvailabilityRole:
        return QVariant::fromValue(m_state.availability(track.path()));
    case IsPlayingRole:
        return m_state.isCurrent(track.path());
    case CoverKeyRole:
        return m_state.covers->keyFor(track.coverImageData, track.coverURL);
    default:
        return {};
    }
}

QHash<int, QByteArray> TrackListModel::roleNames() const {
    return {{TrackIdRole, "trackId"},     {TitleRole, "title"},
            {ArtistRole, "artist"},       {AlbumRole, "album"},
            {QualityRole, "quality"},     {DurationRole, "duration"},
            {PathRole, "path"},           {IsLovedRole, "isLoved"},
            {RatingRole, "rating"},       {AvailabilityRole, "availability"},
            {IsPlayingRole, "isPlaying"}, {CoverKeyRole, "coverKey"}};
}

} // namespace halvane
