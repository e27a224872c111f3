// SPDX-License-Identifier: MIT
#include "library/browsing/artist_list_model.h"

#include "library/browsing/cover_store.h"
#include "presentation/l10n.h"

namespace halvane {

ArtistListModel::ArtistListModel(CoverStore& covers, std::function<ResolvedLanguage()> language,
                                 QObject* parent)
    : CatalogListModel(parent)
    , m_covers(covers)
    , m_language(std::move(language)) {
}

int ArtistListModel::rowOfArtist(const QString& name) const {
    for (std::size_t row = 0; row < size(); ++row) {
        if (item(row).name == name)
            return static_cast<int>(row);
    }
    return -1;
}

QVariant ArtistListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const CatalogArtist& artist = item(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return artist.name;
    case AlbumCountRole:
        return artist.albumCount;
    case TrackCountRole:
        return artist.trackCount;
    case SummaryRole:
        return L10n::artistSummary(artist.albumCount, artist.trackCount, m_language());
    case CoverKeyRole:
        return m_covers.keyFor(artist.coverImageData, artist.coverURL);
    default:
        return {};
    }
}

QHash<int, QByteArray> ArtistListModel::roleNames() const {
    return {{NameRole, "name"},
            {AlbumCountRole, "albumCount"},
            {TrackCountRole, "trackCount"},
            {SummaryRole, "summary"},
            {CoverKeyRole, "coverKey"}};
}

} // namespace halvane
