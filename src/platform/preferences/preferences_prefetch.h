// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"
#include "platform/serial_worker.h"

#include <map>
#include <memory>

namespace halvane {

/// The long values of a preferences file, which a worker reads while the program starts. A thread
/// that needs a value before the worker has come to it reads the value itself. Main thread.
class PreferencesPrefetch {
  public:
    /// Lets the worker read the values of these keys, in this order.
    void begin(SerialWorker& worker, const QString& path, const QStringList& keys);

    /// The value of a key, once. Waits for it while the worker is reading it. None where the worker
    /// has not come to it, or failed.
    std::optional<PreferenceValue> take(const QString& key);
    /// Hands a value over to another thread. Null where the value is not read ahead. The function
    /// gives none where reading failed.
    Later<PreferenceValue> takeLater(const QString& key);
    /// Hands out the value of a key no more, because it is about to change.
    void forget(const QString& key) { m_values.erase(key); }
    void forgetAll() { m_values.clear(); }

  private:
    class Value;

    QString m_path;
    std::map<QString, std::shared_ptr<Value>> m_values; ///< not handed out yet
};

} // namespace halvane
