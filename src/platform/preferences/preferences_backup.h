// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/serial_worker.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace halvane {

/// Keeps a copy of the preferences file for each of the last three days on which the program ran,
/// in the folder "backups" beside the file. A worker copies one state of the file while changes go
/// on. A copy that turns out damaged is dropped, so that it does not displace a good one. Main
/// thread.
class PreferencesBackup {
  public:
    /// Makes the day's copy a minute after the start, and looks again every hour. The clock and the
    /// worker must outlive it. A copy ends early when the worker's job is cancelled.
    PreferencesBackup(const QString& path, Clock& clock, SerialWorker& worker);

    /// The copies there are, the newest first.
    static QStringList copies(const QString& path);

  private:
    void makeTodaysCopy();

    const QString m_path;
    Clock& m_clock;
    SerialWorker& m_worker;
    std::unique_ptr<Timer> m_first;
    std::unique_ptr<Timer> m_hourly;
};

} // namespace halvane
