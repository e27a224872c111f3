// SPDX-License-Identifier: MIT
#include "views/library/table/list_cursor.h"

#include <algorithm>

namespace halvane::views {

namespace {
constexpr qint64 typingPauseMs = 1000;
}

void ListCursor::setModel(QAbstractItemModel* model) {
    if (m_model == model)
        return;
    if (m_model)
        m_model->disconnect(this);
    m_model = model;
    if (m_model) {
        connect(m_model, &QAbstractItemModel::modelReset, this, &ListCursor::refind);
        connect(m_model, &QAbstractItemModel::layoutChanged, this, &ListCursor::refind);
        connect(m_model, &QAbstractItemModel::rowsInserted, this, &ListCursor::refind);
        connect(m_model, &QAbstractItemModel::rowsRemoved, this, &ListCursor::refind);
        connect(m_model, &QAbstractItemModel::rowsMoved, this, &ListCursor::refind);
    }
    refind();
    Q_EMIT modelChanged();
}

void ListCursor::setIndex(int index) {
    const int last = m_model ? m_model->rowCount() - 1 : -1;
    index = index < 0 ? -1 : std::min(index, last);
    m_id = value(index, m_idRole);
    place(index);
}

void ListCursor::place(int index) {
    if (m_index == index)
        return;
    m_index = index;
    Q_EMIT indexChanged();
}

void ListCursor::refind() {
    if (!m_id.isValid())
        return;
    // Most changes leave the row where it was, which spares a search through the whole list.
    if (value(m_index, m_idRole) != m_id)
        place(rowWith(m_idRole, m_id));
}

int ListCursor::roleOf(const QString& name) const {
    return m_model ? m_model->roleNames().key(name.toUtf8(), -1) : -1;
}

QVariant ListCursor::value(int row, const QString& role) const {
    const int key = roleOf(role);
    if (key < 0 || row < 0 || row >= m_model->rowCount())
        return {};
    return m_model->index(row, 0).data(key);
}

int ListCursor::rowWith(const QString& role, const QVariant& wanted) const {
    const int key = roleOf(role);
    if (key < 0)
        return -1;
    const int rows = m_model->rowCount();
    for (int row = 0; row < rows; ++row)
        if (m_model->index(row, 0).data(key) == wanted)
            return row;
    return -1;
}

void ListCursor::type(const QString& text) {
    const int key = roleOf(m_textRole);
    if (key < 0 || text.isEmpty())
        return;
    if (!m_sinceTyped.isValid() || m_sinceTyped.elapsed() > typingPauseMs)
        m_typed.clear();
    m_sinceTyped.start();
    const bool again = m_typed == text;
    if (!again)
        m_typed += text;
    const int rows = m_model->rowCount();
    // A longer text may still fit the row it led to; a new or repeated letter looks further on.
    const int first =
        std::max(m_index, 0) + (m_typed.size() == text.size() && m_index >= 0 ? 1 : 0);
    for (int step = 0; step < rows; ++step) {
        const int row = (first + step) % rows;
        const QString candidate = m_model->index(row, 0).data(key).toString();
        if (candidate.startsWith(m_typed, Qt::CaseInsensitive)) {
            setIndex(row);
            return;
        }
    }
}

} // namespace halvane::views
