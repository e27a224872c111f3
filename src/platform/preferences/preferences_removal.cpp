// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_removal.h"

#include "platform/preferences/sqlite_connection.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>

#include <sqlite3.h>

#include <algorithm>

namespace halvane {

namespace {

// The window waits for the note. Qt's writer would take several milliseconds more for ten thousand
// texts, so it writes only those that need an escape.
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

bool PreferencesRemoval::isCrossedBy(const PreferenceChange& change) const {
    const bool isSet = std::holds_alternative<PreferenceChange::Set>(change.what);
    const QStringList putIn = entriesPutIn(change);
    return std::any_of(parts.cbegin(), parts.cend(), [&](const Part& part) {
        return part.key == change.key &&
               (isSet || std::any_of(putIn.cbegin(), putIn.cend(), [&](const QString& entry) {
                    return part.entries.contains(entry);
                }));
    });
}

void applyRemovals(const std::vector<PreferencesRemoval>& removals, const QString& key,
                   std::optional<PreferenceValue>& value) {
    for (const PreferencesRemoval& removal : removals)
        for (const PreferencesRemoval::Part& part : removal.parts)
            if (part.key == key)
                applyChange({key, PreferenceChange::RemoveEntries{part.entries}}, value);
}

PreferencesRemoval noteRemoval(SqliteConnection& connection, const QStringList& keys,
                               const QSet<QString>& entries) {
    // SQLite would give the number of a deleted note to the next one. The worker must not take a
    // new note for an old one, so the number is random.
    PreferencesRemoval removal{static_cast<qint64>(QRandomGenerator::global()->generate64() >> 1),
                               {}};
    for (const QString& key : keys)
        removal.parts.push_back({key, entries});
    connection
        .query("INSERT INTO removal (id, keys, entries) VALUES (?1, ?2, ?3)", removal.id,
               SqliteText{jsonText(keys)}, SqliteText{jsonText(entries)})
        .run();
    return removal;
}

std::vector<PreferencesRemoval> notedRemovals(SqliteConnection& connection) {
    std::vector<PreferencesRemoval> removals;
    auto query = connection.query("SELECT id, keys, entries FROM removal");
    while (query.next()) {
        const QStringList entries = textsOf(query.blob(2));
        QHash<QString, QSet<QString>> leaving;
        for (const QString& key : textsOf(query.blob(1)))
            leaving.insert(key, {entries.cbegin(), entries.cend()});
        auto spared =
            connection.query("SELECT key, entry FROM spared WHERE removal = ?1", query.integer(0));
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

} // namespace halvane
