// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sqlite_connection.h"
#include "platform/value_preferences.h"

#include <span>

namespace halvane {

/// The preferences file: one row a key with its kind and, for a single value, the value; one row an
/// item of a list or entry of a map, in the table of their type. Not thread-safe. Throws
/// SqliteError; one that says isDamage means that the file is not, or no longer, a preferences file
/// of this version.
class PreferencesDatabase {
  public:
    /// The file's format; a file with a higher number was written by a newer program.
    static constexpr int version = 1;

    /// Opens the file, or creates it. A call that finds it locked waits so long at most.
    PreferencesDatabase(const QString& path, int busyMilliseconds);

    /// How long a call that finds the file locked waits at most.
    void setPatience(int busyMilliseconds) { m_connection.setPatience(busyMilliseconds); }

    std::optional<PreferenceValue> value(const QString& key);

    /// Makes all the changes, or none. They are on the disk when this returns; what is already so
    /// is not written.
    void apply(std::span<const PreferenceChange> changes);

    /// The name under which a kind is stored, and the kind's empty value by that name; OtherKind
    /// for an unknown one.
    static QString kindName(const PreferenceValue& value);
    static PreferenceValue emptyValue(const QString& kindName);

  private:
    struct Row;
    struct Apply;

    std::optional<Row> row(const QString& key);
    PreferenceValue read(const Row& row);
    /// The id of a key's row of a kind; a row of another kind makes way, with all it holds.
    qint64 rowOfKind(const QString& key, const PreferenceValue& emptyValue);
    void remove(const QString& key);

    SqliteConnection m_connection;
};

} // namespace halvane
