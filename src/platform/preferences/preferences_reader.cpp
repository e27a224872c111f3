// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_reader.h"

#include "platform/preferences/number_list_text.h"
#include "platform/preferences/preferences_removal.h"

#include <sqlite3.h>

#include <array>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// In the order of PreferenceValue's alternatives.
constexpr std::array<const char*, std::variant_size_v<PreferenceValue>> kindNames{
    "",          "boolean", "number",      "string",         "number list", "string list",
    "data list", "data",    "integer map", "number list map"};

PreferenceValue emptyCollection(const QString& kind) {
    static const std::array<PreferenceValue, 5> collections{std::vector<double>(), QStringList(),
                                                            std::vector<QByteArray>(), IntegerMap(),
                                                            NumbersMap()};
    for (const PreferenceValue& empty : collections)
        if (kind == QLatin1StringView(kindNames[empty.index()]))
            return empty;
    return std::monostate();
}

// Makes room once, since a map that grows entry by entry is built again several times.
template<typename Map, typename Entries>
void fill(Map& map, Entries& entries) {
    map.reserve(static_cast<qsizetype>(entries.size()));
    for (auto& [name, value] : entries)
        map.emplace(std::move(name), std::move(value));
}

} // namespace

QString PreferencesReader::kindName(const PreferenceValue& value) {
    return QLatin1StringView(kindNames[value.index()]);
}

PreferenceValue PreferencesReader::single(const SqliteQuery& query, int column,
                                          const QString& kind) {
    // The column may be of any type, since users may edit the file.
    const int type = query.type(column);
    const bool numeric = type == SQLITE_INTEGER || type == SQLITE_FLOAT;
    if (kind == "boolean"_L1 && type == SQLITE_INTEGER)
        return query.integer(column) != 0;
    if (kind == "number"_L1 && (numeric || type == SQLITE_NULL))
        return query.number(column);
    if (kind == "string"_L1 && type == SQLITE_TEXT)
        return query.text(column);
    if (kind == "data"_L1 && type == SQLITE_BLOB)
        return query.blob(column);
    return emptyCollection(kind);
}

QStringList PreferencesReader::longValues() {
    QStringList keys;
    auto query = m_connection.query("SELECT key FROM preference WHERE kind IN ('string list', "
                                    "'integer map', 'number list map') ORDER BY kind DESC");
    while (query.next())
        keys.append(query.text(0));
    return keys;
}

std::optional<PreferencesReader::Row> PreferencesReader::row(const QString& key) {
    auto query = m_connection.query("SELECT id, kind, value FROM preference WHERE key = ?1", key);
    if (!query.next())
        return std::nullopt;
    const QString kind = query.text(1);
    return Row{query.integer(0), kind, single(query, 2, kind)};
}

template<typename Visit>
void PreferencesReader::visitRows(const char* sql, qint64 id, const Visit& visit) {
    auto query = m_connection.query(sql, id);
    while (query.next())
        visit(query);
}

std::optional<PreferenceValue> PreferencesReader::value(const QString& key) {
    // The worker may end a removal at any time, so the notes are read before the rows.
    const auto removals = notedRemovals(m_connection);
    auto found = row(key);
    if (!found)
        return std::nullopt;
    std::optional<PreferenceValue> result = read(*std::move(found));
    applyRemovals(removals, key, result);
    return result;
}

PreferenceValue PreferencesReader::read(Row row) {
    PreferenceValue value = std::move(row.value);
    if (auto* numbers = std::get_if<std::vector<double>>(&value)) {
        visitRows("SELECT value FROM number_item WHERE preference = ?1 ORDER BY position", row.id,
                  [&](const SqliteQuery& query) { numbers->push_back(query.number(0)); });
    } else if (auto* strings = std::get_if<QStringList>(&value)) {
        visitRows("SELECT value FROM string_item WHERE preference = ?1 ORDER BY position", row.id,
                  [&](const SqliteQuery& query) { strings->append(query.text(0)); });
    } else if (auto* blobs = std::get_if<std::vector<QByteArray>>(&value)) {
        visitRows("SELECT value FROM data_item WHERE preference = ?1 ORDER BY position", row.id,
                  [&](const SqliteQuery& query) { blobs->push_back(query.blob(0)); });
    } else if (auto* integers = std::get_if<IntegerMap>(&value)) {
        std::vector<std::pair<QString, qint64>> entries;
        visitRows("SELECT name, value FROM integer_entry WHERE preference = ?1", row.id,
                  [&](const SqliteQuery& query) {
                      entries.emplace_back(query.text(0), query.integer(1));
                  });
        fill(*integers, entries);
    } else if (auto* lists = std::get_if<NumbersMap>(&value)) {
        std::vector<std::pair<QString, std::vector<double>>> entries;
        bool isReadable = true;
        visitRows("SELECT name, value FROM numbers_entry WHERE preference = ?1", row.id,
                  [&](const SqliteQuery& query) {
                      auto list = numberListFromText(query.utf8(1));
                      isReadable = isReadable && list;
                      if (isReadable)
                          entries.emplace_back(query.text(0), *std::move(list));
                  });
        if (!isReadable)
            return std::monostate();
        fill(*lists, entries);
    }
    return value;
}

} // namespace halvane
