// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_prefetch.h"

#include "platform/preferences/preferences_reader.h"
#include "platform/preferences/preferences_removal.h"

#include <sqlite3.h>

#include <mutex>
#include <utility>

namespace halvane {

class PreferencesPrefetch::Value {
  public:
    // Reads the value unless a thread has begun to. Waits for that thread.
    template<typename Read>
    void readOnce(const Read& read) {
        const std::lock_guard lock(m_mutex);
        if (!std::exchange(m_isBegun, true))
            m_value = read();
    }
    std::optional<PreferenceValue> take() {
        readOnce([] { return std::nullopt; });
        return std::exchange(m_value, std::nullopt);
    }

  private:
    std::mutex m_mutex; // guards what follows
    bool m_isBegun = false;
    std::optional<PreferenceValue> m_value;
};

namespace {

// Reads values as they are at one moment, through a connection of its own.
class Snapshot {
  public:
    explicit Snapshot(const QString& path)
        : m_connection(path, SQLITE_OPEN_READONLY, 0) {
        m_connection.execute("BEGIN");
        m_removals = notedRemovals(m_connection);
    }
    std::optional<PreferenceValue> value(const QString& key) {
        auto value = m_reader.value(key, &m_names);
        applyRemovals(m_removals, key, value);
        return value;
    }

  private:
    SqliteConnection m_connection;
    PreferencesReader m_reader{m_connection};
    SharedNames m_names;
    std::vector<PreferencesRemoval> m_removals;
};

} // namespace

void PreferencesPrefetch::begin(SerialWorker& worker, const QString& path,
                                const QStringList& keys) {
    std::vector<std::pair<QString, std::shared_ptr<Value>>> values;
    for (const QString& key : keys)
        values.emplace_back(key, m_values[key] = std::make_shared<Value>());
    worker.start([path, values](const SerialWorker::Job& job) {
        try {
            Snapshot file(path);
            for (const auto& one : values)
                if (!job.isCancelled())
                    one.second->readOnce([&] { return file.value(one.first); });
        } catch (const SqliteError&) {
            // Whoever asks for a value reads it, meets the fault, too, and deals with it.
        }
    });
    m_path = path;
}

std::optional<PreferenceValue> PreferencesPrefetch::take(const QString& key) {
    const auto taken = m_values.extract(key);
    return taken ? taken.mapped()->take() : std::nullopt;
}

Later<PreferenceValue> PreferencesPrefetch::takeLater(const QString& key) {
    const auto taken = m_values.extract(key);
    if (!taken)
        return {};
    return [key, path = m_path, value = taken.mapped()]() -> std::optional<PreferenceValue> {
        try {
            value->readOnce([&] { return Snapshot(path).value(key); });
        } catch (const SqliteError&) {
            // The value has been taken, so that there is none.
        }
        return value->take();
    };
}

} // namespace halvane
