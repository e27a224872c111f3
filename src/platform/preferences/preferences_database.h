// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences_reader.h"
#include "platform/preferences/value_preferences.h"

#include <span>

namespace halvane {

/// Entries that leave several string lists and maps.
struct PreferencesRemoval {
    qint64 id = 0; ///< of the note in the file
    QStringList keys;
    QSet<QString> entries;
    QHash<QString, QSet<QString>> spared; ///< by key: entries that came back, and stay
};

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

    std::optional<PreferenceValue> value(const QString& key) { return m_reader.value(key); }
    /// The keys of lists of strings and of maps, which may be long.
    QStringList longValues() { return m_reader.longValues(); }

    /// Makes all the changes, or none. They are on the disk when this returns; what is already so
    /// is not written. What they bring back is spared by the removals that are noted and not done;
    /// gives those as they are now.
    std::vector<PreferencesRemoval> apply(std::span<const PreferenceChange> changes,
                                          std::vector<PreferencesRemoval> unfinished = {});

    /// Notes down that entries leave, which is a small change however many they are; the note is on
    /// the disk when this returns, the entries themselves are still in their lists and maps.
    PreferencesRemoval noteRemoval(const QStringList& keys, const QSet<QString>& entries);
    /// What was noted down and is not done yet.
    std::vector<PreferencesRemoval> notedRemovals();
    /// Entries as UTF-8 in the order of the tables, in which each page is met but once.
    static std::vector<QByteArray> ordered(const QSet<QString>& entries);
    /// Takes some of a removal's entries, so ordered, out of its lists and maps.
    void carryOut(const PreferencesRemoval& removal, std::span<const QByteArray> some);
    /// Takes the note away, its entries having left.
    void endRemoval(qint64 id);
    /// From now on commits are on the disk only when a later one or the end of the program puts
    /// them there. They get there in order.
    void commitLazily();

  private:
    struct Apply;

    static constexpr int pagesOfACheckpoint = 200;
    static constexpr const char* deleteInteger =
        "DELETE FROM integer_entry WHERE preference = ?1 AND name = ?2";
    static constexpr const char* deleteNumbers =
        "DELETE FROM numbers_entry WHERE preference = ?1 AND name = ?2";

    /// The id of a key's row of a kind; a row of another kind makes way, with all it holds.
    qint64 rowOfKind(const QString& key, const PreferenceValue& emptyValue);
    void remove(const QString& key);
    void spare(const PreferenceChange& change, PreferencesRemoval& removal);
    void takeOut(const QString& key, std::span<const QByteArray> entries);
    void takeOutOfList(qint64 id, std::span<const QByteArray> entries);
    void takeOutOfMap(qint64 id, std::span<const QByteArray> entries, const char* sql);

    SqliteConnection m_connection;
    PreferencesReader m_reader{m_connection};
};

} // namespace halvane
