// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"
#include "platform/preferences/preferences_backup.h"
#include "platform/preferences/preferences_database.h"

#include <future>

namespace halvane {

/// Preferences in an SQLite file. A change is committed and synced when its setter returns. A value
/// that is stored already costs no write.
///
/// One worker does what takes long, one job after the other: it reads the long values ahead at the
/// start, carries out large removals, those of an earlier run too, and copies the file. A thread
/// that needs a value before the worker has come to it reads the value itself.
///
/// A damaged file, or one of a newer version, gets another name. A file takes its place with what
/// can be read of it and what the newest backup has beyond that. Where the file can't be opened or
/// written to (a read-only folder, a full disk, another process's lock) the program goes on with
/// what can be read of it. Changes then stay in memory, and are written in their order as soon as
/// they can be. Main thread.
class SqlitePreferences final : public Preferences {
  public:
    /// The file and its folder are made where they are missing. The clock must outlive this.
    SqlitePreferences(const QString& path, Clock& clock);
    /// Tries once more to write what could not be written. Waits for the worker, which gives up
    /// what it is at: the rest of a removal is for the next start.
    ~SqlitePreferences() override;

    /// Halvane/preferences.sqlite in the user's configuration folder.
    static QString defaultPath();

    /// Whether every change so far is on the disk.
    [[nodiscard]] bool isStored() const { return m_database && m_pending.empty(); }
    /// Waits until the worker has nothing more to do.
    void waitForWorker() { m_worker.finish(); }

  protected:
    std::optional<PreferenceValue> value(const QString& key) override;
    Later<PreferenceValue> valueLater(const QString& key) override;
    void change(PreferenceChange change) override;
    void changeTogether(std::vector<PreferenceChange> changes) override;
    /// Many entries are noted as gone, in one change; the worker then takes them out of the file.
    void removeAtOnce(const QStringList& keys, const QStringList& entries) override;

  private:
    /// A long value. Whoever waits for it first reads it. None if that fails.
    using ReadAhead = std::shared_future<std::optional<PreferenceValue>>;

    void open(int busyMilliseconds);
    void readAhead();
    void carryOutRemovals();
    void stopWorker();
    void checkNotEmptied() const;
    void replaceDamaged(const SqliteError& damage);
    bool write(std::span<const PreferenceChange> changes);
    template<typename Change>
    bool attempt(const Change& change);
    bool handle(const SqliteError& error);
    void report(const SqliteError& error);
    void remember(PreferenceChange change);
    bool retry();
    void retryAfter(std::chrono::seconds delay);

    const QString m_path;
    Clock& m_clock;
    SerialWorker m_worker;
    std::shared_ptr<WriteTurns> m_turns = std::make_shared<WriteTurns>();
    std::unique_ptr<PreferencesDatabase> m_database; ///< null while the file can't be opened
    QHash<QString, PreferenceValue> m_unwritten; ///< what the file gave, while it can't be opened
    std::vector<PreferenceChange> m_pending;     ///< not yet on the disk, in order
    std::unique_ptr<Timer> m_retry;              ///< runs while something waits
    PreferencesBackup m_backup;
    QHash<QString, ReadAhead> m_readAhead; ///< not handed out yet, and as stored
};

} // namespace halvane
