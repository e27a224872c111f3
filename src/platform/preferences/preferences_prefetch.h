// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preference_value.h"

#include <atomic>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <thread>

namespace halvane {

/// Reads the long values of a preferences file on a thread of its own while the program starts, so
/// that they are there when they are needed. Main thread.
class PreferencesPrefetch {
  public:
    /// Begins with the values of these keys, in this order.
    PreferencesPrefetch(const QString& path, const QStringList& keys);

    /// The value of a key, once. Waits for it while it is being read. None when there is no such
    /// value here, or when its turn has not come: then it is quicker to read it oneself.
    std::optional<PreferenceValue> take(const QString& key);
    /// The same for another thread; a null function when there is no such value here. The function
    /// may be called once and waits until the value is read. It gives none where reading failed or
    /// was given up.
    std::function<std::optional<PreferenceValue>()> takeLater(const QString& key);
    /// The value is about to change: it is not handed out any more.
    void forget(const QString& key) { m_values.erase(key); }

  private:
    struct Value {
        std::future<PreferenceValue> read;
        std::shared_ptr<std::atomic<bool>> isClaimed; ///< by whoever reads it
    };
    static std::optional<PreferenceValue> wait(Value& value);

    std::map<QString, Value> m_values; ///< not handed out yet
    std::jthread m_thread;             ///< gives up when this goes
};

} // namespace halvane
