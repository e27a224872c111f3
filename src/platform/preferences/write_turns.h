// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <mutex>

namespace halvane {

/// Whose turn it is to write to the preferences file. The main thread's few changes come before the
/// many of a worker.
class WriteTurns {
  public:
    /// The turn lasts as long as this lives.
    using Turn = std::unique_lock<std::mutex>;

    /// Waits for the worker's present turn at most. Main thread.
    Turn takeFirst() {
        m_isAwaited = true;
        Turn turn(m_mutex);
        m_isAwaited = false;
        m_isAwaited.notify_one();
        return turn;
    }
    /// Worker's thread.
    Turn takeNext() {
        // A mutex alone is mostly given to the thread that has just let go of it.
        m_isAwaited.wait(true);
        return Turn(m_mutex);
    }

  private:
    std::mutex m_mutex;
    std::atomic<bool> m_isAwaited = false; ///< by the main thread
};

} // namespace halvane
