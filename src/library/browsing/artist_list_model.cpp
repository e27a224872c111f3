// SPDX-License-Identifier: MIT
#include "library/browsing/artist_list_model.h"

#include "library/browsing/cover_store.h"
#include "library/user/language_setting.h"
#include "presentation/l10n.h"

namespace halvane {

ArtistListModel::ArtistListModel(CoverStore& covers, const LanguageSetting& language,
                                 QObject* parent)
    : CatalogListModel(parent)
    , m_covers(covers)
    , m_language(language) {
    connect(&language, &LanguageSetting::languageChanged, this,
            [this] { refreshAll({SummaryRole}); });
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
        return artist.isGuest ? L10n::guestSummary(artist.albumCount, m_language.resolvedLanguage())
                              : L10n::artistSummary(artist.albumCount, artist.trackCount,
                                                    m_language.resolvedLanguage());
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
