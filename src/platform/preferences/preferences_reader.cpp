// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_reader.h"

#include "platform/preferences/number_list_text.h"

#include <sqlite3.h>

#include <array>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// In the order of PreferenceValue's alternatives.
constexpr std::array<const char*, std::variant_size_v<PreferenceValue>> kindNames{
    "",          "boolean", "number",      "string",         "number list", "string list",
    "data list", "data",    "integer map", "number list map"};

// A single value. The file may have been edited by hand, so its column may be of any type.
PreferenceValue scalar(const SqliteQuery& query, int column, const QString& kind) {
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
    return std::monostate();
}

// Makes room once: a map that grows entry by entry is built again and again.
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

PreferenceValue PreferencesReader::emptyValue(const QString& kindName) {
    static const std::array<PreferenceValue, std::variant_size_v<PreferenceValue>> empty{
        std::monostate(),
        false,
        0.0,
        QString(),
        std::vector<double>(),
        QStringList(),
        std::vector<QByteArray>(),
        QByteArray(),
        IntegerMap(),
        NumbersMap()};
    for (std::size_t i = 1; i < kindNames.size(); ++i)
        if (kindName == QLatin1StringView(kindNames[i]))
            return empty[i];
    return std::monostate();
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
    auto query = m_connection.query("SELECT id, kind, value FROM preference WHERE key = ?1");
    if (!query.bind(1, key).next())
        return std::nullopt;
    const QString kind = query.text(1);
    return Row{query.integer(0), kind, scalar(query, 2, kind)};
}

std::optional<PreferenceValue> PreferencesReader::value(const QString& key) {
    const auto found = row(key);
    return found
               ? std::optional(read(*found, [](const SqliteQuery& query) { return query.text(0); }))
               : std::nullopt;
}

std::optional<PreferenceValue> PreferencesReader::value(const QString& key, SharedNames& names) {
    const auto found = row(key);
    if (!found)
        return std::nullopt;
    auto value =
        read(*found, [&names](const SqliteQuery& query) { return names.take(query.utf8(0)); });
    names.endList();
    return value;
}

template<typename Text>
PreferenceValue PreferencesReader::read(const Row& row, const Text& text) {
    const auto rows = [&](const char* sql, const auto& visit) {
        auto query = m_connection.query(sql);
        query.bind(1, row.id);
        while (query.next())
            visit(query);
    };
    PreferenceValue value = emptyValue(row.kind);
    if (auto* numbers = std::get_if<std::vector<double>>(&value)) {
        rows("SELECT value FROM number_item WHERE preference = ?1 ORDER BY position",
             [&](const SqliteQuery& query) { numbers->push_back(query.number(0)); });
    } else if (auto* strings = std::get_if<QStringList>(&value)) {
        rows("SELECT value FROM string_item WHERE preference = ?1 ORDER BY position",
             [&](const SqliteQuery& query) { strings->append(text(query)); });
    } else if (auto* blobs = std::get_if<std::vector<QByteArray>>(&value)) {
        rows("SELECT value FROM data_item WHERE preference = ?1 ORDER BY position",
             [&](const SqliteQuery& query) { blobs->push_back(query.blob(0)); });
    } else if (auto* integers = std::get_if<IntegerMap>(&value)) {
        std::vector<std::pair<QString, qint64>> entries;
        rows(
            "SELECT name, value FROM integer_entry WHERE preference = ?1 ORDER BY name",
            [&](const SqliteQuery& query) { entries.emplace_back(text(query), query.integer(1)); });
        fill(*integers, entries);
    } else if (auto* lists = std::get_if<NumbersMap>(&value)) {
        std::vector<std::pair<QString, std::vector<double>>> entries;
        bool isReadable = true;
        rows("SELECT name, value FROM numbers_entry WHERE preference = ?1 ORDER BY name",
             [&](const SqliteQuery& query) {
                 auto list = numberListFromText(query.utf8(1));
                 isReadable = isReadable && list;
                 if (isReadable)
                     entries.emplace_back(text(query), *std::move(list));
             });
        if (!isReadable)
            return std::monostate();
        fill(*lists, entries);
    } else {
        return row.value;
    }
    return value;
}

} // namespace halvane
