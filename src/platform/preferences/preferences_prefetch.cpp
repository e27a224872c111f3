// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_prefetch.h"

#include "platform/preferences/preferences_reader.h"

#include <sqlite3.h>

#include <utility>

namespace halvane {

namespace {

struct Wanted {
    QString key;
    std::promise<PreferenceValue> promise;
    std::shared_ptr<std::atomic<bool>> isClaimed = std::make_shared<std::atomic<bool>>(false);
};

// A promise that is not kept breaks: whoever reads the value instead meets the fault and says so.
void read(const std::stop_token& stop, const QString& path, std::vector<Wanted> wanted) {
    try {
        SqliteConnection connection(path, SQLITE_OPEN_READONLY, 0);
        connection.execute("BEGIN"); // all values are of one moment
        PreferencesReader reader(connection);
        SharedNames names;
        for (auto& [key, promise, isClaimed] : wanted) {
            if (stop.stop_requested())
                return;
            if (isClaimed->exchange(true))
                continue;
            if (auto value = reader.value(key, names))
                promise.set_value(*std::move(value));
        }
    } catch (const SqliteError&) {
    }
}

} // namespace

PreferencesPrefetch::PreferencesPrefetch(const QString& path, const QStringList& keys) {
    std::vector<Wanted> wanted;
    for (const QString& key : keys) {
        Wanted& one = wanted.emplace_back(Wanted{key, {}});
        m_values[key] = {one.promise.get_future(), one.isClaimed};
    }
    m_thread = std::jthread(read, path, std::move(wanted));
}

std::optional<PreferenceValue> PreferencesPrefetch::take(const QString& key) {
    auto taken = m_values.extract(key);
    return taken && taken.mapped().isClaimed->exchange(true) ? wait(taken.mapped()) : std::nullopt;
}

std::function<std::optional<PreferenceValue>()> PreferencesPrefetch::takeLater(const QString& key) {
    auto taken = m_values.extract(key);
    if (!taken)
        return {};
    return [value = std::make_shared<Value>(std::move(taken.mapped()))] { return wait(*value); };
}

std::optional<PreferenceValue> PreferencesPrefetch::wait(Value& value) {
    try {
        return value.read.get();
    } catch (const std::future_error&) {
        return std::nullopt;
    }
}

} // namespace halvane
