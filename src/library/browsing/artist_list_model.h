// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/catalog_list_model.h"

#include <functional>

namespace halvane {

class CoverStore;

struct ArtistKind {
    static const QString& keyOf(const CatalogArtist& artist) { return artist.name; }
    static bool looksAlike(const CatalogArtist& a, const CatalogArtist& b) {
        return a.albumCount == b.albumCount && a.trackCount == b.trackCount &&
               a.coverImageData == b.coverImageData && a.coverURL == b.coverURL;
    }
};

/// The artists of the artist grid. Main thread.
class ArtistListModel : public CatalogListModel<CatalogArtist, ArtistKind> {
    Q_OBJECT

  public:
    enum Role {
        NameRole = Qt::UserRole + 1, ///< name
        AlbumCountRole,              ///< albumCount
        TrackCountRole,              ///< trackCount
        SummaryRole,                 ///< summary: text in the language of the moment
        CoverKeyRole,                ///< coverKey: for the cover store
    };

    /// The covers must outlive it.
    ArtistListModel(CoverStore& covers, std::function<ResolvedLanguage()> language,
                    QObject* parent = nullptr);

    /// Where an artist is shown, -1 when he is not.
    Q_INVOKABLE int rowOfArtist(const QString& name) const;

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    CoverStore& m_covers;
    std::function<ResolvedLanguage()> m_language;
};

} // namespace halvane
