// SPDX-License-Identifier: MIT
#include "library/tidying/cloud_downloads.h"

#include "library/status_line.h"
#include "library/tidying/availability.h"
#include "library/user/language_setting.h"
#include "platform/cloud/cloud_files.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

namespace halvane {

namespace {

using namespace std::chrono_literals;

constexpr int frequentRounds = 29;
constexpr int mostRounds = 209;

} // namespace

CloudDownloads::CloudDownloads(Availability& availability, CloudFiles& cloudFiles, Clock& clock,
                               StatusLine& status, const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_availability(availability)
    , m_cloudFiles(cloudFiles)
    , m_clock(clock)
    , m_status(status)
    , m_language(language) {
    connect(&availability, &Availability::downloadsAsked, this,
            &CloudDownloads::startCloudDownloads);
    connect(&availability, &Availability::cloudPendingPathsChanged, this,
            &CloudDownloads::pendingChanged);
}

void CloudDownloads::downloadAllCloudTracks() {
    const QSet<QString> paths = m_availability.cloudPendingPaths();
    if (paths.isEmpty())
        return;
    startCloudDownloads(paths);
    m_status.show(L10n::cloudDownloadStarted(paths.size(), m_language.resolvedLanguage()), false);
}

void CloudDownloads::startCloudDownloads(const QSet<QString>& paths) {
    assertOwnThread(*this);
    m_cloudFiles.startDownloading(QStringList(paths.cbegin(), paths.cend()));
    setInFlight(true);
    pollCloudDownloads();
}

void CloudDownloads::pollCloudDownloads() {
    m_rounds = 0;
    wait(2s);
}

void CloudDownloads::wait(std::chrono::seconds time) {
    m_timer = m_clock.after(time, [this] { round(); });
}

void CloudDownloads::round() {
    m_availability.refreshAvailability();
    if (!arePending() || m_rounds >= mostRounds)
        return setInFlight(false);
    wait(m_rounds < frequentRounds ? 2s : 10s);
    ++m_rounds;
}

void CloudDownloads::pendingChanged() {
    if (m_inFlight && !arePending())
        setInFlight(false);
}

bool CloudDownloads::arePending() const {
    return !m_availability.cloudPendingPaths().isEmpty();
}

void CloudDownloads::setInFlight(bool inFlight) {
    if (!inFlight)
        m_timer.reset();
    if (m_inFlight == inFlight)
        return;
    m_inFlight = inFlight;
    Q_EMIT cloudDownloadInFlightChanged();
}

} // namespace halvane
