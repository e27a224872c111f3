// SPDX-License-Identifier: MIT
#pragma once

#include "model/live_list.h"

#include <QAbstractListModel>

#include <optional>
#include <vector>

namespace halvane {

class Preferences;

/// The live lists that the user has made, as the views show them. Every change is stored at once.
/// Main thread.
class LiveLists : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role {
        ListIdRole = Qt::UserRole + 1, ///< listId: QUuid
        NameRole,                      ///< name
    };

    /// Empty until restore. The preferences must outlive it.
    explicit LiveLists(Preferences& preferences, QObject* parent = nullptr);

    /// Takes the stored lists. What can't be decoded is left alone.
    void restore();

    /// The list of an id, or null. Valid until the next change.
    [[nodiscard]] const LiveList* find(const QUuid& id) const;
    /// The same as a value, with an empty name if there is none.
    Q_INVOKABLE [[nodiscard]] halvane::LiveList list(const QUuid& id) const;
    /// Stores a list in the place of the one that has its id; without an id it is a new one. Gives
    /// its id, or null for a blank name or an id that is not known.
    Q_INVOKABLE QUuid save(const halvane::LiveList& list);
    Q_INVOKABLE void remove(const QUuid& id);
    /// Puts a list that was removed back to its row.
    void putBack(std::size_t row, const LiveList& list);
    [[nodiscard]] std::optional<std::size_t> rowOf(const QUuid& id) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    /// A list has another name or rule.
    void changed(const QUuid& id);
    /// The user's wish, before it is done.
    void removing(const QUuid& id);
    void removed(const QUuid& id);
    /// A list that was removed is back.
    void cameBack(const QUuid& id);

  private:
    void insert(std::size_t row, const LiveList& list);
    void persist();

    Preferences& m_preferences;
    std::vector<LiveList> m_lists;
};

/// The stored form: a JSON array of objects with "id", "name", "search", "order", "isReversed" and
/// "most". Pure.
QByteArray encodedLiveLists(const std::vector<LiveList>& lists);
/// None if it is no such array. An order that is not known is the library's. Pure.
std::optional<std::vector<LiveList>> decodedLiveLists(const QByteArray& json);

} // namespace halvane
