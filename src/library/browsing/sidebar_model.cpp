// SPDX-License-Identifier: MIT
#include "library/browsing/sidebar_model.h"

#include "library/catalog/catalog_publisher.h"

namespace halvane {

namespace {
constexpr int itemCount = static_cast<int>(SidebarItem::topRated) + 1;
}

SidebarModel::SidebarModel(const CatalogPublisher& catalog, QObject* parent)
    : QAbstractListModel(parent)
    , m_catalog(catalog) {
    connect(&catalog, &CatalogPublisher::catalogChanged, this, &SidebarModel::refresh);
    connect(&catalog, &CatalogPublisher::lovedCountChanged, this, &SidebarModel::refresh);
}

std::size_t SidebarModel::countOf(SidebarItem item) const {
    switch (item) {
    case SidebarItem::albums:
        return m_catalog.published()->albums.size();
    case SidebarItem::artists:
        return m_catalog.published()->artists.size();
    case SidebarItem::tracks:
        return m_catalog.published()->rows->size();
    case SidebarItem::loved:
        return m_catalog.lovedCount();
    default: // the lists that change with every play need no count
        return 0;
    }
}

QString SidebarModel::sidebarBadge(SidebarItem item) const {
    const std::size_t count = countOf(item);
    return count == 0 ? QString() : QString::number(count);
}

void SidebarModel::refresh() {
    Q_EMIT dataChanged(index(0), index(itemCount - 1), {BadgeRole});
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : itemCount;
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto item = static_cast<SidebarItem>(index.row());
    if (role == ItemRole)
        return QVariant::fromValue(item);
    return role == BadgeRole ? sidebarBadge(item) : QVariant();
}

QHash<int, QByteArray> SidebarModel::roleNames() const {
    return {{ItemRole, "item"}, {BadgeRole, "badge"}};
}

} // namespace halvane
