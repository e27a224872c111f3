// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preference_value.h"

namespace halvane {

class SqliteConnection;

/// Many entries that leave several lists and maps together. The file notes them in one row until
/// they have been taken out; from the note on they count as gone.
struct PreferencesRemoval {
    /// What leaves one list or map.
    struct Part {
        QString key;
        QSet<QString> entries;
    };

    qint64 id = 0; ///< of the note; no other note ever has it
    std::vector<Part> parts;

    /// Whether a change puts in again what leaves. The removal must be over before such a change.
    [[nodiscard]] bool isCrossedBy(const PreferenceChange& change) const;
};

/// Makes the value of a key what it is once the removals are over.
void applyRemovals(const std::vector<PreferencesRemoval>& removals, const QString& key,
                   std::optional<PreferenceValue>& value);

/// Writes a note, as one small change however many entries there are. Throws SqliteError.
PreferencesRemoval noteRemoval(SqliteConnection& connection, const QStringList& keys,
                               const QSet<QString>& entries);

/// The removals that the file notes. Throws SqliteError.
std::vector<PreferencesRemoval> notedRemovals(SqliteConnection& connection);

} // namespace halvane
