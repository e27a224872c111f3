// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences_reader.h"
#include "platform/preferences/preferences_removal.h"
#include "platform/preferences/write_turns.h"

#include <span>
#include <stop_token>

namespace halvane {

/// The preferences file. It holds one row for each key, with its kind and, for a single value, the
/// value; and one row for each item of a list and each entry of a map, in the table of their type.
/// One thread at a time. Throws SqliteError; one that says isDamage means that the file is not, or
/// no longer, a preferences file of this version.
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

    /// Makes all the changes, or none. They are on the disk when this returns. A value that is
    /// stored already is not written.
    void apply(std::span<const PreferenceChange> changes);

    /// Notes that entries leave lists and maps. The note is on the disk when this returns.
    void noteRemoval(const QStringList& keys, const QStringList& entries);
    /// Whether entries that were noted still have to be taken out.
    bool hasRemovals() { return m_connection.single("SELECT count(*) FROM removal_note") > 0; }
    /// Takes out all that is noted, a few entries in each turn. Stops at the end of a turn when
    /// asked to. The disk may be behind, but it gets the changes in their order.
    void carryOutRemovals(WriteTurns& turns, const std::stop_token& stop);

  private:
    struct Apply;

    static constexpr int pagesOfACheckpoint = 200;

    /// The id of a key's row of a kind. A row of another kind makes way, with all it holds.
    qint64 rowOfKind(const QString& key, const PreferenceValue& emptyValue);
    void remove(const QString& key);
    /// Entries as UTF-8, in the order of the tables.
    static std::vector<QByteArray> inTableOrder(const QStringList& entries);
    void deleteEntries(const QString& key, std::span<const QByteArray> entries);
    void deleteFromList(qint64 id, std::span<const QByteArray> entries);
    void deleteFromMap(qint64 id, std::span<const QByteArray> entries, const char* sql);
    void endRemoval(const PreferencesRemoval& removal);

    SqliteConnection m_connection;
    PreferencesReader m_reader{m_connection};
    bool m_mayHaveNotes = true; ///< else nobody has to look: only this connection adds notes
};

} // namespace halvane
