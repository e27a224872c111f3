// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences_database.h"

#include <QThreadPool>

#include <atomic>
#include <memory>
#include <mutex>

namespace halvane {

/// What the value of a key becomes once the removals are finished.
void applyRemovals(std::span<const PreferencesRemoval> removals, const QString& key,
                   std::optional<PreferenceValue>& value);

/// Carries out removals that are noted in a preferences file, on a thread of its own and a few
/// entries at a time, so that changes can come in between. A removal that is not finished when the
/// program ends is finished when it starts again. Main thread.
class PreferencesRemovals {
  public:
    explicit PreferencesRemovals(const QString& path);
    /// Leaves what is not finished.
    ~PreferencesRemovals();

    void begin(PreferencesRemoval removal);
    std::vector<PreferencesRemoval> unfinished();
    /// Whether the changes would put in again what is on its way out. The removals must be over
    /// before such changes are made.
    bool areCrossedBy(std::span<const PreferenceChange> changes);

    /// While the lock is held, nothing is written to the file here.
    std::unique_lock<std::mutex> holdUp();
    /// Waits until everything is finished or something is in the way.
    void finish();
    /// Stops at once. What is unfinished stays so.
    void stop();
    /// Forgets what is unfinished, after stop.
    void clear() { m_begun.clear(); }

  private:
    struct Begun {
        PreferencesRemoval removal;
        std::atomic<bool> isFinished = false; ///< set by the worker
    };
    void carryOut(Begun& begun);

    QString m_path;
    std::vector<std::shared_ptr<Begun>> m_begun;
    QThreadPool m_worker;

    // Shared with the worker.
    std::atomic<bool> m_isStopped = false;
    std::atomic<bool> m_isHeldUp = false; ///< the main thread waits for m_writing
    std::mutex m_writing;                 ///< held while a portion is written
};

} // namespace halvane
