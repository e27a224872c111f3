// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/catalog_list_model.h"

namespace halvane {

class CoverStore;
class LanguageSetting;

struct ArtistKind {
    static const QString& keyOf(const CatalogArtist& artist) { return artist.name; }
    static bool looksAlike(const CatalogArtist& a, const CatalogArtist& b) {
        return a.isGuest == b.isGuest && a.albumCount == b.albumCount &&
               a.trackCount == b.trackCount && a.coverImageData == b.coverImageData &&
               a.coverURL == b.coverURL;
    }
};

/// The artists of the artist grid: those who lead an album, and after them the guests. Main thread.
class ArtistListModel : public CatalogListModel<CatalogArtist, ArtistKind> {
    Q_OBJECT

  public:
    enum Role {
        NameRole = Qt::UserRole + 1, ///< name
        AlbumCountRole,              ///< albumCount
        TrackCountRole,              ///< trackCount
        SummaryRole,                 ///< summary: text in the windows' language
        CoverKeyRole,                ///< coverKey: for the cover store
    };

    /// Both references must outlive it.
    ArtistListModel(CoverStore& covers, const LanguageSetting& language, QObject* parent = nullptr);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  private:
    CoverStore& m_covers;
    const LanguageSetting& m_language;
};

} // namespace halvane
