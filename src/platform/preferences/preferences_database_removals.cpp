// SPDX-License-Identifier: MIT
// How many entries leave the preferences file together: they are noted, then taken out.
#include "platform/preferences/preferences_database.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QScopeGuard>

#include <sqlite3.h>

#include <algorithm>

namespace halvane {

namespace {

// The window waits while ten thousand texts are written, so only those that need it go through Qt's
// writer.
template<typename Texts>
QByteArray jsonText(const Texts& texts) {
    QByteArray json = "[";
    for (const QString& text : texts) {
        if (json.size() > 1)
            json += ',';
        const QByteArray utf8 = text.toUtf8();
        const bool isPlain = std::none_of(utf8.cbegin(), utf8.cend(), [](char c) {
            return (c >= 0 && c < 0x20) || c == '"' || c == '\\';
        });
        if (isPlain)
            json.append('"').append(utf8).append('"');
        else
            json +=
                QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact).mid(1).chopped(1);
    }
    return json += ']';
}

QStringList textsOf(const QByteArray& json) {
    QStringList texts;
    for (const QJsonValue text : QJsonDocument::fromJson(json).array())
        texts.append(text.toString());
    return texts;
}

} // namespace

std::vector<QByteArray> PreferencesDatabase::ordered(const QSet<QString>& entries) {
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

// Finds the places first and then deletes by place: for each deletion by text SQLite would make a
// temporary table of the places.
void PreferencesDatabase::deleteFromList(qint64 id, std::span<const QByteArray> entries) {
    std::vector<qint64> positions;
    for (const QByteArray& entry : entries) {
        auto query = m_connection.query(
            "SELECT position FROM string_item WHERE preference = ?1 AND value = ?2");
        query.bind(1, id).bindUtf8(2, entry);
        while (query.next())
            positions.push_back(query.integer(0));
    }
    std::sort(positions.begin(), positions.end());
    auto query =
        m_connection.query("DELETE FROM string_item WHERE preference = ?1 AND position = ?2");
    for (const qint64 position : positions)
        query.bind(1, id).bind(2, position).run();
}

void PreferencesDatabase::deleteFromMap(qint64 id, std::span<const QByteArray> entries,
                                        const char* sql) {
    auto query = m_connection.query(sql);
    for (const QByteArray& entry : entries)
        query.bind(1, id).bindUtf8(2, entry).run();
}

PreferencesRemoval PreferencesDatabase::noteRemoval(const QStringList& keys,
                                                    const QSet<QString>& entries) {
    // The worker that carries the removal out moves the note to the file proper; the window does
    // not wait for that.
    sqlite3_wal_autocheckpoint(m_connection.handle(), 0);
    const auto asBefore = qScopeGuard(
        [this] { sqlite3_wal_autocheckpoint(m_connection.handle(), pagesOfACheckpoint); });
    SqliteTransaction transaction(m_connection);
    m_connection.query("INSERT INTO removal (keys, entries) VALUES (?1, ?2)")
        .bindUtf8(1, jsonText(keys))
        .bindUtf8(2, jsonText(entries))
        .run();
    transaction.commit();
    PreferencesRemoval removal{sqlite3_last_insert_rowid(m_connection.handle()), {}};
    for (const QString& key : keys)
        removal.parts.push_back({key, entries});
    return removal;
}

std::vector<PreferencesRemoval> PreferencesDatabase::notedRemovals() {
    std::vector<PreferencesRemoval> removals;
    auto query = m_connection.query("SELECT id, keys, entries FROM removal ORDER BY id");
    while (query.next()) {
        const QStringList entries = textsOf(query.blob(2));
        QHash<QString, QSet<QString>> leaving;
        for (const QString& key : textsOf(query.blob(1)))
            leaving.insert(key, {entries.cbegin(), entries.cend()});
        auto spared = m_connection.query("SELECT key, entry FROM spared WHERE removal = ?1");
        spared.bind(1, query.integer(0));
        while (spared.next()) {
            if (spared.type(1) == SQLITE_NULL)
                leaving.remove(spared.text(0));
            else
                leaving[spared.text(0)].remove(spared.text(1));
        }
        PreferencesRemoval removal{query.integer(0), {}};
        for (auto part = leaving.cbegin(); part != leaving.cend(); ++part)
            removal.parts.push_back({part.key(), *part});
        removals.push_back(std::move(removal));
    }
    return removals;
}

void PreferencesDatabase::takeOut(const QString& key, std::span<const QByteArray> entries) {
    SqliteTransaction transaction(m_connection);
    deleteEntries(key, entries);
    transaction.commit();
}

void PreferencesDatabase::endRemoval(qint64 id) {
    m_connection.query("DELETE FROM removal WHERE id = ?1").bind(1, id).run();
}

} // namespace halvane
