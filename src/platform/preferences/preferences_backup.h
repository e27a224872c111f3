// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <atomic>
#include <memory>

namespace halvane {

/// Keeps a copy of the preferences file for each of the last three days it was used, in the folder
/// "backups" beside it. Copies on a thread of its own, from one state of the file, while changes go
/// on; a copy that is damaged does not displace a good one. Main thread.
class PreferencesBackup {
  public:
    /// Makes the day's copy a minute after start, and looks again every hour. The clock must
    /// outlive it.
    PreferencesBackup(const QString& path, Clock& clock);
    /// Gives up a copy that is being made.
    ~PreferencesBackup();

    /// Gives up a copy that is being made, so that the file is not open in this process.
    void interrupt();
    /// Waits until a copy that is being made is done.
    void wait();

    /// The copies there are, the newest first.
    static QStringList copies(const QString& path);

  private:
    void makeTodaysCopy();

    QString m_path;
    Clock& m_clock;
    std::atomic<bool> m_stop = false;
    QThreadPool m_worker;
    std::unique_ptr<Timer> m_first;
    std::unique_ptr<Timer> m_hourly;
};

} // namespace halvane
