// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences_reader.h"

#include <span>

namespace halvane {

/// Many entries that leave several string lists and maps, as noted in the file.
struct PreferencesRemoval {
    qint64 id = 0; ///< of the note
    /// One for each list or map.
    struct Part {
        QString key;
        QSet<QString> entries;
    };
    std::vector<Part> parts;
};

/// The preferences file: one row for each key with its kind and, for a single value, the value; one
/// row for each item of a list and each entry of a map, in the table of their type. Not
/// thread-safe. Throws SqliteError; one that says isDamage means that the file is not, or no
/// longer, a preferences file of this version.
class PreferencesDatabase {
  public:
    /// The file's format; a file with a higher number was written by a newer program.
    static constexpr int version = 1;

    /// Opens the file, or creates it. A call that finds the file locked waits this long at most.
    PreferencesDatabase(const QString& path, int busyMilliseconds);

    /// How long a call that finds the file locked waits at most.
    void setPatience(int busyMilliseconds) { m_connection.setPatience(busyMilliseconds); }

    std::optional<PreferenceValue> value(const QString& key) { return m_reader.value(key); }
    /// The keys of lists of strings and of maps, which may be long.
    QStringList longValues() { return m_reader.longValues(); }

    /// Finishes the removals and then makes all the changes, or does nothing. All is on the disk
    /// when this returns. A value that is stored already is not written.
    void apply(std::span<const PreferenceChange> changes,
               std::span<const PreferencesRemoval> removals = {});

    /// Notes that entries leave. That is one small change however many they are, and it is on the
    /// disk when this returns; the entries are still in their lists and maps.
    PreferencesRemoval noteRemoval(const QStringList& keys, const QSet<QString>& entries);
    /// The removals that are noted and not finished.
    std::vector<PreferencesRemoval> notedRemovals();
    /// Entries as UTF-8 in the order of the tables. Who goes by it meets each page once.
    static std::vector<QByteArray> ordered(const QSet<QString>& entries);
    /// Takes entries, in that order, out of a list or map.
    void takeOut(const QString& key, std::span<const QByteArray> entries);
    /// Takes the note away once the entries have left.
    void endRemoval(qint64 id);
    /// From now on a commit reaches the disk with a later one, or when the program ends. Commits
    /// reach it in their order.
    void commitLazily();

  private:
    struct Apply;

    static constexpr int pagesOfACheckpoint = 200;

    /// The id of a key's row of a kind; a row of another kind makes way, with all it holds.
    qint64 rowOfKind(const QString& key, const PreferenceValue& emptyValue);
    void remove(const QString& key);
    void deleteEntries(const QString& key, std::span<const QByteArray> entries);
    void deleteFromList(qint64 id, std::span<const QByteArray> entries);
    void deleteFromMap(qint64 id, std::span<const QByteArray> entries, const char* sql);

    SqliteConnection m_connection;
    PreferencesReader m_reader{m_connection};
};

} // namespace halvane
