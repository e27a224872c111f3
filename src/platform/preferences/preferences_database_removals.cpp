// SPDX-License-Identifier: MIT
// Many entries that leave the preferences file together: the note of them, and their leaving.
#include "platform/preferences/preferences_database.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QScopeGuard>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace halvane {

namespace {

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

} // namespace

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

} // namespace halvane
