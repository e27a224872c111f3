// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QAbstractListModel>

namespace halvane {

class CatalogPublisher;

/// The sidebar's items with their badges. Main thread.
class SidebarModel : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role {
        ItemRole = Qt::UserRole + 1, ///< item: SidebarItem
        BadgeRole,                   ///< badge: text, empty for none
    };

    /// The catalog must outlive it.
    explicit SidebarModel(const CatalogPublisher& catalog, QObject* parent = nullptr);

    /// The text beside an item, empty for none.
    [[nodiscard]] QString sidebarBadge(SidebarItem item) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  private:
    [[nodiscard]] std::size_t countOf(SidebarItem item) const;
    void refresh();

    const CatalogPublisher& m_catalog;
};

} // namespace halvane
