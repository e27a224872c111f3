// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QObject>

#include <memory>

namespace halvane {

class LanguageSetting;
class StatusLine;
class Transport;

/// Pauses playback after a while, for those who fall asleep to music. Says what was set. Forgotten
/// when the program ends. Main thread.
class SleepTimer : public QObject {
    Q_OBJECT

  public:
    static constexpr int longestMinutes = 24 * 60;

    /// All references must outlive it.
    SleepTimer(Transport& transport, Clock& clock, StatusLine& status,
               const LanguageSetting& language, QObject* parent = nullptr);

    /// What was set; 0 while it is off.
    [[nodiscard]] int minutes() const { return m_minutes; }
    /// Begins to count, from the start where it did already; 0 turns it off. Within 0 and
    /// longestMinutes.
    void setMinutes(int minutes);
    /// The next of the usual times, and off after the longest of them.
    void advance();

  Q_SIGNALS:
    void minutesChanged();

  private:
    void end();

    Transport& m_transport;
    Clock& m_clock;
    StatusLine& m_status;
    const LanguageSetting& m_language;
    int m_minutes = 0;
    std::unique_ptr<Timer> m_timer;
};

} // namespace halvane
