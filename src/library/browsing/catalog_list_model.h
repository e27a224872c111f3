// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/list_changes.h"
#include "library/catalog/catalog.h"
#include "platform/thread_check.h"

#include <QAbstractListModel>

namespace halvane {

/// A list of some of a catalog's items, in some order. The catalog owns the items, and the list
/// keeps the catalog alive. The views are told which rows came and went, so that they keep their
/// place. The list resets when nearly everything changed. Main thread.
///
/// `Kind` has two functions: `static Key keyOf(const Item&)` gives the key by which an item is
/// found again in another catalog, and `static bool looksAlike(const Item&, const Item&)` says
/// whether a row can stay as it is drawn.
template<typename Item, typename Kind>
class CatalogListModel : public QAbstractListModel {
  public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] std::size_t size() const { return m_items.size(); }
    [[nodiscard]] const Item& item(std::size_t row) const { return *m_items[row]; }

    /// Shows these items, which belong to the catalog.
    void setItems(std::shared_ptr<const Catalog> catalog, std::vector<const Item*> items) {
        assertOwnThread(*this);
        const auto isSame = [&](std::size_t i, std::size_t j) {
            return m_items[i] == items[j] || Kind::keyOf(*m_items[i]) == Kind::keyOf(*items[j]);
        };
        const auto changes = listChanges(
            m_items.size(), items.size(), [&](std::size_t i) { return Kind::keyOf(*m_items[i]); },
            [&](std::size_t j) { return Kind::keyOf(*items[j]); }, isSame);
        if (!changes) {
            beginResetModel();
            m_items = std::move(items);
            m_catalog = std::move(catalog);
            endResetModel();
            return;
        }
        removeRanges(changes->removed);
        insertRanges(changes->inserted, items);
        replaceItems(std::move(items));
        m_catalog = std::move(catalog);
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_items.size());
    }

    /// Draws a row again if the item is shown.
    void refresh(const Item& item, const QList<int>& roles) {
        for (std::size_t row = 0; row < m_items.size(); ++row) {
            if (m_items[row] == &item)
                redraw(*this, {row, 1}, roles);
        }
    }
    /// Draws every row again.
    void refreshAll(const QList<int>& roles) { redraw(*this, {0, size()}, roles); }

  private:
    auto at(std::size_t row) { return m_items.begin() + static_cast<std::ptrdiff_t>(row); }

    void removeRanges(const std::vector<RowRange>& ranges) {
        for (auto range = ranges.crbegin(); range != ranges.crend(); ++range) {
            beginRemoveRows({}, static_cast<int>(range->first),
                            static_cast<int>(range->first + range->count - 1));
            m_items.erase(at(range->first), at(range->first + range->count));
            endRemoveRows();
        }
    }

    void insertRanges(const std::vector<RowRange>& ranges, const std::vector<const Item*>& items) {
        for (const RowRange& range : ranges) {
            beginInsertRows({}, static_cast<int>(range.first),
                            static_cast<int>(range.first + range.count - 1));
            const auto from = items.begin() + static_cast<std::ptrdiff_t>(range.first);
            m_items.insert(at(range.first), from, from + static_cast<std::ptrdiff_t>(range.count));
            endInsertRows();
        }
    }

    /// The same rows of a newer catalog.
    void replaceItems(std::vector<const Item*> items) {
        std::vector<RowRange> changed;
        for (std::size_t row = 0; row < items.size(); ++row) {
            if (m_items[row] != items[row] && !Kind::looksAlike(*m_items[row], *items[row]))
                addRow(changed, row);
        }
        m_items = std::move(items);
        for (const RowRange& range : changed)
            redraw(*this, range, {});
    }

    std::shared_ptr<const Catalog> m_catalog;
    std::vector<const Item*> m_items;
};

} // namespace halvane
