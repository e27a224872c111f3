// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"
#include "platform/preferences/preferences_backup.h"
#include "platform/preferences/preferences_prefetch.h"
#include "platform/preferences/preferences_removal.h"

namespace halvane {

/// Preferences in an SQLite file. A change is committed and synced when its setter returns; a value
/// that is stored already costs no write.
///
/// Long values are read on a thread of their own from the start on, so that they are there when
/// they are asked for.
///
/// A damaged file, or one of a newer version, is set aside under a new name and replaced by what
/// can be read of it, filled up from the newest backup. Where the file can't be opened or written
/// to (a read-only folder, a full disk, another process's lock) the program goes on with what can
/// be read of it; changes are kept in memory and written, in their order, as soon as it can be.
/// Main thread.
class SqlitePreferences final : public Preferences {
  public:
    /// The file and its folder are made where they are missing. The clock must outlive this.
    SqlitePreferences(const QString& path, Clock& clock);
    /// Tries once more to write what could not be written.
    ~SqlitePreferences() override;

    /// Halvane/preferences.sqlite in the user's configuration folder.
    static QString defaultPath();

    /// Whether every change so far is on the disk.
    bool isStored() const { return m_database && m_pending.empty(); }
    /// Waits until a backup that is being made is done.
    void waitForBackup() { m_backup.wait(); }

    /// Many entries are noted as gone, which is durable; a worker then takes them out of the file.
    void removeEntries(const QStringList& keys, const QSet<QString>& entries) override;
    /// Waits until they have left the file.
    void waitForRemovals() { m_removals.finish(); }

  protected:
    std::optional<PreferenceValue> value(const QString& key) override;
    Later<PreferenceValue> valueLater(const QString& key) override;
    void change(PreferenceChange change) override;

  private:
    void open(int busyMilliseconds);
    void readAhead();
    void checkNotEmptied() const;
    void replaceDamaged(const SqliteError& damage);
    void finishRemovals(QHash<QString, PreferenceValue>& values);
    std::optional<PreferenceValue> storedValue(const QString& key);
    bool write(std::span<const PreferenceChange> changes);
    template<typename Change>
    bool attempt(const Change& change);
    bool note(const QStringList& keys, const QSet<QString>& entries);
    bool handle(const SqliteError& error);
    void report(const SqliteError& error);
    void remember(PreferenceChange change);
    bool retry();
    void retryLater();
    void scheduleRetry();

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

} // namespace halvane
