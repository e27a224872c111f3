// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preference_value.h"
#include "platform/preferences/shared_names.h"
#include "platform/preferences/sqlite_connection.h"

namespace halvane {

/// Reads values from a preferences file through a connection, which must outlive it. One thread at
/// a time. Throws SqliteError.
class PreferencesReader {
  public:
    /// A key's row.
    struct Row {
        qint64 id;
        QString kind;
        PreferenceValue value; ///< monostate for a list or a map
    };

    explicit PreferencesReader(SqliteConnection& connection)
        : m_connection(connection) {}

    std::optional<Row> row(const QString& key);
    std::optional<PreferenceValue> value(const QString& key);
    /// The same; texts that lists and maps have in common are shared among them.
    std::optional<PreferenceValue> value(const QString& key, SharedNames& names);
    /// The keys of values that may be long, those first that are needed first: lists of strings,
    /// then maps.
    QStringList longValues();

    /// The name under which a kind is stored, and the kind's empty value by that name. An unknown
    /// name gives std::monostate.
    static QString kindName(const PreferenceValue& value);
    static PreferenceValue emptyValue(const QString& kindName);

  private:
    template<typename Text>
    PreferenceValue read(const Row& row, const Text& text);

    SqliteConnection& m_connection;
};

} // namespace halvane
