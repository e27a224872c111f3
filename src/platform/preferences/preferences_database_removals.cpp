// SPDX-License-Identifier: MIT
// How many entries leave the preferences file together. They are noted first and taken out later.
#include "platform/preferences/preferences_database.h"

#include <QScopeGuard>

#include <sqlite3.h>

#include <algorithm>

namespace halvane {

namespace {

constexpr std::size_t entriesOfATurn = 500; // taken out within a few milliseconds

} // namespace

std::vector<QByteArray> PreferencesDatabase::inTableOrder(const QStringList& entries) {
    std::vector<QByteArray> texts;
    texts.reserve(static_cast<std::size_t>(entries.size()));
    for (const QString& entry : entries)
        texts.push_back(entry.toUtf8());
    std::sort(texts.begin(), texts.end());
    return texts;
}

void PreferencesDatabase::deleteEntries(const QString& key, std::span<const QByteArray> entries) {
    const auto row = m_reader.row(key);
    if (!row)
        return;
    if (row->kind == PreferencesReader::kindName(QStringList()))
        deleteFromList(row->id, entries);
    else if (row->kind == PreferencesReader::kindName(IntegerMap()))
        deleteFromMap(row->id, entries,
                      "DELETE FROM integer_entry WHERE preference = ?1 AND name = ?2");
    else if (row->kind == PreferencesReader::kindName(NumbersMap()))
        deleteFromMap(row->id, entries,
                      "DELETE FROM numbers_entry WHERE preference = ?1 AND name = ?2");
}

// Finds the places first and then deletes by place. SQLite would make a temporary table of the
// places for each deletion by text.
void PreferencesDatabase::deleteFromList(qint64 id, std::span<const QByteArray> entries) {
    std::vector<qint64> positions;
    for (const QByteArray& entry : entries) {
        auto query = m_connection.query(
            "SELECT position FROM string_item WHERE preference = ?1 AND value = ?2", id,
            SqliteText{entry});
        while (query.next())
            positions.push_back(query.integer(0));
    }
    std::sort(positions.begin(), positions.end());
    auto query =
        m_connection.query("DELETE FROM string_item WHERE preference = ?1 AND position = ?2");
    for (const qint64 position : positions)
        query.runWith(id, position);
}

void PreferencesDatabase::deleteFromMap(qint64 id, std::span<const QByteArray> entries,
                                        const char* sql) {
    auto query = m_connection.query(sql);
    for (const QByteArray& entry : entries)
        query.runWith(id, SqliteText{entry});
}

void PreferencesDatabase::noteRemoval(const QStringList& keys, const QStringList& entries) {
    // The window does not wait until the note has moved from the log to the file proper: the worker
    // that carries the removal out moves it.
    sqlite3_wal_autocheckpoint(m_connection.handle(), 0);
    const auto asBefore = qScopeGuard(
        [this] { sqlite3_wal_autocheckpoint(m_connection.handle(), pagesOfACheckpoint); });
    m_mayHaveNotes = true;
    halvane::noteRemoval(m_connection, keys, entries);
}

void PreferencesDatabase::endRemoval(const PreferencesRemoval& removal) {
    m_connection.query("DELETE FROM removal_note WHERE id = ?1", removal.id).run();
}

void PreferencesDatabase::carryOutRemovals(WriteTurns& turns, const std::stop_token& stop) {
    m_connection.execute("PRAGMA synchronous = NORMAL"); // a sync for each turn would take seconds
    for (const PreferencesRemoval& removal : notedRemovals(m_connection)) {
        const auto inTurn = [&](const auto& change) {
            const auto turn = turns.takeNext();
            SqliteTransaction transaction(m_connection);
            const bool isNoted =
                m_connection.query("SELECT 1 FROM removal_note WHERE id = ?1", removal.id).next();
            if (isNoted && !stop.stop_requested()) // else a change has ended it
                change();
            transaction.commit();
        };
        const auto entries = removal.sortedEntries(); // so that few turns meet the same page
        for (const QString& key : removal.keys) {
            for (std::span<const QByteArray> rest(entries); !rest.empty();) {
                const auto some = rest.first(std::min(rest.size(), entriesOfATurn));
                rest = rest.subspan(some.size());
                inTurn([&] { deleteEntries(key, some); });
            }
        }
        inTurn([&] { endRemoval(removal); });
    }
}

} // namespace halvane
