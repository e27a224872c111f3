// SPDX-License-Identifier: MIT
#include "platform/preferences/sqlite_preferences.h"

#include "platform/log.h"
#include "platform/preferences/preferences_reader.h"
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

constexpr int patience = 250;         // ms that a locked file may hold up the program
constexpr qsizetype fewEntries = 200; // are removed within a few milliseconds
constexpr std::chrono::seconds firstRetry{2};
constexpr std::chrono::seconds lastRetry{256};

// The value as the file holds it at one moment. None where the file can't be read: whoever asks for
// the value then meets the fault, too, and deals with it.
std::optional<PreferenceValue> readOnce(const QString& path, const QString& key) {
    try {
        SqliteConnection connection(path, SQLITE_OPEN_READONLY, 0);
        connection.execute("BEGIN");
        return PreferencesReader(connection).value(key);
    } catch (const SqliteError&) {
        return std::nullopt;
    }
}

} // namespace

SqlitePreferences::SqlitePreferences(const QString& path, Clock& clock)
    : m_path(path)
    , m_clock(clock)
    , m_backup(path, clock, m_worker) {
    QDir().mkpath(QFileInfo(path).path());
    open(patience);
    if (m_database) {
        readAhead();
    } else {
        m_unwritten = salvagePreferences(m_path).values;
        retryAfter(firstRetry);
    }
}

SqlitePreferences::~SqlitePreferences() {
    stopWorker();
    if (!isStored())
        retry();
}

QString SqlitePreferences::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/Halvane/preferences.sqlite"_s;
}

std::optional<PreferenceValue> SqlitePreferences::value(const QString& key) {
    const ReadAhead ahead = m_readAhead.take(key);
    std::optional<PreferenceValue> value = ahead.valid() ? ahead.get() : std::nullopt;
    const bool isRead =
        value || attempt([&](PreferencesDatabase& file) { value = file.value(key); });
    if (const auto found = m_unwritten.constFind(key); !isRead && found != m_unwritten.cend())
        value = *found;
    for (const auto& change : m_pending)
        if (change.key == key)
            applyChange(change, value);
    return value;
}

Later<PreferenceValue> SqlitePreferences::valueLater(const QString& key) {
    const ReadAhead ahead = m_readAhead.take(key);
    return ahead.valid() ? [ahead] { return ahead.get(); } : Later<PreferenceValue>();
}

void SqlitePreferences::change(PreferenceChange change) {
    changeTogether({std::move(change)});
}

void SqlitePreferences::changeTogether(std::vector<PreferenceChange> changes) {
    for (const PreferenceChange& change : changes)
        m_readAhead.remove(change.key);
    if (isStored() && write(changes))
        return;
    for (PreferenceChange& change : changes)
        remember(std::move(change));
    if (!m_retry)
        retryAfter(firstRetry);
}

void SqlitePreferences::removeAtOnce(const QStringList& keys, const QStringList& entries) {
    if (entries.size() <= fewEntries || !isStored())
        return Preferences::removeAtOnce(keys, entries);
    for (const QString& key : keys)
        m_readAhead.remove(key);
    if (attempt([&](PreferencesDatabase& database) { database.noteRemoval(keys, entries); }))
        carryOutRemovals();
    else
        Preferences::removeAtOnce(keys, entries);
}

// Leaves m_database null when the file can't be opened.
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

void SqlitePreferences::readAhead() {
    try {
        std::vector<ReadAhead> values;
        for (const QString& key : m_database->longValues()) {
            values.push_back(std::async(std::launch::deferred, readOnce, m_path, key));
            m_readAhead.insert(key, values.back());
        }
        m_worker.start([values = std::move(values)](const SerialWorker::Job& job) mutable {
            for (ReadAhead& value : values) {
                if (!job.isCancelled())
                    value.wait();
                value = {}; // so that it is not copied when its owner changes it
            }
        });
        if (m_database->hasRemovals())
            carryOutRemovals();
    } catch (const SqliteError&) {
        // Whoever asks for a value meets the fault and deals with it.
    }
}

void SqlitePreferences::carryOutRemovals() {
    m_worker.start([path = m_path, turns = m_turns](const SerialWorker::Job& job) {
        try {
            PreferencesDatabase(path, patience).carryOutRemovals(*turns, job.token());
        } catch (const SqliteError& error) {
            // The note stays until a change crosses it, the next large removal or the next start.
            qCWarning(libraryLog, "preferences not tidied yet: %s", error.what());
        }
    });
}

// The worker has closed the file when this returns.
void SqlitePreferences::stopWorker() {
    m_worker.cancel();
    m_worker.finish();
}

// SQLite takes an empty file for a new one. Where there are backups, the file has lost its
// contents.
void SqlitePreferences::checkNotEmptied() const {
    const QFileInfo info(m_path);
    if (info.exists() && info.size() == 0 && !QFileInfo::exists(m_path + u"-wal"_s) &&
        !PreferencesBackup::copies(m_path).isEmpty())
        throw SqliteError(SQLITE_CORRUPT, u"it is empty"_s);
}

// Called for damage in the open file, and in a file that can't be opened for it.
void SqlitePreferences::replaceDamaged(const SqliteError& damage) {
    stopWorker();
    m_readAhead.clear();
    m_database.reset();
    SalvagedPreferences salvaged = salvagePreferences(m_path);
    const QStringList copies = PreferencesBackup::copies(m_path);
    // SQLite may read zeros where the end of a file was cut off, and report no error.
    const bool isWhole = salvaged.isComplete && damage.code() != SQLITE_CORRUPT;
    if (!isWhole && !copies.isEmpty())
        fillFrom(salvagePreferences(copies.first()).values, salvaged);
    m_unwritten = salvaged.values;
    const auto now = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(m_clock.wallTime()));
    const QString aside =
        replacePreferences(m_path, salvaged.values, now.toString(u"yyyyMMdd-HHmmss"_s));
    m_unwritten.clear();
    qCWarning(libraryLog, "preferences were damaged (%s): set aside as %s, %lld keys kept",
              damage.what(), qUtf8Printable(QFileInfo(aside).fileName()),
              static_cast<long long>(salvaged.values.size()));
}

bool SqlitePreferences::write(std::span<const PreferenceChange> changes) {
    return attempt([&](PreferencesDatabase& database) { database.apply(changes); });
}

template<typename Change>
bool SqlitePreferences::attempt(const Change& change) {
    for (int i = 0; m_database && i < 2; ++i) {
        try {
            const auto turn = m_turns->takeFirst();
            change(*m_database);
            return true;
        } catch (const SqliteError& error) {
            if (!handle(error))
                break;
        }
    }
    return false;
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
        if (!m_retry)
            retryAfter(firstRetry);
        return false;
    }
    open(patience);
    return m_database != nullptr;
}

// Logs an error once, until everything is stored again.
void SqlitePreferences::report(const SqliteError& error) {
    if (!m_retry)
        qCWarning(libraryLog, "preferences can't be stored now, kept in memory: %s", error.what());
}

// Changes that wait give way to one that replaces the whole value of their key, so that they do not
// pile up.
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

// The delays grow, since each try may cost the program a moment.
void SqlitePreferences::retryAfter(std::chrono::seconds delay) {
    m_retry = m_clock.after(delay, [this, delay] {
        if (!retry())
            retryAfter(std::min(2 * delay, lastRetry));
    });
}

} // namespace halvane
