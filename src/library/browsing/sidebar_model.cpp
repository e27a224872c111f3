// SPDX-License-Identifier: MIT
#include "library/browsing/sidebar_model.h"

#include "library/catalog/catalog.h"

namespace halvane {

std::size_t sidebarCount(SidebarItem item, const Catalog& catalog, std::size_t lovedTracks) {
    switch (item) {
    case SidebarItem::library:
        return 0;
    case SidebarItem::albums:
        return catalog.albums.size();
    case SidebarItem::artists:
        return catalog.artists.size();
    case SidebarItem::tracks:
        return catalog.rows->size();
    case SidebarItem::loved:
        return lovedTracks;
    }
    return 0;
}

namespace {
constexpr int itemCount = static_cast<int>(SidebarItem::loved) + 1;
}

SidebarModel::SidebarModel(Count count, QObject* parent)
    : QAbstractListModel(parent)
    , m_count(std::move(count)) {
}

QString SidebarModel::sidebarBadge(SidebarItem item) const {
    const std::size_t count = m_count(item);
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
