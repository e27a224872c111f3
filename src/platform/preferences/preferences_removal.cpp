// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_removal.h"

#include "platform/log.h"

#include <algorithm>

namespace halvane {

namespace {

constexpr int patience = 250;        ///< ms that another process's lock is waited for
constexpr std::size_t portion = 500; ///< entries that are taken out within a few milliseconds

bool crosses(const PreferenceChange& change, const PreferencesRemoval::Part& part) {
    if (change.key != part.key)
        return false;
    const QStringList entries = entriesPutIn(change);
    return replacesAll(change) ||
           std::any_of(entries.cbegin(), entries.cend(),
                       [&](const QString& entry) { return part.entries.contains(entry); });
}

} // namespace

void applyRemovals(std::span<const PreferencesRemoval> removals, const QString& key,
                   std::optional<PreferenceValue>& value) {
    for (const auto& removal : removals)
        for (const auto& part : removal.parts)
            if (part.key == key)
                applyChange({key, PreferenceChange::RemoveEntries{part.entries}}, value);
}

PreferencesRemovals::PreferencesRemovals(const QString& path)
    : m_path(path) {
    m_worker.setMaxThreadCount(1);
}

PreferencesRemovals::~PreferencesRemovals() {
    stop();
}

void PreferencesRemovals::begin(PreferencesRemoval removal) {
    const auto begun = std::make_shared<Begun>();
    begun->removal = std::move(removal);
    m_begun.push_back(begun);
    m_worker.start([this, begun] { carryOut(*begun); });
}

std::vector<PreferencesRemoval> PreferencesRemovals::unfinished() {
    std::erase_if(m_begun, [](const auto& begun) { return begun->isFinished.load(); });
    std::vector<PreferencesRemoval> removals;
    for (const auto& begun : m_begun)
        removals.push_back(begun->removal);
    return removals;
}

bool PreferencesRemovals::areCrossedBy(std::span<const PreferenceChange> changes) {
    for (const auto& removal : unfinished())
        for (const auto& part : removal.parts)
            for (const auto& change : changes)
                if (crosses(change, part))
                    return true;
    return false;
}

std::unique_lock<std::mutex> PreferencesRemovals::holdUp() {
    m_isHeldUp = true;
    std::unique_lock lock(m_writing);
    m_isHeldUp = false;
    m_isHeldUp.notify_one();
    return lock;
}

void PreferencesRemovals::finish() {
    m_worker.waitForDone();
}

void PreferencesRemovals::stop() {
    m_isStopped = true;
    m_worker.waitForDone();
    m_isStopped = false;
}

// Runs on the worker.
void PreferencesRemovals::carryOut(Begun& begun) {
    try {
        PreferencesDatabase database(m_path, patience);
        database.commitLazily();
        for (const auto& part : begun.removal.parts) {
            const auto entries = PreferencesDatabase::ordered(part.entries);
            for (std::size_t done = 0; done < entries.size(); done += portion) {
                m_isHeldUp.wait(true); // a free mutex alone would rarely let the other in
                const std::lock_guard lock(m_writing);
                if (m_isStopped)
                    return;
                const auto rest = std::span(entries).subspan(done);
                database.takeOut(part.key, rest.first(std::min(rest.size(), portion)));
            }
        }
        const std::lock_guard lock(m_writing);
        database.endRemoval(begun.removal.id);
        begun.isFinished = true;
    } catch (const SqliteError& error) {
        // The note stays until a change crosses it or the program starts again.
        qCWarning(libraryLog, "preferences not tidied yet: %s", error.what());
    }
}

} // namespace halvane
