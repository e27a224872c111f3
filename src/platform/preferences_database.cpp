// SPDX-License-Identifier: MIT
#include "platform/preferences_database.h"

#include "platform/list_edit.h"
#include "platform/number_list_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QScopeGuard>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int applicationId = 0x48414c56;
constexpr int pagesOfACheckpoint = 200;

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

bool isPlainInJson(char16_t unit) {
    return unit >= 0x20 && unit < 0x7f && unit != '"' && unit != '\\';
}

// Writes a text without its quotes, and gives the end. Nearly all are of plain characters, and
// there may be ten thousand while the window waits.
char* writeJson(char* begin, const QString& text) {
    char* end = begin;
    bool isPlain = true;
    for (const QChar unit : text) {
        isPlain &= isPlainInJson(unit.unicode());
        *end++ = static_cast<char>(unit.unicode());
    }
    if (isPlain)
        return end;
    end = begin;
    for (const char c : text.toUtf8()) {
        if (static_cast<unsigned char>(c) >= 0x7f || isPlainInJson(static_cast<char16_t>(c)))
            *end++ = c;
        else
            for (const char digit : "\\u00" + QByteArray(1, c).toHex())
                *end++ = digit;
    }
    return end;
}

template<typename Texts>
QByteArray jsonText(const Texts& texts) {
    constexpr qsizetype mostOfAUnit = 6; // a \u and its four digits
    qsizetype most = 2;
    for (const QString& text : texts)
        most += text.size() * mostOfAUnit + 3;
    QByteArray json(most, Qt::Uninitialized);
    char* end = json.data();
    *end++ = '[';
    for (const QString& text : texts) {
        if (end[-1] != '[')
            *end++ = ',';
        *end++ = '"';
        end = writeJson(end, text);
        *end++ = '"';
    }
    *end++ = ']';
    json.truncate(end - json.constData());
    return json;
}

constexpr const char* deleteInteger =
    "DELETE FROM integer_entry WHERE preference = ?1 AND name = ?2";
constexpr const char* deleteNumbers =
    "DELETE FROM numbers_entry WHERE preference = ?1 AND name = ?2";

// The entries that a change puts into a list or map.
QStringList entriesPutIn(const PreferenceChange::What& what) {
    if (const auto* strings = std::get_if<PreferenceChange::InsertStrings>(&what))
        return strings->values;
    if (const auto* integer = std::get_if<PreferenceChange::InsertInteger>(&what))
        return {integer->entry};
    if (const auto* numbers = std::get_if<PreferenceChange::InsertNumbers>(&what))
        return {numbers->entry};
    return {};
}

// Whether nothing of what was under the key matters any more.
bool isWhole(const PreferenceChange::What& what) {
    return std::holds_alternative<PreferenceChange::Set>(what) ||
           std::holds_alternative<PreferenceChange::Remove>(what);
}

QStringList textsOf(const QByteArray& json) {
    QStringList texts;
    for (const QJsonValue text : QJsonDocument::fromJson(json).array())
        texts.append(text.toString());
    return texts;
}

// What is on its way out, and what of it came back, which no entry says of all that is under the
// key; a file of an earlier day has no such tables.
constexpr const char* removalTables = R"sql(
CREATE TABLE IF NOT EXISTS removal (
    id INTEGER PRIMARY KEY,
    keys TEXT NOT NULL,
    entries TEXT NOT NULL
) STRICT;
CREATE TABLE IF NOT EXISTS spared (
    removal INTEGER NOT NULL REFERENCES removal (id) ON DELETE CASCADE,
    key TEXT NOT NULL,
    entry TEXT
) STRICT;
)sql";

void createSchema(SqliteConnection& connection) {
    SqliteTransaction transaction(connection);
    connection.execute(schema);
    connection.execute(qPrintable(u"PRAGMA application_id = %1; PRAGMA user_version = %2"_s.arg(
        QString::number(applicationId), QString::number(PreferencesDatabase::version))));
    transaction.commit();
}

// Before anything is changed: another program's file stays as it is.
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
    // What is committed moves to the file proper in small steps: each is part of some commit.
    sqlite3_wal_autocheckpoint(m_connection.handle(), pagesOfACheckpoint);
    if (isNew)
        createSchema(m_connection);
    m_connection.execute(removalTables);
    // Fails here, not at the first change, where a table or a column is missing.
    m_connection.query("SELECT item FROM setting LIMIT 0").run();
}

qint64 PreferencesDatabase::rowOfKind(const QString& key, const PreferenceValue& emptyValue) {
    const QString kind = PreferencesReader::kindName(emptyValue);
    const auto existing = m_reader.row(key);
    if (existing && existing->kind == kind)
        return existing->id;
    if (existing)
        remove(key);
    m_connection.query("INSERT INTO preference (key, kind) VALUES (?1, ?2)")
        .bind(1, key)
        .bind(2, kind)
        .run();
    return sqlite3_last_insert_rowid(m_connection.handle());
}

void PreferencesDatabase::remove(const QString& key) {
    m_connection.query("DELETE FROM preference WHERE key = ?1").bind(1, key).run();
}

/// Carries out one change inside a transaction.
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
            appendIfNew(id, position += listSpacing, text);
    }
    void operator()(const PreferenceChange::InsertInteger& insert) {
        put(database.rowOfKind(key, IntegerMap()), insert.entry, insert.value);
    }
    void operator()(const PreferenceChange::InsertNumbers& insert) {
        put(database.rowOfKind(key, NumbersMap()), insert.entry, insert.value);
    }
    void operator()(const PreferenceChange::RemoveEntries& remove) {
        database.takeOut(key, ordered(remove.entries));
    }

  private:
    void write(OtherKind) {}
    void write(bool value) { writeScalar<bool>(qint64(value)); }
    void write(double value) { writeScalar<double>(value); }
    void write(const QString& value) { writeScalar<QString>(value); }
    void write(const QByteArray& value) { writeScalar<QByteArray>(value); }

    template<typename Value, typename Column>
    void writeScalar(const Column& column) {
        const qint64 id = database.rowOfKind(key, Value());
        connection.query("UPDATE preference SET value = ?2 WHERE id = ?1 AND value IS NOT ?2")
            .bind(1, id)
            .bind(2, column)
            .run();
    }

    // Short lists of numbers and blobs are written whole.
    template<typename Item>
    void writeList(const std::vector<Item>& items, const char* clear, const char* insert) {
        const qint64 id = database.rowOfKind(key, std::vector<Item>());
        const PreferenceValue stored = *database.value(key);
        if (std::get<std::vector<Item>>(stored) == items)
            return;
        connection.query(clear).bind(1, id).run();
        for (std::size_t i = 0; i < items.size(); ++i)
            connection.query(insert).bind(1, id).bind(2, qint64(i)).bind(3, items[i]).run();
    }
    void write(const std::vector<double>& items) {
        writeList(items, "DELETE FROM number_item WHERE preference = ?1",
                  "INSERT INTO number_item VALUES (?1, ?2, ?3)");
    }
    void write(const std::vector<QByteArray>& items) {
        writeList(items, "DELETE FROM data_item WHERE preference = ?1",
                  "INSERT INTO data_item VALUES (?1, ?2, ?3)");
    }

    void write(const QStringList& wanted) {
        const qint64 id = database.rowOfKind(key, QStringList());
        std::vector<PlacedText> stored;
        {
            auto query = connection.query(
                "SELECT position, value FROM string_item WHERE preference = ?1 ORDER BY position");
            query.bind(1, id);
            while (query.next())
                stored.push_back({query.integer(0), query.text(1)});
        }
        const ListEdit edit = planListEdit(stored, wanted);
        for (const qint64 position : edit.removed)
            connection.query("DELETE FROM string_item WHERE preference = ?1 AND position = ?2")
                .bind(1, id)
                .bind(2, position)
                .run();
        for (const auto& placed : edit.inserted)
            connection.query("INSERT INTO string_item VALUES (?1, ?2, ?3)")
                .bind(1, id)
                .bind(2, placed.position)
                .bind(3, placed.text)
                .run();
    }
    qint64 lastPosition(qint64 id) {
        auto query =
            connection.query("SELECT max(position) FROM string_item WHERE preference = ?1");
        query.bind(1, id);
        return query.next() ? query.integer(0) : 0; // NULL of an empty list is 0
    }
    void appendIfNew(qint64 id, qint64 position, const QString& text) {
        // Two statements: one that reads the table which it writes to would gather what it writes
        // in a table of its own first.
        const QByteArray utf8 = text.toUtf8();
        if (connection.query("SELECT 1 FROM string_item WHERE preference = ?1 AND value = ?2")
                .bind(1, id)
                .bindUtf8(2, utf8)
                .next())
            return;
        connection.query("INSERT INTO string_item VALUES (?1, ?2, ?3)")
            .bind(1, id)
            .bind(2, position)
            .bindUtf8(3, utf8)
            .run();
    }

    template<typename Map>
    void writeMap(const Map& wanted, const char* remove) {
        const qint64 id = database.rowOfKind(key, Map());
        const PreferenceValue value = *database.value(key);
        const Map* stored = std::get_if<Map>(&value);
        if (!stored) { // an entry that can't be read: none of them is kept
            database.remove(key);
            return writeMap(wanted, remove);
        }
        for (auto entry = stored->cbegin(); entry != stored->cend(); ++entry)
            if (!wanted.contains(entry.key()))
                connection.query(remove).bind(1, id).bind(2, entry.key()).run();
        for (auto entry = wanted.cbegin(); entry != wanted.cend(); ++entry) {
            const auto found = stored->constFind(entry.key());
            if (found == stored->cend() || *found != *entry)
                put(id, entry.key(), *entry);
        }
    }
    void write(const IntegerMap& wanted) { writeMap(wanted, deleteInteger); }
    void write(const NumbersMap& wanted) { writeMap(wanted, deleteNumbers); }

    void put(qint64 id, const QString& name, qint64 value) {
        connection
            .query("INSERT INTO integer_entry VALUES (?1, ?2, ?3) ON CONFLICT DO UPDATE SET "
                   "value = excluded.value WHERE value <> excluded.value")
            .bind(1, id)
            .bind(2, name)
            .bind(3, value)
            .run();
    }
    void put(qint64 id, const QString& name, const std::vector<double>& value) {
        connection
            .query("INSERT INTO numbers_entry VALUES (?1, ?2, ?3) ON CONFLICT DO UPDATE SET "
                   "value = excluded.value WHERE value <> excluded.value")
            .bind(1, id)
            .bind(2, name)
            .bindUtf8(3, numberListText(value))
            .run();
    }
};

std::vector<PreferencesRemoval>
PreferencesDatabase::apply(std::span<const PreferenceChange> changes,
                           std::vector<PreferencesRemoval> unfinished) {
    SqliteTransaction transaction(m_connection);
    for (const auto& change : changes) {
        for (PreferencesRemoval& removal : unfinished)
            spare(change, removal);
        std::visit(Apply{*this, m_connection, change.key}, change.what);
    }
    transaction.commit();
    return unfinished;
}

std::vector<QByteArray> PreferencesDatabase::ordered(const QSet<QString>& entries) {
    std::vector<QByteArray> texts;
    texts.reserve(static_cast<std::size_t>(entries.size()));
    for (const QString& entry : entries)
        texts.push_back(entry.toUtf8());
    std::sort(texts.begin(), texts.end());
    return texts;
}

// What is put in again is as new: it is taken out first, lest it keep its old place in a list.
void PreferencesDatabase::spare(const PreferenceChange& change, PreferencesRemoval& removal) {
    if (!removal.keys.contains(change.key))
        return;
    const auto note = [&](const std::optional<QString>& entry) {
        auto query = m_connection.query("INSERT INTO spared VALUES (?1, ?2, ?3)");
        query.bind(1, removal.id).bind(2, change.key);
        if (entry)
            query.bind(3, *entry);
        query.run();
    };
    if (isWhole(change.what)) {
        removal.keys.removeAll(change.key);
        note({});
    }
    for (const QString& entry : entriesPutIn(change.what)) {
        if (!removal.entries.contains(entry) || removal.spared[change.key].contains(entry))
            continue;
        takeOut(change.key, std::array{entry.toUtf8()});
        removal.spared[change.key].insert(entry);
        note(entry);
    }
}

void PreferencesDatabase::takeOut(const QString& key, std::span<const QByteArray> entries) {
    const auto row = m_reader.row(key);
    if (!row)
        return;
    if (row->kind == PreferencesReader::kindName(QStringList()))
        takeOutOfList(row->id, entries);
    else if (row->kind == PreferencesReader::kindName(IntegerMap()))
        takeOutOfMap(row->id, entries, deleteInteger);
    else if (row->kind == PreferencesReader::kindName(NumbersMap()))
        takeOutOfMap(row->id, entries, deleteNumbers);
}

// First the places, then what is there: deleting by the text makes SQLite keep the places in a
// table of their own, made for each text.
void PreferencesDatabase::takeOutOfList(qint64 id, std::span<const QByteArray> entries) {
    std::vector<qint64> positions;
    for (const QByteArray& entry : entries) {
        auto query = m_connection.query(
            "SELECT position FROM string_item WHERE preference = ?1 AND value = ?2");
        query.bind(1, id).bindKept(2, entry);
        while (query.next())
            positions.push_back(query.integer(0));
    }
    std::sort(positions.begin(), positions.end());
    auto query =
        m_connection.query("DELETE FROM string_item WHERE preference = ?1 AND position = ?2");
    for (const qint64 position : positions)
        query.bind(1, id).bind(2, position).run();
}

void PreferencesDatabase::takeOutOfMap(qint64 id, std::span<const QByteArray> entries,
                                       const char* sql) {
    auto query = m_connection.query(sql);
    for (const QByteArray& entry : entries)
        query.bind(1, id).bindKept(2, entry).run();
}

PreferencesRemoval PreferencesDatabase::noteRemoval(const QStringList& keys,
                                                    const QSet<QString>& entries) {
    // Whoever carries it out moves the note on to the file proper; that need not be waited for.
    sqlite3_wal_autocheckpoint(m_connection.handle(), 0);
    const auto asBefore = qScopeGuard(
        [this] { sqlite3_wal_autocheckpoint(m_connection.handle(), pagesOfACheckpoint); });
    SqliteTransaction transaction(m_connection);
    m_connection.query("INSERT INTO removal (keys, entries) VALUES (?1, ?2)")
        .bindUtf8(1, jsonText(keys))
        .bindUtf8(2, jsonText(entries))
        .run();
    transaction.commit();
    return {sqlite3_last_insert_rowid(m_connection.handle()), keys, entries, {}};
}

std::vector<PreferencesRemoval> PreferencesDatabase::notedRemovals() {
    std::vector<PreferencesRemoval> removals;
    auto query = m_connection.query("SELECT id, keys, entries FROM removal ORDER BY id");
    while (query.next()) {
        const QStringList entries = textsOf(query.blob(2));
        PreferencesRemoval removal{
            query.integer(0), textsOf(query.blob(1)), {entries.cbegin(), entries.cend()}, {}};
        auto spared = m_connection.query("SELECT key, entry FROM spared WHERE removal = ?1");
        spared.bind(1, removal.id);
        while (spared.next()) {
            if (spared.type(1) == SQLITE_NULL)
                removal.keys.removeAll(spared.text(0));
            else
                removal.spared[spared.text(0)].insert(spared.text(1));
        }
        removals.push_back(std::move(removal));
    }
    return removals;
}

void PreferencesDatabase::carryOut(const PreferencesRemoval& removal,
                                   std::span<const QByteArray> some) {
    SqliteTransaction transaction(m_connection);
    for (const QString& key : removal.keys) {
        const auto spared = removal.spared.constFind(key);
        if (spared == removal.spared.cend()) {
            takeOut(key, some);
            continue;
        }
        std::vector<QByteArray> rest;
        std::copy_if(
            some.begin(), some.end(), std::back_inserter(rest),
            [&](const QByteArray& entry) { return !spared->contains(QString::fromUtf8(entry)); });
        takeOut(key, rest);
    }
    transaction.commit();
}

void PreferencesDatabase::endRemoval(qint64 id) {
    m_connection.query("DELETE FROM removal WHERE id = ?1").bind(1, id).run();
}

void PreferencesDatabase::commitLazily() {
    m_connection.execute("PRAGMA synchronous = NORMAL");
}

} // namespace halvane
