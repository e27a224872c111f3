// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences_database.h"

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
    /// What is not done, while nothing is done; and in its place the same with more that is spared.
    const std::vector<PreferencesRemoval>& unfinished() const { return m_removals; }
    void setUnfinished(std::vector<PreferencesRemoval> removals) {
        m_removals = std::move(removals);
    }
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
    std::vector<QByteArray> m_entries;   ///< of the next, in order; the worker's while it works
    std::size_t m_entriesDone = 0;       ///< of these
    std::atomic<bool> m_stop = false;
    QThreadPool m_worker;
};

} // namespace halvane
