// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences_database.h"

#include <QThreadPool>

#include <atomic>

namespace halvane {

/// Takes entries that were noted down for removal out of a preferences file's lists and maps, on a
/// thread of its own and a few at a time. What is not done when the program ends is done when it
/// starts again. Main thread.
class PreferencesRemovals {
  public:
    explicit PreferencesRemovals(const QString& path);
    /// Leaves what is not done.
    ~PreferencesRemovals();

    void begin(PreferencesRemoval removal);
    /// Whether a change would get in the way of what is not done, or be undone by it.
    bool concerns(const PreferenceChange& change);
    /// What a value becomes once all is done.
    void applyTo(const QString& key, std::optional<PreferenceValue>& value);

    /// Holds the work up, so that nothing but the main thread writes to the file.
    void pause();
    void resume();
    /// Waits until all is done; false when something is in the way of it.
    bool finish();
    /// Does the same to values that take the file's place, and forgets it.
    void finishOn(QHash<QString, PreferenceValue>& values);

  private:
    void work();
    void carryOut(PreferencesDatabase& database, const PreferencesRemoval& removal);

    QString m_path;
    std::vector<PreferencesRemoval> m_removals;
    std::atomic<std::size_t> m_done = 0; ///< of them, from the first
    qsizetype m_entriesDone = 0;         ///< of the next; the worker's while it works
    std::atomic<bool> m_stop = false;
    QThreadPool m_worker;
};

} // namespace halvane
