// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <memory>

namespace halvane {

class Availability;
class CloudFiles;
class LanguageSetting;
class StatusLine;

/// Asks the sync client for files and watches until they have come: every two seconds for a minute,
/// then every ten seconds, for at most half an hour. Main thread.
class CloudDownloads : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        bool cloudDownloadInFlight READ cloudDownloadInFlight NOTIFY cloudDownloadInFlightChanged)

  public:
    /// All references must outlive it.
    CloudDownloads(Availability& availability, CloudFiles& cloudFiles, Clock& clock,
                   StatusLine& status, const LanguageSetting& language, QObject* parent = nullptr);

    [[nodiscard]] bool cloudDownloadInFlight() const { return m_inFlight; }
    /// Fetches every file that is in the cloud, and says so in the status line.
    Q_INVOKABLE void downloadAllCloudTracks();

  Q_SIGNALS:
    void cloudDownloadInFlightChanged();

  private:
    void startCloudDownloads(const QSet<QString>& paths);
    void pollCloudDownloads();
    void pendingChanged();
    [[nodiscard]] bool arePending() const;
    void wait(std::chrono::seconds time);
    void round();
    void setInFlight(bool inFlight);

    Availability& m_availability;
    CloudFiles& m_cloudFiles;
    Clock& m_clock;
    StatusLine& m_status;
    const LanguageSetting& m_language;
    bool m_inFlight = false;
    int m_rounds = 0;
    std::unique_ptr<Timer> m_timer;
};

} // namespace halvane
