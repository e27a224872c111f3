// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preference_value.h"
#include "platform/preferences/sqlite_connection.h"

namespace halvane {

/// Reads values from a preferences file, through a connection that outlives it. One thread at a
/// time. Throws SqliteError.
class PreferencesReader {
  public:
    /// A key's row.
    struct Row {
        qint64 id;
        QString kind;
        PreferenceValue value; ///< a list or a map is empty here
    };

    explicit PreferencesReader(SqliteConnection& connection)
        : m_connection(connection) {}

    std::optional<Row> row(const QString& key);
    /// The value without the entries that are noted as gone; none for an absent key.
    std::optional<PreferenceValue> value(const QString& key);
    /// The keys of values that may be long, in the order in which the program needs them: lists of
    /// strings come before maps.
    QStringList longValues();

    /// The name under which a kind is stored.
    static QString kindName(const PreferenceValue& value);
    /// The single value of that kind that a column holds; the empty list or map of that kind;
    /// std::monostate for anything else.
    static PreferenceValue single(const SqliteQuery& query, int column, const QString& kind);

  private:
    template<typename Visit>
    void visitRows(const char* sql, qint64 id, const Visit& visit);
    PreferenceValue read(Row row);

    SqliteConnection& m_connection;
};

} // namespace halvane
