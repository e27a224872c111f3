// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_prefetch.h"

#include "platform/preferences/preferences_reader.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace halvane {

PreferencesPrefetch::PreferencesPrefetch(const QString& path, const QStringList& keys)
    : m_shared(std::make_shared<Shared>()) {
    if (keys.isEmpty())
        return;
    for (const QString& key : keys) {
        const auto value = std::make_shared<Value>();
        m_shared->values.emplace_back(key, value);
        m_values.insert(key, value);
    }
    m_thread = std::thread([path, shared = m_shared] { read(path, *shared); });
}

PreferencesPrefetch::~PreferencesPrefetch() {
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->isStopped = true;
    }
    m_thread.join();
}

void PreferencesPrefetch::read(const QString& path, Shared& shared) {
    std::shared_ptr<Value> current;
    std::unique_lock lock(shared.mutex, std::defer_lock);
    try {
        SqliteConnection connection(path, SQLITE_OPEN_READONLY, 0);
        connection.execute("BEGIN"); // all of it as it is at one moment
        PreferencesReader reader(connection);
        SharedNames names;
        for (lock.lock(); !shared.values.empty() && !shared.isStopped; lock.lock()) {
            const QString key = shared.values.front().first;
            current = shared.values.front().second;
            shared.values.pop_front();
            current->state = Value::State::reading;
            lock.unlock();
            auto found = reader.value(key, names);
            lock.lock();
            current->state = found ? Value::State::read : Value::State::failed;
            if (found)
                current->value = *std::move(found);
            shared.changed.notify_all();
            lock.unlock();
        }
    } catch (const SqliteError&) {
        lock.lock(); // whoever reads it instead meets the fault and says so
        if (current)
            current->state = Value::State::failed;
    }
    for (const auto& [key, value] : std::exchange(shared.values, {}))
        value->state = Value::State::failed;
    shared.changed.notify_all();
}

std::optional<PreferenceValue> PreferencesPrefetch::wait(Shared& shared, Value& value) {
    std::unique_lock lock(shared.mutex);
    shared.changed.wait(lock, [&] { return value.state >= Value::State::read; });
    return value.state == Value::State::read ? std::optional(std::move(value.value)) : std::nullopt;
}

std::optional<PreferenceValue> PreferencesPrefetch::take(const QString& key) {
    const auto value = m_values.take(key);
    if (!value)
        return std::nullopt;
    {
        const std::lock_guard lock(m_shared->mutex);
        if (value->state == Value::State::waiting) {
            std::erase_if(m_shared->values,
                          [&](const auto& waiting) { return waiting.second == value; });
            return std::nullopt;
        }
    }
    return wait(*m_shared, *value);
}

std::function<std::optional<PreferenceValue>()> PreferencesPrefetch::takeLater(const QString& key) {
    const auto value = m_values.take(key);
    if (!value)
        return {};
    return [shared = m_shared, value] { return wait(*shared, *value); };
}

void PreferencesPrefetch::forget(const QString& key) {
    m_values.remove(key);
}

} // namespace halvane
