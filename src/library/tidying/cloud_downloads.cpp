// SPDX-License-Identifier: MIT
#include "library/tidying/cloud_downloads.h"

#include "platform/cloud/cloud_files.h"
#include "platform/thread_check.h"

namespace halvane {

namespace {

using namespace std::chrono_literals;

constexpr int frequentRounds = 29;
constexpr int mostRounds = 209;

} // namespace

CloudDownloads::CloudDownloads(Collaborators with, QObject* parent)
    : QObject(parent)
    , m_with(std::move(with)) {
}

void CloudDownloads::startCloudDownloads(const QSet<QString>& paths) {
    assertOwnThread(*this);
    m_with.cloudFiles.startDownloading(QStringList(paths.cbegin(), paths.cend()));
    setInFlight(true);
    pollCloudDownloads();
}

void CloudDownloads::pollCloudDownloads() {
    m_rounds = 0;
    wait(2s);
}

void CloudDownloads::wait(std::chrono::seconds time) {
    m_timer = m_with.clock.after(time, [this] { round(); });
}

void CloudDownloads::round() {
    m_with.refreshAvailability();
    if (!m_with.arePending() || m_rounds >= mostRounds)
        return setInFlight(false);
    wait(m_rounds < frequentRounds ? 2s : 10s);
    ++m_rounds;
}

void CloudDownloads::pendingChanged() {
    if (m_inFlight && !m_with.arePending())
        setInFlight(false);
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
