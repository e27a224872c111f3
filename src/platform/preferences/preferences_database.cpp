// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_database.h"

#include "platform/preferences/number_list_text.h"

#include <sqlite3.h>

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int applicationId = 0x48414c56;

constexpr const char* schema = R"sql(
CREATE TABLE preference (
    id INTEGER PRIMARY KEY,
    key TEXT NOT NULL UNIQUE,
    kind TEXT NOT NULL,
    value ANY
) STRICT;
CREATE TABLE number_item (
    preference INTEGER NOT NULL REFERENCES preference (id) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    value REAL,
    PRIMARY KEY (preference, position)
) STRICT, WITHOUT ROWID;
CREATE TABLE string_item (
    preference INTEGER NOT NULL REFERENCES preference (id) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (preference, position)
) STRICT, WITHOUT ROWID;
CREATE INDEX string_item_by_value ON string_item (preference, value);
CREATE TABLE data_item (
    preference INTEGER NOT NULL REFERENCES preference (id) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    value BLOB NOT NULL,
    PRIMARY KEY (preference, position)
) STRICT, WITHOUT ROWID;
CREATE TABLE integer_entry (
    preference INTEGER NOT NULL REFERENCES preference (id) ON DELETE CASCADE,
    name TEXT NOT NULL,
    value INTEGER NOT NULL,
    PRIMARY KEY (preference, name)
) STRICT, WITHOUT ROWID;
CREATE TABLE numbers_entry (
    preference INTEGER NOT NULL REFERENCES preference (id) ON DELETE CASCADE,
    name TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (preference, name)
) STRICT, WITHOUT ROWID;
CREATE VIEW setting AS
    SELECT key, kind, NULL AS item, value FROM preference WHERE value IS NOT NULL
    UNION ALL SELECT key, kind, position, number_item.value
        FROM preference JOIN number_item ON preference = id
    UNION ALL SELECT key, kind, position, string_item.value
        FROM preference JOIN string_item ON preference = id
    UNION ALL SELECT key, kind, position, hex(data_item.value)
        FROM preference JOIN data_item ON preference = id
    UNION ALL SELECT key, kind, name, integer_entry.value
        FROM preference JOIN integer_entry ON preference = id
    UNION ALL SELECT key, kind, name, numbers_entry.value
        FROM preference JOIN numbers_entry ON preference = id;
)sql";

void createSchema(SqliteConnection& connection) {
    SqliteTransaction transaction(connection);
    connection.execute(schema);
    connection.execute(qPrintable(u"PRAGMA application_id = %1; PRAGMA user_version = %2"_s.arg(
        QString::number(applicationId), QString::number(PreferencesDatabase::version))));
    transaction.commit();
}

// Called before anything is changed, so that another program's file stays as it is.
void checkOwnership(SqliteConnection& connection) {
    const bool ours = connection.single("PRAGMA application_id") == applicationId;
    const qint64 version = connection.single("PRAGMA user_version");
    if (ours && version > PreferencesDatabase::version)
        throw SqliteError(SQLITE_FORMAT, u"it was written by a newer version"_s);
    if (!ours || version != PreferencesDatabase::version)
        throw SqliteError(SQLITE_FORMAT, u"it holds something else"_s);
}

} // namespace

PreferencesDatabase::PreferencesDatabase(const QString& path, int busyMilliseconds)
    : m_connection(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, busyMilliseconds) {
    if (sqlite3_db_readonly(m_connection.handle(), "main") == 1)
        throw SqliteError(SQLITE_READONLY, u"it is read-only"_s);
    const bool isNew = m_connection.single("SELECT count(*) FROM sqlite_schema") == 0;
    if (!isNew)
        checkOwnership(m_connection);
    m_connection.execute("PRAGMA journal_mode = WAL");
    m_connection.execute("PRAGMA synchronous = FULL"); // each commit reaches the disk
    m_connection.execute("PRAGMA foreign_keys = ON");
    // The log moves to the file proper in small steps, each as part of a commit.
    sqlite3_wal_autocheckpoint(m_connection.handle(), pagesOfACheckpoint);
    if (isNew)
        createSchema(m_connection);
    prepareNotes(m_connection);
    // A missing table or column shows here rather than at the first change.
    m_connection.query("SELECT item FROM setting LIMIT 0").run();
}

qint64 PreferencesDatabase::rowOfKind(const QString& key, const PreferenceValue& emptyValue) {
    const QString kind = PreferencesReader::kindName(emptyValue);
    const auto existing = m_reader.row(key);
    if (existing && existing->kind == kind)
        return existing->id;
    if (existing)
        remove(key);
    m_connection.query("INSERT INTO preference (key, kind) VALUES (?1, ?2)", key, kind).run();
    return sqlite3_last_insert_rowid(m_connection.handle());
}

void PreferencesDatabase::remove(const QString& key) {
    m_connection.query("DELETE FROM preference WHERE key = ?1", key).run();
}

// Carries out one change inside a transaction.
struct PreferencesDatabase::Apply {
    PreferencesDatabase& database;
    SqliteConnection& connection;
    const QString& key;

    void operator()(const PreferenceChange::Set& set) {
        std::visit([this](const auto& value) { write(value); }, set.value);
    }
    void operator()(const PreferenceChange::Remove&) { database.remove(key); }
    void operator()(const PreferenceChange::InsertStrings& insert) {
        const qint64 id = database.rowOfKind(key, QStringList());
        qint64 position = lastPosition(id);
        for (const auto& text : insert.values)
            appendIfNew(id, ++position, text);
    }
    void operator()(const PreferenceChange::InsertInteger& insert) {
        put(database.rowOfKind(key, IntegerMap()), insert.entry, insert.value);
    }
    void operator()(const PreferenceChange::InsertNumbers& insert) {
        put(database.rowOfKind(key, NumbersMap()), insert.entry, insert.value);
    }
    void operator()(const PreferenceChange::RemoveEntries& remove) {
        database.deleteEntries(key, inTableOrder(remove.entries));
    }

  private:
    void write(std::monostate) {}
    void write(bool value) { writeScalar<bool>(static_cast<qint64>(value)); }
    void write(double value) { writeScalar<double>(value); }
    void write(const QString& value) { writeScalar<QString>(value); }
    void write(const QByteArray& value) { writeScalar<QByteArray>(value); }

    template<typename Value, typename Column>
    void writeScalar(const Column& column) {
        const qint64 id = database.rowOfKind(key, Value());
        connection
            .query("UPDATE preference SET value = ?2 WHERE id = ?1 AND value IS NOT ?2", id, column)
            .run();
    }

    // Writes the whole list. Long lists change by insertions and removals only.
    template<typename List>
    void writeList(const List& items, const char* clear, const char* insert) {
        const qint64 id = database.rowOfKind(key, List());
        if (std::get<List>(*database.m_reader.value(key)) == items)
            return;
        connection.query(clear, id).run();
        qint64 position = 0;
        for (const auto& item : items)
            connection.query(insert, id, ++position, item).run();
    }
    void write(const std::vector<double>& items) {
        writeList(items, "DELETE FROM number_item WHERE preference = ?1",
                  "INSERT INTO number_item VALUES (?1, ?2, ?3)");
    }
    void write(const QStringList& items) {
        writeList(items, "DELETE FROM string_item WHERE preference = ?1",
                  "INSERT INTO string_item VALUES (?1, ?2, ?3)");
    }
    void write(const std::vector<QByteArray>& items) {
        writeList(items, "DELETE FROM data_item WHERE preference = ?1",
                  "INSERT INTO data_item VALUES (?1, ?2, ?3)");
    }

    qint64 lastPosition(qint64 id) {
        auto query =
            connection.query("SELECT max(position) FROM string_item WHERE preference = ?1", id);
        return query.next() ? query.integer(0) : 0; // NULL of an empty list is 0
    }
    void appendIfNew(qint64 id, qint64 position, const QString& text) {
        // SQLite would gather the rows of one INSERT ... SELECT in a temporary table.
        const QByteArray utf8 = text.toUtf8();
        if (connection
                .query("SELECT 1 FROM string_item WHERE preference = ?1 AND value = ?2", id,
                       SqliteText{utf8})
                .next())
            return;
        connection
            .query("INSERT INTO string_item VALUES (?1, ?2, ?3)", id, position, SqliteText{utf8})
            .run();
    }

    template<typename Map>
    void writeMap(const Map& entries) {
        database.remove(key);
        const qint64 id = database.rowOfKind(key, Map());
        for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry)
            put(id, entry.key(), *entry);
    }
    void write(const IntegerMap& entries) { writeMap(entries); }
    void write(const NumbersMap& entries) { writeMap(entries); }

    void put(qint64 id, const QString& name, qint64 value) {
        connection
            .query("INSERT INTO integer_entry VALUES (?1, ?2, ?3) ON CONFLICT DO UPDATE SET "
                   "value = excluded.value WHERE value <> excluded.value",
                   id, name, value)
            .run();
    }
    void put(qint64 id, const QString& name, const std::vector<double>& value) {
        connection
            .query("INSERT INTO numbers_entry VALUES (?1, ?2, ?3) ON CONFLICT DO UPDATE SET "
                   "value = excluded.value WHERE value <> excluded.value",
                   id, name, SqliteText{numberListText(value)})
            .run();
    }
};

void PreferencesDatabase::apply(std::span<const PreferenceChange> changes) {
    SqliteTransaction transaction(m_connection);
    const auto removals =
        m_mayHaveNotes ? notedRemovals(m_connection) : std::vector<PreferencesRemoval>();
    m_mayHaveNotes = !removals.empty();
    for (const PreferencesRemoval& removal : removals) {
        if (std::none_of(changes.begin(), changes.end(), [&](const PreferenceChange& change) {
                return removal.isCrossedBy(change);
            }))
            continue;
        for (const QString& key : removal.keys)
            deleteEntries(key, removal.sortedEntries());
        endRemoval(removal);
    }
    for (const PreferenceChange& change : changes)
        std::visit(Apply{*this, m_connection, change.key}, change.what);
    transaction.commit();
}

} // namespace halvane
