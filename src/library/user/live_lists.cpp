// SPDX-License-Identifier: MIT
#include "library/user/live_lists.h"

#include "library/user/settings_keys.h"
#include "model/fresh_id.h"
#include "model/raw_value.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace halvane {

namespace {

std::optional<LiveList> decodedLiveList(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    LiveList list;
    list.id = QUuid::fromString(object["id"_L1].toString());
    list.name = object["name"_L1].toString();
    list.search = object["search"_L1].toString();
    list.order =
        fromRawValue<LiveOrder>(object["order"_L1].toString()).value_or(LiveOrder::library);
    list.isReversed = object["isReversed"_L1].toBool();
    list.most = std::max(0, object["most"_L1].toInt());
    return list.id.isNull() || list.name.isEmpty() ? std::nullopt : std::optional(list);
}

} // namespace

QByteArray encodedLiveLists(const std::vector<LiveList>& lists) {
    QJsonArray array;
    for (const LiveList& list : lists)
        array.append(QJsonObject{{u"id"_s, list.id.toString(QUuid::WithoutBraces)},
                                 {u"name"_s, list.name},
                                 {u"search"_s, list.search},
                                 {u"order"_s, rawValue(list.order)},
                                 {u"isReversed"_s, list.isReversed},
                                 {u"most"_s, list.most}});
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<std::vector<LiveList>> decodedLiveLists(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    std::vector<LiveList> lists;
    for (const QJsonValue value : document.array()) {
        auto list = decodedLiveList(value);
        if (!list)
            return std::nullopt;
        lists.push_back(*std::move(list));
    }
    return lists;
}

LiveLists::LiveLists(Preferences& preferences, QObject* parent)
    : QAbstractListModel(parent)
    , m_preferences(preferences) {
}

void LiveLists::restore() {
    assertOwnThread(*this);
    const auto stored = m_preferences.blob(SettingsKey::liveLists);
    auto lists = stored ? decodedLiveLists(*stored) : std::nullopt;
    if (!lists)
        return;
    beginResetModel();
    m_lists = *std::move(lists);
    endResetModel();
}

void LiveLists::persist() {
    m_preferences.setBlob(SettingsKey::liveLists, encodedLiveLists(m_lists));
}

std::optional<std::size_t> LiveLists::rowOf(const QUuid& id) const {
    const auto found = std::find_if(m_lists.cbegin(), m_lists.cend(),
                                    [&](const LiveList& list) { return list.id == id; });
    return found == m_lists.cend() ? std::nullopt
                                   : std::optional<std::size_t>(found - m_lists.cbegin());
}

const LiveList* LiveLists::find(const QUuid& id) const {
    const auto row = rowOf(id);
    return row ? &m_lists[*row] : nullptr;
}

LiveList LiveLists::list(const QUuid& id) const {
    const LiveList* list = find(id);
    return list ? *list : LiveList();
}

QUuid LiveLists::save(const LiveList& list) {
    assertOwnThread(*this);
    LiveList saved = list;
    saved.name = list.name.trimmed();
    saved.search = list.search.trimmed();
    saved.most = std::max(0, list.most);
    if (saved.name.isEmpty())
        return {};
    if (saved.id.isNull()) {
        saved.id = freshId();
        insert(m_lists.size(), saved);
        return saved.id;
    }
    const auto row = rowOf(saved.id);
    if (!row)
        return {};
    m_lists[*row] = saved;
    persist();
    const QModelIndex shown = index(static_cast<int>(*row));
    Q_EMIT dataChanged(shown, shown, {Qt::DisplayRole, NameRole});
    Q_EMIT changed(saved.id);
    return saved.id;
}

void LiveLists::insert(std::size_t row, const LiveList& list) {
    beginInsertRows({}, static_cast<int>(row), static_cast<int>(row));
    m_lists.insert(m_lists.begin() + static_cast<std::ptrdiff_t>(row), list);
    endInsertRows();
    persist();
}

void LiveLists::remove(const QUuid& id) {
    assertOwnThread(*this);
    const auto row = rowOf(id);
    if (!row)
        return;
    Q_EMIT removing(id);
    beginRemoveRows({}, static_cast<int>(*row), static_cast<int>(*row));
    m_lists.erase(m_lists.begin() + static_cast<std::ptrdiff_t>(*row));
    endRemoveRows();
    persist();
    Q_EMIT removed(id);
}

void LiveLists::putBack(std::size_t row, const LiveList& list) {
    assertOwnThread(*this);
    insert(std::min(row, m_lists.size()), list);
    Q_EMIT cameBack(list.id);
}

int LiveLists::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_lists.size());
}

QVariant LiveLists::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const LiveList& list = m_lists[static_cast<std::size_t>(index.row())];
    switch (role) {
    case ListIdRole:
        return list.id;
    case Qt::DisplayRole:
    case NameRole:
        return list.name;
    default:
        return {};
    }
}

QHash<int, QByteArray> LiveLists::roleNames() const {
    return {{ListIdRole, "listId"}, {NameRole, "name"}};
}

} // namespace halvane
