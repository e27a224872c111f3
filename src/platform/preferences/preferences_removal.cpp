// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_removal.h"

#include "platform/log.h"

#include <algorithm>

namespace halvane {

namespace {

constexpr int patience = 250;        ///< ms that another process's lock is waited for
constexpr std::size_t portion = 200; ///< what takes a few milliseconds

} // namespace

PreferencesRemovals::PreferencesRemovals(const QString& path)
    : m_path(path) {
    m_worker.setMaxThreadCount(1);
}

PreferencesRemovals::~PreferencesRemovals() {
    pause();
}

void PreferencesRemovals::begin(PreferencesRemoval removal) {
    pause();
    m_removals.push_back(std::move(removal));
    resume();
}

void PreferencesRemovals::applyTo(const QString& key, std::optional<PreferenceValue>& value) {
    for (const auto& removal : m_removals) {
        if (!removal.keys.contains(key))
            continue;
        QSet<QString> going = removal.entries;
        if (const auto spared = removal.spared.constFind(key); spared != removal.spared.cend())
            going.subtract(*spared);
        applyChange({key, PreferenceChange::RemoveEntries{std::move(going)}}, value);
    }
}

void PreferencesRemovals::pause() {
    if (m_removals.empty())
        return;
    m_stop = true;
    m_worker.waitForDone();
    m_stop = false;
    const auto done = static_cast<std::ptrdiff_t>(m_done.exchange(0));
    m_removals.erase(m_removals.begin(), m_removals.begin() + done);
}

void PreferencesRemovals::resume() {
    if (!m_removals.empty())
        m_worker.start([this] { work(); });
}

bool PreferencesRemovals::finish() {
    m_worker.waitForDone();
    pause();
    return m_removals.empty();
}

void PreferencesRemovals::finishOn(QHash<QString, PreferenceValue>& values) {
    pause();
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        std::optional<PreferenceValue> value(std::move(*entry));
        applyTo(entry.key(), value);
        *entry = *std::move(value);
    }
    m_removals.clear();
    m_entries.clear();
    m_entriesDone = 0;
}

void PreferencesRemovals::work() {
    try {
        PreferencesDatabase database(m_path, patience);
        database.commitLazily();
        while (!m_stop && m_done < m_removals.size())
            carryOut(database, m_removals[m_done]);
    } catch (const SqliteError& error) {
        // The note stays: the next start, if nothing before, takes it up again.
        qCWarning(libraryLog, "preferences not tidied yet: %s", error.what());
    }
}

void PreferencesRemovals::carryOut(PreferencesDatabase& database,
                                   const PreferencesRemoval& removal) {
    if (m_entries.empty())
        m_entries = PreferencesDatabase::ordered(removal.entries);
    while (m_entriesDone < m_entries.size()) {
        if (m_stop)
            return;
        const auto some = std::span(m_entries).subspan(m_entriesDone);
        const std::size_t count = std::min(some.size(), portion);
        database.carryOut(removal, some.first(count));
        m_entriesDone += count;
    }
    database.endRemoval(removal.id);
    m_entries.clear();
    m_entriesDone = 0;
    ++m_done;
}

} // namespace halvane
