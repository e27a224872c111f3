// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>

namespace halvane {

class CloudFiles;

/// Asks for files in the cloud and watches until they have come: every two seconds for a minute,
/// then every ten seconds, half an hour at most. Main thread.
class CloudDownloads : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        bool cloudDownloadInFlight READ cloudDownloadInFlight NOTIFY cloudDownloadInFlightChanged)

  public:
    struct Collaborators {
        Clock& clock;
        CloudFiles& cloudFiles;
        std::function<void()> refreshAvailability;
        /// Whether files of the library are still in the cloud, as far as is known.
        std::function<bool()> arePending;
    };
    /// All collaborators outlive it.
    explicit CloudDownloads(Collaborators with, QObject* parent = nullptr);

    bool cloudDownloadInFlight() const { return m_inFlight; }
    void startCloudDownloads(const QSet<QString>& paths);
    /// The set of files in the cloud changed: nothing is left to watch when it is empty.
    void pendingChanged();

  Q_SIGNALS:
    void cloudDownloadInFlightChanged();

  private:
    void pollCloudDownloads();
    void wait(std::chrono::seconds time);
    void round();
    void setInFlight(bool inFlight);

    Collaborators m_with;
    bool m_inFlight = false;
    int m_rounds = 0;
    std::unique_ptr<Timer> m_timer;
};

} // namespace halvane
