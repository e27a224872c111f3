// SPDX-License-Identifier: MIT
#include "platform/preferences/sqlite_preferences.h"

#include "platform/log.h"
#include "platform/preferences/preferences_backup.h"
#include "platform/preferences/preferences_database.h"
#include "platform/preferences/preferences_prefetch.h"
#include "platform/preferences/preferences_removal.h"
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

class SqlitePreferences::Store {
  public:
    Store(const QString& path, Clock& clock)
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

    bool isStored() const { return m_database && m_pending.empty(); }
    PreferencesBackup& backup() { return m_backup; }

    std::optional<PreferenceValue> value(const QString& key) {
        auto value = m_prefetch ? m_prefetch->take(key) : std::nullopt;
        if (!value)
            value = storedValue(key);
        m_removals.applyTo(key, value);
        for (const auto& change : m_pending)
            if (change.key == key)
                applyChange(change, value);
        return value;
    }

    std::function<std::optional<PreferenceValue>()> valueLater(const QString& key) {
        return m_prefetch ? m_prefetch->takeLater(key) : nullptr;
    }

    void change(PreferenceChange change) {
        if (m_prefetch)
            m_prefetch->forget(change.key);
        if (isStored() && write({&change, 1}))
            return;
        remember(std::move(change));
        retryLater();
    }

    void removeEntries(const QStringList& keys, const QSet<QString>& entries) {
        if (entries.size() <= fewEntries || !isStored() || !note(keys, entries)) {
            for (const QString& key : keys)
                change({key, PreferenceChange::RemoveEntries{entries}});
        }
    }
    void waitForRemovals() { m_removals.finish(); }

    // True when everything is on the disk.
    bool retry() {
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

  private:
    // Leaves the database closed when it can't be opened.
    void open(int busyMilliseconds) {
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

    // An empty file is a good new one to SQLite; where there are backups it is one that was lost.
    void checkNotEmptied() const {
        const QFileInfo info(m_path);
        if (info.exists() && info.size() == 0 && !QFileInfo::exists(m_path + u"-wal"_s) &&
            !PreferencesBackup::copies(m_path).isEmpty())
            throw SqliteError(SQLITE_CORRUPT, u"it is empty"_s);
    }

    // Damage was found in the open file, or while opening it.
    void replaceDamaged(const SqliteError& damage) {
        m_prefetch.reset();
        m_removals.pause();
        m_database.reset();
        m_backup.interrupt();
        SalvagedPreferences salvaged = salvagePreferences(m_path);
        const QStringList copies = PreferencesBackup::copies(m_path);
        if (!salvaged.isComplete && !copies.isEmpty())
            fillFrom(salvagePreferences(copies.first()).values, salvaged);
        m_removals.finishOn(salvaged.values);
        m_unwritten = salvaged.values;
        const auto now = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(m_clock.wallTime()));
        const QString aside =
            replacePreferences(m_path, salvaged.values, now.toString(u"yyyyMMdd-HHmmss"_s));
        m_unwritten.clear();
        qCWarning(libraryLog, "preferences were damaged (%s): set aside as %s, %lld keys kept",
                  damage.what(), qUtf8Printable(QFileInfo(aside).fileName()),
                  static_cast<long long>(salvaged.values.size()));
    }

    std::optional<PreferenceValue> storedValue(const QString& key) {
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

    bool write(std::span<const PreferenceChange> changes) {
        return attempt([this, changes](PreferencesDatabase& database) {
            m_removals.setUnfinished(database.apply(changes, m_removals.unfinished()));
        });
    }

    // Nothing else of this process writes meanwhile.
    template<typename Change>
    bool attempt(const Change& change) {
        m_removals.pause();
        bool isWritten = false;
        for (int i = 0; m_database && i < 2 && !isWritten; ++i) {
            try {
                change(*m_database);
                isWritten = true;
            } catch (const SqliteError& error) {
                if (!handle(error))
                    break;
            }
        }
        m_removals.resume();
        return isWritten;
    }

    bool note(const QStringList& keys, const QSet<QString>& entries) {
        if (m_prefetch)
            for (const QString& key : keys)
                m_prefetch->forget(key);
        PreferencesRemoval removal;
        if (!attempt([&](PreferencesDatabase& database) {
                removal = database.noteRemoval(keys, entries);
            }))
            return false;
        m_removals.begin(std::move(removal));
        return true;
    }

    // After what the program's last end has left undone.
    void readAhead() {
        try {
            if (!m_database)
                return;
            for (PreferencesRemoval& removal : m_database->notedRemovals())
                m_removals.begin(std::move(removal));
            if (m_removals.finish())
                m_prefetch =
                    std::make_unique<PreferencesPrefetch>(m_path, m_database->longValues());
        } catch (const SqliteError&) {
            // Whoever asks for a value meets the fault and deals with it.
        }
    }

    // True when the file has been replaced by a good one.
    bool handle(const SqliteError& error) {
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

    // Once for each time that storing stops.
    void report(const SqliteError& error) {
        if (!m_retry)
            qCWarning(libraryLog, "preferences can't be stored now, kept in memory: %s",
                      error.what());
    }

    void retryLater() {
        if (m_retry)
            return;
        m_retryDelay = firstRetry;
        scheduleRetry();
    }

    // Ever more seldom: each try may cost the program a moment.
    void scheduleRetry() {
        m_retry = m_clock.after(m_retryDelay, [this] {
            m_retryDelay = std::min(2 * m_retryDelay, lastRetry);
            if (!retry())
                scheduleRetry();
        });
    }

    // A whole value makes the changes before it void, so that what waits does not grow with them.
    void remember(PreferenceChange change) {
        if (std::holds_alternative<PreferenceChange::Set>(change.what) ||
            std::holds_alternative<PreferenceChange::Remove>(change.what))
            std::erase_if(m_pending,
                          [&](const auto& earlier) { return earlier.key == change.key; });
        m_pending.push_back(std::move(change));
    }

    QString m_path;
    Clock& m_clock;
    std::unique_ptr<PreferencesDatabase> m_database; ///< null while the file can't be opened
    QHash<QString, PreferenceValue> m_unwritten; ///< what the file gave, while it can't be opened
    std::vector<PreferenceChange> m_pending;     ///< not yet on the disk, in order
    std::unique_ptr<Timer> m_retry;              ///< runs while something waits
    std::chrono::seconds m_retryDelay{};
    PreferencesRemovals m_removals;
    PreferencesBackup m_backup;
    std::unique_ptr<PreferencesPrefetch> m_prefetch; ///< null where the file can't be opened
};

SqlitePreferences::SqlitePreferences(const QString& path, Clock& clock)
    : m_store(std::make_unique<Store>(path, clock)) {
}

SqlitePreferences::~SqlitePreferences() {
    m_store->waitForRemovals();
    if (!m_store->isStored())
        m_store->retry();
}

QString SqlitePreferences::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/Halvane/preferences.sqlite"_s;
}

bool SqlitePreferences::isStored() const {
    return m_store->isStored();
}

void SqlitePreferences::waitForBackup() {
    m_store->backup().wait();
}

void SqlitePreferences::removeEntries(const QStringList& keys, const QSet<QString>& entries) {
    m_store->removeEntries(keys, entries);
}

void SqlitePreferences::waitForRemovals() {
    m_store->waitForRemovals();
}

std::function<std::optional<PreferenceValue>()>
SqlitePreferences::valueLater(const QString& key) const {
    return m_store->valueLater(key);
}

std::optional<PreferenceValue> SqlitePreferences::value(const QString& key) const {
    return m_store->value(key);
}

void SqlitePreferences::change(PreferenceChange change) {
    m_store->change(std::move(change));
}

} // namespace halvane
