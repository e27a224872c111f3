// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QAbstractListModel>

#include <functional>

namespace halvane {

struct Catalog;

/// The number beside an item of the sidebar: 0 for the library itself, which shows none.
std::size_t sidebarCount(SidebarItem item, const Catalog& catalog, std::size_t lovedTracks);

/// The sidebar's items with their badges. Main thread.
class SidebarModel : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role {
        ItemRole = Qt::UserRole + 1, ///< item: SidebarItem
        BadgeRole,                   ///< badge: text, empty for none
    };

    /// Gives the number beside an item; 0 shows none.
    using Count = std::function<std::size_t(SidebarItem)>;
    explicit SidebarModel(Count count, QObject* parent = nullptr);

    /// The text beside an item, empty for none.
    QString sidebarBadge(SidebarItem item) const;
    /// The numbers may have changed.
    void refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    Count m_count;
};

} // namespace halvane
