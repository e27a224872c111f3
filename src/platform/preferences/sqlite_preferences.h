// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/preferences/value_preferences.h"

#include <memory>

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
class SqlitePreferences final : public ValuePreferences {
  public:
    /// The file and its folder are made where they are missing. The clock must outlive this.
    SqlitePreferences(const QString& path, Clock& clock);
    /// Tries once more to write what could not be written.
    ~SqlitePreferences() override;

    /// Halvane/preferences.sqlite in the user's configuration folder.
    static QString defaultPath();

    /// Whether every change so far is on the disk.
    bool isStored() const;
    /// Waits until a backup that is being made is done.
    void waitForBackup();

    /// Many entries are noted down as gone, and leave the file behind the program's back.
    void removeEntries(const QStringList& keys, const QSet<QString>& entries) override;
    /// Waits until they have left the file.
    void waitForRemovals();

  protected:
    std::optional<PreferenceValue> value(const QString& key) const override;
    std::function<std::optional<PreferenceValue>()> valueLater(const QString& key) const override;
    void change(PreferenceChange change) override;

  private:
    class Store;
    std::unique_ptr<Store> m_store;
};

} // namespace halvane
