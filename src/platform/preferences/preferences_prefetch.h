// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/value_preferences.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace halvane {

/// Reads the long values of a preferences file on a thread of its own while the program starts, so
/// that it finds them read when it comes to need them. Each is handed out once. Main thread.
class PreferencesPrefetch {
  public:
    /// Begins with the values of these keys, in this order.
    PreferencesPrefetch(const QString& path, const QStringList& keys);
    /// Gives up what is not read yet.
    ~PreferencesPrefetch();

    /// The value of a key, waited for if it is just being read; none when there is none to be had
    /// here, or when it is quicker to read it oneself.
    std::optional<PreferenceValue> take(const QString& key);
    /// The same, to be waited for on any thread, whenever it comes; none when reading failed. A
    /// null function when there is no such value here.
    std::function<std::optional<PreferenceValue>()> takeLater(const QString& key);
    /// The value is about to change: what was read of it is not handed out any more.
    void forget(const QString& key);

  private:
    struct Value {
        enum class State { waiting, reading, read, failed } state = State::waiting;
        PreferenceValue value;
    };
    /// What the reading thread and the others share. Guarded by `mutex`.
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<std::pair<QString, std::shared_ptr<Value>>> values; ///< still to be read
        bool isStopped = false;
    };
    static void read(const QString& path, Shared& shared);
    static std::optional<PreferenceValue> wait(Shared& shared, Value& value);

    std::shared_ptr<Shared> m_shared;
    QHash<QString, std::shared_ptr<Value>> m_values; ///< not handed out yet
    std::thread m_thread;
};

} // namespace halvane
