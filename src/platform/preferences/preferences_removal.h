// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preference_value.h"

namespace halvane {

class SqliteConnection;

/// Many entries that leave several lists and maps together. The file notes them in one row until
/// they have been taken out; from the note on they count as gone. No entry holds a zero character.
struct PreferencesRemoval {
    qint64 id = 0;      ///< of the note; no other note ever has it
    QStringList keys;   ///< of the lists and maps
    QByteArray entries; ///< in UTF-8, with a zero byte before the first and behind each

    /// Whether a change puts in again what leaves. The removal must be over before such a change.
    [[nodiscard]] bool isCrossedBy(const PreferenceChange& change) const;
    /// In the order of the tables, that of UTF-8.
    [[nodiscard]] std::vector<QByteArray> sortedEntries() const;
};

/// Makes the value of a key what it is once the removals are over.
void applyRemovals(const std::vector<PreferencesRemoval>& removals, const QString& key,
                   std::optional<PreferenceValue>& value);

/// Makes the table of the notes where it is missing, and takes over the notes of version 1.0.
/// Throws SqliteError.
void prepareNotes(SqliteConnection& connection);

/// Writes a note, as one small change however many entries there are. Throws SqliteError.
void noteRemoval(SqliteConnection& connection, const QStringList& keys, const QStringList& entries);

/// The removals that the file notes. Throws SqliteError.
std::vector<PreferencesRemoval> notedRemovals(SqliteConnection& connection);

} // namespace halvane
