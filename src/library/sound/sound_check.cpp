// SPDX-License-Identifier: MIT
#include "library/sound/sound_check.h"

#include "library/user/settings_keys.h"
#include "platform/cloud/cloud_files.h"
#include "platform/thread_check.h"

#include <algorithm>
#include <cmath>

namespace halvane {

using LoudnessAnalyzer::Measurement;

double soundCheckGain(double rmsDb, double peakDb) {
    constexpr double targetRmsDb = -16;
    constexpr double highestPeakDb = -1;
    const double mostBoost = std::max(0.0, highestPeakDb - peakDb); // never a forced cut
    return std::min(targetRmsDb - rmsDb, mostBoost);
}

SoundCheck::SoundCheck(Preferences& preferences, const LibraryStore& library,
                       const FileAvailability& files, std::shared_ptr<const CloudFiles> cloudFiles,
                       Measure measure, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_library(library)
    , m_files(files)
    , m_cloudFiles(std::move(cloudFiles))
    , m_measure(std::move(measure)) {
}

void SoundCheck::restore() {
    assertOwnThread(*this);
    m_enabled = m_preferences.boolean(SettingsKey::soundCheckEnabled).value_or(false);
    m_trackLoudness.restore(m_preferences.numbersMapLater(SettingsKey::trackLoudness), [this] {
        return m_preferences.numbersMap(SettingsKey::trackLoudness);
    });
    Q_EMIT soundCheckEnabledChanged();
    Q_EMIT trackLoudnessChanged();
}

void SoundCheck::setSoundCheckEnabled(bool enabled) {
    assertOwnThread(*this);
    m_preferences.setBoolean(SettingsKey::soundCheckEnabled, enabled);
    if (enabled != m_enabled) {
        m_enabled = enabled;
        Q_EMIT soundCheckEnabledChanged();
    }
    if (enabled)
        scanLoudnessIfNeeded();
    else
        cancelScan();
}

void SoundCheck::forget(const QSet<QString>& paths) {
    assertOwnThread(*this);
    if (m_measuring)
        m_gone.unite(paths);
    NumbersMap& known = m_trackLoudness.get();
    const auto before = known.size();
    for (const QString& path : paths)
        known.remove(path);
    if (known.size() != before)
        Q_EMIT trackLoudnessChanged();
}

double SoundCheck::gainFor(const QString& path) const {
    assertOwnThread(*this);
    if (!m_enabled)
        return 0;
    const auto found = trackLoudness().constFind(path);
    if (found == trackLoudness().cend() || found->size() != 2)
        return 0;
    const double gain = soundCheckGain((*found)[0], (*found)[1]);
    return std::isfinite(gain) ? std::clamp(gain, lowestGain, highestGain) : 0;
}

void SoundCheck::setPlayed(const QStringList& paths) {
    assertOwnThread(*this);
    m_played = paths;
    if (m_enabled && !m_measuring)
        measureNext();
}

void SoundCheck::scanLoudnessIfNeeded() {
    assertOwnThread(*this);
    if (!m_enabled)
        return;
    auto files = unmeasuredFiles();
    if (files.empty())
        return;
    cancelScan();
    m_waiting = std::move(files);
    measureNext();
}

std::deque<FileUrl> SoundCheck::unmeasuredFiles() const {
    std::deque<FileUrl> files;
    for (const TrackPtr& track : m_library.rows()) {
        if (!track->sourceURL)
            continue;
        if (canBeMeasured(track->sourceURL->standardizedPath()))
            files.push_back(*track->sourceURL);
    }
    return files;
}

bool SoundCheck::canBeMeasured(const QString& path) const {
    return !trackLoudness().contains(path) && m_files.state(path) == TrackAvailability::available;
}

void SoundCheck::cancelScan() {
    m_worker.cancel();
    if (m_measuring && m_measuring->isPlayed)
        m_played.prepend(m_measuring->file.standardizedPath());
    m_measuring.reset();
    m_waiting.clear();
    m_gone.clear();
}

void SoundCheck::measureNext() {
    m_measuring = takeJob();
    if (!m_measuring) {
        m_gone.clear();
        return;
    }
    m_worker.run(
        [path = m_measuring->file.path(), isPlayed = m_measuring->isPlayed, cloud = m_cloudFiles,
         measure = m_measure](const SerialWorker::Job& job) {
            const Storage storage = cloud->storage(path);
            const bool mayBeRead =
                storage == Storage::disk || (storage == Storage::networkShare && isPlayed);
            std::optional<Measurement> measured;
            if (!job.isCancelled() && mayBeRead && !cloud->isEvicted(path))
                measured = measure(path, job.token());
            return measured;
        },
        [this](const std::optional<Measurement>& measured) {
            const Job done = *m_measuring;
            take(done.file, measured);
            measureNext();
        });
}

std::optional<SoundCheck::Job> SoundCheck::takeJob() {
    while (!m_played.empty()) {
        const TrackPtr track = m_library.track(m_played.takeFirst());
        if (track && canBeMeasured(track->path()))
            return Job{*track->sourceURL, true};
    }
    while (!m_waiting.empty()) {
        const FileUrl file = std::move(m_waiting.front());
        m_waiting.pop_front();
        const QString& path = file.standardizedPath();
        if (!m_gone.contains(path) && !trackLoudness().contains(path))
            return Job{file, false};
    }
    return std::nullopt;
}

void SoundCheck::take(const FileUrl& file, const std::optional<Measurement>& measured) {
    if (!measured || m_gone.contains(file.standardizedPath()))
        return;
    learn(file.standardizedPath(), {measured->rmsDb, measured->peakDb});
}

void SoundCheck::learn(const QString& path, const std::vector<double>& loudness) {
    assertOwnThread(*this);
    if (trackLoudness().contains(path))
        return;
    m_trackLoudness.get().insert(path, loudness);
    m_preferences.insertNumbers(SettingsKey::trackLoudness, path, loudness);
    Q_EMIT trackLoudnessChanged();
    Q_EMIT gainFound(path);
}

} // namespace halvane
