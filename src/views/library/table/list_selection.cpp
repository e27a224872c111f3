// SPDX-License-Identifier: MIT
#include "views/library/table/list_selection.h"

#include <algorithm>

namespace halvane::views {

void ListSelection::setModel(QAbstractItemModel* model) {
    if (m_model == model)
        return;
    if (m_model)
        m_model->disconnect(this);
    m_model = model;
    if (m_model) {
        connect(m_model, &QAbstractItemModel::modelReset, this, &ListSelection::dropWhatLeft);
        connect(m_model, &QAbstractItemModel::layoutChanged, this, &ListSelection::dropWhatLeft);
        connect(m_model, &QAbstractItemModel::rowsRemoved, this, &ListSelection::dropWhatLeft);
    }
    clear();
    Q_EMIT modelChanged();
}

bool ListSelection::contains(const QVariant& id) const {
    return !m_chosen.isEmpty() && m_chosen.contains(id.toUuid());
}

void ListSelection::toggle(int row) {
    const QUuid id = idAt(row, roleOf(m_idRole));
    if (id.isNull())
        return;
    m_anchor = id;
    if (!m_chosen.remove(id))
        m_chosen.insert(id);
    tell();
}

void ListSelection::extend(int from, int to) {
    const int key = roleOf(m_idRole);
    const int anchor = anchorRow();
    const int begin = anchor < 0 ? from : anchor;
    const QUuid id = idAt(begin, key);
    if (id.isNull() || idAt(to, key).isNull())
        return;
    m_anchor = id;
    m_chosen.clear();
    for (int row = std::min(begin, to); row <= std::max(begin, to); ++row)
        m_chosen.insert(idAt(row, key));
    tell();
}

void ListSelection::chooseAll() {
    const int key = roleOf(m_idRole);
    const int rows = m_model ? m_model->rowCount() : 0;
    m_chosen.clear();
    m_chosen.reserve(rows);
    for (int row = 0; row < rows; ++row)
        m_chosen.insert(idAt(row, key));
    tell();
}

void ListSelection::clear() {
    m_anchor = {};
    if (m_chosen.isEmpty())
        return;
    m_chosen.clear();
    tell();
}

QStringList ListSelection::texts(const QString& role) const {
    const int key = roleOf(m_idRole);
    const int text = roleOf(role);
    QStringList texts;
    if (text < 0 || m_chosen.isEmpty())
        return texts;
    const int rows = m_model->rowCount();
    for (int row = 0; row < rows; ++row)
        if (m_chosen.contains(idAt(row, key)))
            texts.append(m_model->index(row, 0).data(text).toString());
    return texts;
}

void ListSelection::tell() {
    ++m_revision;
    Q_EMIT changed();
}

int ListSelection::roleOf(const QString& name) const {
    return m_model ? m_model->roleNames().key(name.toUtf8(), -1) : -1;
}

QUuid ListSelection::idAt(int row, int key) const {
    if (key < 0 || row < 0 || row >= m_model->rowCount())
        return {};
    return m_model->index(row, 0).data(key).toUuid();
}

int ListSelection::anchorRow() const {
    const int key = roleOf(m_idRole);
    const int rows = m_model && !m_anchor.isNull() ? m_model->rowCount() : 0;
    for (int row = 0; row < rows; ++row)
        if (idAt(row, key) == m_anchor)
            return row;
    return -1;
}

void ListSelection::dropWhatLeft() {
    if (m_chosen.isEmpty())
        return;
    const int key = roleOf(m_idRole);
    QSet<QUuid> left;
    const int rows = m_model->rowCount();
    for (int row = 0; row < rows; ++row)
        if (const QUuid id = idAt(row, key); m_chosen.contains(id))
            left.insert(id);
    if (left.size() == m_chosen.size())
        return;
    m_chosen.swap(left);
    tell();
}

} // namespace halvane::views
