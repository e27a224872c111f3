// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preference_value.h"

#include <QHash>

namespace halvane {

/// What could be read of a preferences file.
struct SalvagedPreferences {
    QHash<QString, PreferenceValue> values;
    bool isComplete = false; ///< the file was read to its end without an error
};

/// Reads whatever a preferences file still gives, past damage and other programs' locks, without
/// touching it: a copy is read, or the file itself where there is no room for one. The file must
/// not be open in this process.
SalvagedPreferences salvagePreferences(const QString& path);

/// Adds to what was read of a damaged file what an older copy of it holds beyond that: whole keys,
/// and the entries of lists and maps.
void fillFrom(const QHash<QString, PreferenceValue>& older, SalvagedPreferences& salvaged);

/// Puts a good file with these values in the place of a bad one. The bad file, and the log that
/// belongs to it, are first given names that nothing bears yet; they are never changed. Gives the
/// bad file's new name. Throws SqliteError, and leaves everything as it was when there is no room
/// for the good file or the folder can't be written to.
QString replacePreferences(const QString& path, const QHash<QString, PreferenceValue>& values,
                           const QString& timeStamp);

} // namespace halvane
