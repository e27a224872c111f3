// SPDX-License-Identifier: MIT
#include "platform/preferences_removal.h"

#include "platform/log.h"

#include <algorithm>

namespace halvane {

namespace {

constexpr int patience = 250;      ///< ms that another process's lock is waited for
constexpr qsizetype portion = 200; ///< what takes a few milliseconds

bool concernsEntry(const PreferenceChange::What& what, const QSet<QString>& entries) {
    if (const auto* strings = std::get_if<PreferenceChange::InsertStrings>(&what))
        return std::any_of(strings->values.cbegin(), strings->values.cend(),
                           [&](const QString& text) { return entries.contains(text); });
    if (const auto* integer = std::get_if<PreferenceChange::InsertInteger>(&what))
        return entries.contains(integer->entry);
    if (const auto* numbers = std::get_if<PreferenceChange::InsertNumbers>(&what))
        return entries.contains(numbers->entry);
    return !std::holds_alternative<PreferenceChange::RemoveEntries>(what);
}

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

bool PreferencesRemovals::concerns(const PreferenceChange& change) {
    return std::any_of(m_removals.cbegin(), m_removals.cend(), [&](const auto& removal) {
        return removal.keys.contains(change.key) && concernsEntry(change.what, removal.entries);
    });
}

void PreferencesRemovals::applyTo(const QString& key, std::optional<PreferenceValue>& value) {
    for (const auto& removal : m_removals)
        if (removal.keys.contains(key))
            applyChange({key, PreferenceChange::RemoveEntries{removal.entries}}, value);
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
    // In the order of the tables, so that each of their pages is fetched and written once.
    QStringList entries = removal.entries.values();
    std::sort(entries.begin(), entries.end());
    while (m_entriesDone < entries.size()) {
        if (m_stop)
            return;
        const QStringList some = entries.mid(m_entriesDone, portion);
        std::vector<PreferenceChange> changes;
        for (const QString& key : removal.keys)
            changes.push_back(
                {key, PreferenceChange::RemoveEntries{QSet<QString>(some.cbegin(), some.cend())}});
        database.apply(changes);
        m_entriesDone += some.size();
    }
    database.endRemoval(removal.id);
    m_entriesDone = 0;
    ++m_done;
}

} // namespace halvane
