// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/shared_names.h"
#include "platform/preferences/sqlite_connection.h"
#include "platform/preferences/value_preferences.h"

namespace halvane {

/// Reads values from a preferences file through a connection, which must outlive it. One thread at
/// a time. Throws SqliteError.
class PreferencesReader {
  public:
    /// A key's row.
    struct Row {
        qint64 id;
        QString kind;
        PreferenceValue value; ///< OtherKind for a list or a map
    };

    explicit PreferencesReader(SqliteConnection& connection)
        : m_connection(connection) {}

    std::optional<Row> row(const QString& key);
    std::optional<PreferenceValue> value(const QString& key);
    /// The same, with texts that lists and maps have in common shared among them. Costs memory as
    /// long as this lives.
    std::optional<PreferenceValue> value(const QString& key, SharedNames& names);
    /// The keys of what may be long: first the lists of strings, then the maps.
    QStringList longValues();

    /// The name under which a kind is stored, and the kind's empty value by that name; OtherKind
    /// for an unknown one.
    static QString kindName(const PreferenceValue& value);
    static PreferenceValue emptyValue(const QString& kindName);

  private:
    template<typename Text>
    PreferenceValue read(const Row& row, const Text& text);

    SqliteConnection& m_connection;
};

} // namespace halvane
