// SPDX-License-Identifier: MIT
#include "library/browsing/track_list_model.h"

#include "metadata/file_dates.h"

#include <QDateTime>

#include <algorithm>

namespace halvane {

namespace {

// A date whose parts have the same width in every row, and the same order in every language.
QString addedText(const Track& track) {
    if (track.addedDate <= 0)
        return {};
    const auto seconds = static_cast<qint64>(track.addedDate + referenceDateOffset);
    return QDateTime::fromSecsSinceEpoch(seconds).date().toString(Qt::ISODate);
}

} // namespace

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
    case GenreRole:
        return track.genre;
    case YearRole:
        return track.year > 0 ? QString::number(track.year) : QString();
    case PlaysRole: {
        const qint64 plays = m_state.plays(track.path());
        return plays > 0 ? QString::number(plays) : QString();
    }
    case AddedRole:
        return addedText(track);
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
    names.insert(GenreRole, "genre");
    names.insert(YearRole, "year");
    names.insert(PlaysRole, "plays");
    names.insert(AddedRole, "added");
    return names;
}

} // namespace halvane
