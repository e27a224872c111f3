// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences_removal.h"

#include <QHash>

namespace halvane {

/// What could be read of a preferences file.
struct SalvagedPreferences {
    QHash<QString, PreferenceValue> values;   ///< without the entries of the removals
    std::vector<PreferencesRemoval> removals; ///< that were noted
    bool isComplete = false;                  ///< the file was read to its end without an error
};

/// Reads whatever a preferences file still gives, in spite of damage and of other programs' locks.
/// The file is not touched: a copy is read, or the file itself where there is no room for one. The
/// file must not be open in this process.
SalvagedPreferences salvagePreferences(const QString& path);

/// Adds what an older copy holds beyond what was read of a damaged file: whole keys, and the
/// entries of lists and maps.
void fillFrom(const QHash<QString, PreferenceValue>& older, SalvagedPreferences& salvaged);

/// Puts a good file with these values in the place of a bad one, and gives the bad file's new name.
/// The bad file is never changed: it and its log are renamed first, to names that were free. Throws
/// SqliteError when there is no room for the good file or the folder can't be written to;
/// everything is as it was then.
QString replacePreferences(const QString& path, const QHash<QString, PreferenceValue>& values,
                           const QString& timeStamp);

} // namespace halvane
