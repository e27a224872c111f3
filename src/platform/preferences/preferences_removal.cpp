// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_removal.h"

#include "platform/preferences/sqlite_connection.h"

#include <algorithm>

namespace halvane {

namespace {

// A number is never given again, so that the worker takes no new note for an old one.
constexpr const char* table = R"sql(
CREATE TABLE IF NOT EXISTS removal_note (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    keys BLOB NOT NULL,
    entries BLOB NOT NULL
) STRICT;
)sql";

// Version 1.0 noted keys and entries as JSON. It kept an entry where `spared` named it; a NULL
// there kept all entries under the key. Each key gets a note of its own.
constexpr const char* takeOver = R"sql(
INSERT INTO removal_note (keys, entries)
    SELECT CAST(char(0) || key.value || char(0) AS BLOB),
        CAST(char(0) || group_concat(entry.value, char(0)) || char(0) AS BLOB)
    FROM removal, json_each(keys) AS key, json_each(entries) AS entry
    WHERE NOT EXISTS (
        SELECT 1 FROM spared WHERE spared.removal = removal.id AND spared.key = key.value
            AND coalesce(spared.entry, entry.value) = entry.value)
    GROUP BY removal.id, key.value;
DROP TABLE spared;
DROP TABLE removal;
)sql";

QByteArray noteOf(const QStringList& texts) {
    QByteArray note(1, '\0');
    for (const QString& text : texts)
        note.append(text.toUtf8()).append('\0');
    return note;
}

QStringList textsOf(const QByteArray& note) {
    return QString::fromUtf8(note.mid(1, note.size() - 2)).split(QChar::Null);
}

} // namespace

bool PreferencesRemoval::isCrossedBy(const PreferenceChange& change) const {
    if (!keys.contains(change.key))
        return false;
    const QStringList putIn = entriesPutIn(change);
    return std::holds_alternative<PreferenceChange::Set>(change.what) ||
           std::any_of(putIn.cbegin(), putIn.cend(), [this](const QString& entry) {
               return entries.contains('\0' + entry.toUtf8() + '\0');
           });
}

std::vector<QByteArray> PreferencesRemoval::sortedEntries() const {
    const QByteArrayList texts = entries.mid(1, entries.size() - 2).split('\0');
    std::vector<QByteArray> sorted(texts.cbegin(), texts.cend());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

void applyRemovals(const std::vector<PreferencesRemoval>& removals, const QString& key,
                   std::optional<PreferenceValue>& value) {
    for (const PreferencesRemoval& removal : removals) {
        if (!removal.keys.contains(key))
            continue;
        applyChange({key, PreferenceChange::RemoveEntries{textsOf(removal.entries)}}, value);
    }
}

void prepareNotes(SqliteConnection& connection) {
    connection.execute(table);
    if (connection.single("SELECT count(*) FROM sqlite_schema WHERE name = 'spared'") == 0)
        return;
    SqliteTransaction transaction(connection);
    connection.execute(takeOver);
    transaction.commit();
}

void noteRemoval(SqliteConnection& connection, const QStringList& keys,
                 const QStringList& entries) {
    connection
        .query("INSERT INTO removal_note (keys, entries) VALUES (?1, ?2)", noteOf(keys),
               noteOf(entries))
        .run();
}

std::vector<PreferencesRemoval> notedRemovals(SqliteConnection& connection) {
    std::vector<PreferencesRemoval> removals;
    auto query = connection.query("SELECT id, keys, entries FROM removal_note");
    while (query.next()) {
        removals.push_back({query.integer(0), textsOf(query.blob(1)), query.blob(2)});
    }
    return removals;
}

} // namespace halvane
