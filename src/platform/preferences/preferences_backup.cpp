// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_backup.h"

#include "platform/log.h"
#include "platform/preferences/sqlite_connection.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int keptCopies = 3;

QDir backupFolder(const QString& path) {
    return QDir(QFileInfo(path).path() + u"/backups"_s);
}

// Copies all pages as they are at one moment. False when told to stop.
bool copyPages(SqliteConnection& source, SqliteConnection& target, const SerialWorker::Job& job) {
    constexpr int pagesAtATime = 512;
    // The read transaction holds the moment. Without it each change would start the copy again.
    source.execute("BEGIN");
    source.single("SELECT count(*) FROM sqlite_schema");
    sqlite3_backup* backup = sqlite3_backup_init(target.handle(), "main", source.handle(), "main");
    int code = backup ? SQLITE_OK : SQLITE_ERROR;
    while (code == SQLITE_OK && !job.isCancelled())
        code = sqlite3_backup_step(backup, pagesAtATime);
    sqlite3_backup_finish(backup);
    if (code != SQLITE_DONE && !job.isCancelled())
        throw SqliteError(code & 0xff, QString::fromUtf8(sqlite3_errstr(code)));
    return code == SQLITE_DONE;
}

// True when the copy is whole.
bool copyDatabase(const QString& from, const QString& to, const SerialWorker::Job& job) {
    constexpr int patience = 1000;
    SqliteConnection source(from, SQLITE_OPEN_READONLY, patience);
    SqliteConnection target(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, patience);
    if (!copyPages(source, target, job))
        return false;
    auto check = target.query("PRAGMA quick_check(1)");
    if (!check.next() || check.text(0) != "ok"_L1)
        throw SqliteError(SQLITE_CORRUPT, check.text(0));
    return true;
}

void removeOldCopies(const QString& path) {
    const QStringList copies = PreferencesBackup::copies(path);
    for (qsizetype i = keptCopies; i < copies.size(); ++i)
        QFile::remove(copies[i]);
}

void backUp(const QString& path, const QString& copy, const SerialWorker::Job& job) {
    if (!QFileInfo::exists(path) || QFileInfo::exists(copy))
        return;
    const QString unfinished = copy + u".part"_s;
    try {
        backupFolder(path).mkpath(u"."_s);
        QFile::remove(unfinished);
        if (copyDatabase(path, unfinished, job) && QFile::rename(unfinished, copy))
            removeOldCopies(path);
    } catch (const SqliteError& error) {
        qCWarning(libraryLog, "preferences backup failed: %s", error.what());
    }
    for (const auto& suffix : {u""_s, u"-journal"_s, u"-wal"_s, u"-shm"_s})
        QFile::remove(unfinished + suffix);
}

} // namespace

PreferencesBackup::PreferencesBackup(const QString& path, Clock& clock, SerialWorker& worker)
    : m_path(path)
    , m_clock(clock)
    , m_worker(worker) {
    m_first = clock.after(std::chrono::minutes(1), [this] { makeTodaysCopy(); });
    m_hourly = clock.every(std::chrono::hours(1), [this] { makeTodaysCopy(); });
}

QStringList PreferencesBackup::copies(const QString& path) {
    const QDir folder = backupFolder(path);
    const QFileInfo info(path);
    const QString pattern = info.completeBaseName() + u"-[0-9]*-[0-9]*-[0-9]*."_s + info.suffix();
    QStringList copies;
    for (const auto& name : folder.entryList({pattern}, QDir::Files, QDir::Name | QDir::Reversed))
        copies.append(folder.filePath(name));
    return copies;
}

void PreferencesBackup::makeTodaysCopy() {
    const auto seconds = static_cast<qint64>(m_clock.wallTime());
    const QString day = QDateTime::fromSecsSinceEpoch(seconds).date().toString(Qt::ISODate);
    const QFileInfo info(m_path);
    const QString copy = backupFolder(m_path).filePath(
        u"%1-%2.%3"_s.arg(info.completeBaseName(), day, info.suffix()));
    m_worker.start(
        [path = m_path, copy](const SerialWorker::Job& job) { backUp(path, copy, job); });
}

} // namespace halvane
