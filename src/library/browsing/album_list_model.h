// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/catalog_list_model.h"

namespace halvane {

class CoverStore;

struct AlbumKind {
    /// Two albums may share an id. Their spelling tells them apart.
    static std::pair<QString, QString> keyOf(const Album& album) {
        return {album.title, album.artist};
    }
    static bool looksAlike(const Album& a, const Album& b) { return a == b; }
};

/// The albums of the album grid. Main thread.
class AlbumListModel : public CatalogListModel<Album, AlbumKind> {
    Q_OBJECT

  public:
    enum Role {
        AlbumIdRole = Qt::UserRole + 1, ///< albumId: text
        TitleRole,                      ///< title
        ArtistRole,                     ///< artist
        QualityRole,                    ///< quality: text
        YearRole,                       ///< year: 0 when unknown
        TrackCountRole,                 ///< trackCount
        DurationRole,                   ///< duration: text
        CoverKeyRole,                   ///< coverKey: for the cover store
        ColorsRole,                     ///< colors: list of three QColor
    };

    /// The covers must outlive it.
    explicit AlbumListModel(CoverStore& covers, QObject* parent = nullptr);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  private:
    CoverStore& m_covers;
};

} // namespace halvane
