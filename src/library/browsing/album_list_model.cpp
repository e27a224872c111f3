// SPDX-License-Identifier: MIT
#include "library/browsing/album_list_model.h"

#include "library/browsing/cover_store.h"
#include "presentation/qt_colors.h"

namespace halvane {

AlbumListModel::AlbumListModel(CoverStore& covers, QObject* parent)
    : CatalogListModel(parent)
    , m_covers(covers) {
}

QVariant AlbumListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Album& album = item(static_cast<std::size_t>(index.row()));
    switch (role) {
    case AlbumIdRole:
        return album.id;
    case Qt::DisplayRole:
    case TitleRole:
        return album.title;
    case ArtistRole:
        return album.artist;
    case QualityRole:
        return album.quality;
    case YearRole:
        return album.year;
    case TrackCountRole:
        return album.trackCount;
    case DurationRole:
        return album.duration;
    case CoverKeyRole:
        return m_covers.keyFor(album.coverImageData, album.coverURL);
    case ColorsRole:
        return QVariant::fromValue(qtColors(album.colors));
    default:
        return {};
    }
}

QHash<int, QByteArray> AlbumListModel::roleNames() const {
    return {{AlbumIdRole, "albumId"},   {TitleRole, "title"},       {ArtistRole, "artist"},
            {QualityRole, "quality"},   {YearRole, "year"},         {TrackCountRole, "trackCount"},
            {DurationRole, "duration"}, {CoverKeyRole, "coverKey"}, {ColorsRole, "colors"}};
}

} // namespace halvane
