// SPDX-License-Identifier: MIT
#include "platform/preferences/sqlite_preferences.h"

#include "platform/log.h"
#include "platform/preferences/preferences_salvage.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <sqlite3.h>

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 250;         ///< ms that a locked file may hold up the program
constexpr qsizetype fewEntries = 200; ///< what is removed within a few milliseconds
constexpr std::chrono::seconds firstRetry{2};
constexpr std::chrono::seconds lastRetry{256};

} // namespace

SqlitePreferences::SqlitePreferences(const QString& path, Clock& clock)
    : m_path(path)
    , m_clock(clock)
    , m_removals(path)
    , m_backup(path, clock) {
    QDir().mkpath(QFileInfo(path).path());
    open(patience);
    readAhead();
    if (!m_database) {
        m_unwritten = salvagePreferences(m_path).values;
        retryLater();
    }
}

SqlitePreferences::~SqlitePreferences() {
    waitForRemovals();
    if (!isStored())
        retry();
}

QString SqlitePreferences::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/Halvane/preferences.sqlite"_s;
}

std::optional<PreferenceValue> SqlitePreferences::value(const QString& key) {
    // Asked before the file is read: the worker may finish them meanwhile.
    const auto removals = m_removals.unfinished();
    auto value = m_prefetch ? m_prefetch->take(key) : std::nullopt;
    if (!value)
        value = storedValue(key);
    applyRemovals(removals, key, value);
    for (const auto& change : m_pending)
        if (change.key == key)
            applyChange(change, value);
    return value;
}

Later<PreferenceValue> SqlitePreferences::valueLater(const QString& key) {
    return m_prefetch ? m_prefetch->takeLater(key) : nullptr;
}

void SqlitePreferences::change(PreferenceChange change) {
    if (m_prefetch)
        m_prefetch->forget(change.key);
    if (isStored() && write({&change, 1}))
        return;
    remember(std::move(change));
    retryLater();
}

void SqlitePreferences::removeEntries(const QStringList& keys, const QSet<QString>& entries) {
    if (entries.size() <= fewEntries || !isStored() || !note(keys, entries))
        Preferences::removeEntries(keys, entries);
}

// Leaves the database closed when it can't be opened.
void SqlitePreferences::open(int busyMilliseconds) {
    try {
        try {
            checkNotEmptied();
            m_database = std::make_unique<PreferencesDatabase>(m_path, busyMilliseconds);
        } catch (const SqliteError& error) {
            if (!error.isDamage())
                throw;
            replaceDamaged(error);
            m_database = std::make_unique<PreferencesDatabase>(m_path, busyMilliseconds);
        }
    } catch (const SqliteError& error) {
        report(error);
    }
}

// Finishes first what was unfinished when the program last ended.
void SqlitePreferences::readAhead() {
    try {
        if (!m_database)
            return;
        for (PreferencesRemoval& removal : m_database->notedRemovals())
            m_removals.begin(std::move(removal));
        m_removals.finish();
        if (m_removals.unfinished().empty())
            m_prefetch = std::make_unique<PreferencesPrefetch>(m_path, m_database->longValues());
    } catch (const SqliteError&) {
        // Whoever asks for a value meets the fault and deals with it.
    }
}

// SQLite takes an empty file for a new one. Where there are backups, its contents were lost.
void SqlitePreferences::checkNotEmptied() const {
    const QFileInfo info(m_path);
    if (info.exists() && info.size() == 0 && !QFileInfo::exists(m_path + u"-wal"_s) &&
        !PreferencesBackup::copies(m_path).isEmpty())
        throw SqliteError(SQLITE_CORRUPT, u"it is empty"_s);
}

// Damage was found in the open file, or while opening it.
void SqlitePreferences::replaceDamaged(const SqliteError& damage) {
    m_prefetch.reset();
    m_removals.stop();
    m_database.reset();
    m_backup.interrupt();
    SalvagedPreferences salvaged = salvagePreferences(m_path);
    const QStringList copies = PreferencesBackup::copies(m_path);
    // SQLite may read zeros in the place of what was cut off, without an error.
    const bool isWhole = salvaged.isComplete && damage.code() != SQLITE_CORRUPT;
    if (!isWhole && !copies.isEmpty())
        fillFrom(salvagePreferences(copies.first()).values, salvaged);
    finishRemovals(salvaged.values);
    m_unwritten = salvaged.values;
    const auto now = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(m_clock.wallTime()));
    const QString aside =
        replacePreferences(m_path, salvaged.values, now.toString(u"yyyyMMdd-HHmmss"_s));
    m_unwritten.clear();
    qCWarning(libraryLog, "preferences were damaged (%s): set aside as %s, %lld keys kept",
              damage.what(), qUtf8Printable(QFileInfo(aside).fileName()),
              static_cast<long long>(salvaged.values.size()));
}

void SqlitePreferences::finishRemovals(QHash<QString, PreferenceValue>& values) {
    const auto removals = m_removals.unfinished();
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        std::optional<PreferenceValue> value(std::move(*entry));
        applyRemovals(removals, entry.key(), value);
        *entry = *std::move(value);
    }
    m_removals.clear();
}

std::optional<PreferenceValue> SqlitePreferences::storedValue(const QString& key) {
    for (int attempt = 0; m_database && attempt < 2; ++attempt) {
        try {
            return m_database->value(key);
        } catch (const SqliteError& error) {
            handle(error);
        }
    }
    const auto found = m_unwritten.constFind(key);
    return found == m_unwritten.cend() ? std::nullopt : std::optional(*found);
}

bool SqlitePreferences::write(std::span<const PreferenceChange> changes) {
    const bool endsRemovals = m_removals.areCrossedBy(changes);
    if (endsRemovals)
        m_removals.stop();
    return attempt([&](PreferencesDatabase& database) {
        if (!endsRemovals)
            return database.apply(changes);
        database.apply(changes, m_removals.unfinished());
        m_removals.clear();
    });
}

// Nothing else of this process writes meanwhile.
template<typename Change>
bool SqlitePreferences::attempt(const Change& change) {
    for (int i = 0; m_database && i < 2; ++i) {
        try {
            const auto turn = m_removals.holdUp();
            change(*m_database);
            return true;
        } catch (const SqliteError& error) {
            if (!handle(error))
                break;
        }
    }
    return false;
}

bool SqlitePreferences::note(const QStringList& keys, const QSet<QString>& entries) {
    for (const QString& key : keys)
        if (m_prefetch)
            m_prefetch->forget(key);
    PreferencesRemoval removal;
    if (!attempt(
            [&](PreferencesDatabase& database) { removal = database.noteRemoval(keys, entries); }))
        return false;
    m_removals.begin(std::move(removal));
    return true;
}

// True when the file has been replaced by a good one.
bool SqlitePreferences::handle(const SqliteError& error) {
    if (!error.isDamage()) {
        report(error);
        return false;
    }
    try {
        replaceDamaged(error);
    } catch (const SqliteError& inTheWay) {
        report(inTheWay);
        retryLater();
        return false;
    }
    open(patience);
    return m_database != nullptr;
}

// Logs the error once for each time that storing stops.
void SqlitePreferences::report(const SqliteError& error) {
    if (!m_retry)
        qCWarning(libraryLog, "preferences can't be stored now, kept in memory: %s", error.what());
}

// A whole value replaces the changes of its key that wait, so that they do not pile up.
void SqlitePreferences::remember(PreferenceChange change) {
    if (replacesAll(change))
        std::erase_if(m_pending, [&](const auto& earlier) { return earlier.key == change.key; });
    m_pending.push_back(std::move(change));
}

// True when everything is on the disk.
bool SqlitePreferences::retry() {
    if (m_database)
        m_database->setPatience(0);
    else
        open(0);
    if (!m_database || !write(m_pending))
        return false;
    m_pending.clear();
    m_unwritten.clear();
    m_retry.reset();
    m_database->setPatience(patience);
    qCInfo(libraryLog, "preferences are stored again");
    return true;
}

void SqlitePreferences::retryLater() {
    if (m_retry)
        return;
    m_retryDelay = firstRetry;
    scheduleRetry();
}

// The delays grow, since each try may cost the program a moment.
void SqlitePreferences::scheduleRetry() {
    m_retry = m_clock.after(m_retryDelay, [this] {
        m_retryDelay = std::min(2 * m_retryDelay, lastRetry);
        if (!retry())
            scheduleRetry();
    });
}

} // namespace halvane
