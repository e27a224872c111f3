// SPDX-License-Identifier: MIT
#include "library/sound/sound_check.h"

#include "library/import/fallback_names.h"
#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"
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

bool areOfOneAlbum(const Track& a, const Track& b) {
    const auto isNone = [](const QString& album) {
        return album.isEmpty() || album == fallbackNames(ResolvedLanguage::english).album ||
               album == fallbackNames(ResolvedLanguage::simplifiedChinese).album;
    };
    return a.album == b.album && a.leadArtist() == b.leadArtist() && !isNone(a.album);
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
    m_programmeLoudness.restore(
        m_preferences.numbersMapLater(SettingsKey::trackProgrammeLoudness),
        [this] { return m_preferences.numbersMap(SettingsKey::trackProgrammeLoudness); });
    m_levelBy = storedEnum<LevelBy>(m_preferences.string(SettingsKey::levelBy)).value_or(m_levelBy);
    m_wishes.preamp = std::clamp(
        storedNumber(m_preferences.number(SettingsKey::levelPreamp)).value_or(m_wishes.preamp),
        -mostPreamp, mostPreamp);
    m_wishes.preventsClipping =
        m_preferences.boolean(SettingsKey::preventsClipping).value_or(m_wishes.preventsClipping);
    Q_EMIT soundCheckEnabledChanged();
    Q_EMIT levelWishesChanged();
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

void SoundCheck::setLevelBy(LevelBy levelBy) {
    assertOwnThread(*this);
    if (std::exchange(m_levelBy, levelBy) == levelBy)
        return;
    m_preferences.setString(SettingsKey::levelBy, rawValue(levelBy));
    Q_EMIT levelWishesChanged();
    scanLoudnessIfNeeded();
}

void SoundCheck::setPreamp(double dB) {
    assertOwnThread(*this);
    const double preamp = std::clamp(dB, -mostPreamp, mostPreamp);
    if (!std::isfinite(dB) || std::exchange(m_wishes.preamp, preamp) == preamp)
        return;
    m_preferences.setNumber(SettingsKey::levelPreamp, preamp);
    Q_EMIT levelWishesChanged();
}

void SoundCheck::setPreventsClipping(bool prevents) {
    assertOwnThread(*this);
    if (std::exchange(m_wishes.preventsClipping, prevents) == prevents)
        return;
    m_preferences.setBoolean(SettingsKey::preventsClipping, prevents);
    Q_EMIT levelWishesChanged();
}

void SoundCheck::forget(const QSet<QString>& paths) {
    assertOwnThread(*this);
    if (m_measuring)
        m_gone.unite(paths);
    const auto before = trackLoudness().size();
    for (const QString& path : paths) {
        m_trackLoudness.get().remove(path);
        m_programmeLoudness.get().remove(path);
    }
    if (trackLoudness().size() != before)
        Q_EMIT trackLoudnessChanged();
}

double SoundCheck::gainFor(const QString& path, Company company) const {
    assertOwnThread(*this);
    if (!m_enabled)
        return 0;
    if (!isByLoudness())
        return soundCheckGainFor(path);
    const TrackPtr track = m_library.track(path);
    return levelGain(track ? levelOf(track, company) : Level(), m_wishes);
}

KnownLevel SoundCheck::known(const Track& track) const {
    const auto found = programmeLoudness().constFind(track.path());
    return {track.levelTags,
            found == programmeLoudness().cend() ? std::nullopt : levelFromNumbers(*found)};
}

Level SoundCheck::levelOf(const TrackPtr& track, Company company) const {
    if (m_levelBy == LevelBy::album && company == Company::album) {
        std::vector<KnownLevel> tracks;
        for (const TrackPtr& other : m_albumTracks(track))
            tracks.push_back(known(*other));
        if (const Level level = albumLevel(known(*track), tracks); level.gain)
            return level;
    }
    return trackLevel(known(*track));
}

double SoundCheck::soundCheckGainFor(const QString& path) const {
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
        if (canBeMeasured(*track))
            files.push_back(*track->sourceURL);
    }
    return files;
}

bool SoundCheck::canBeMeasured(const Track& track) const {
    return !isMeasured(track) && m_files.state(track.path()) == TrackAvailability::available;
}

// What the tags say need not be measured.
bool SoundCheck::isMeasured(const Track& track) const {
    if (!isByLoudness())
        return trackLoudness().contains(track.path());
    const LevelTags& tags = track.levelTags;
    const bool isTagged = tags.trackGain && tags.trackPeak &&
                          (m_levelBy == LevelBy::track || (tags.albumGain && tags.albumPeak));
    return isTagged || programmeLoudness().contains(track.path());
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
        if (track && canBeMeasured(*track))
            return Job{*track->sourceURL, true};
    }
    while (!m_waiting.empty()) {
        const FileUrl file = std::move(m_waiting.front());
        m_waiting.pop_front();
        const QString& path = file.standardizedPath();
        const TrackPtr track = m_library.track(path);
        if (track && !m_gone.contains(path) && !isMeasured(*track))
            return Job{file, false};
    }
    return std::nullopt;
}

void SoundCheck::take(const FileUrl& file, const std::optional<Measurement>& measured) {
    if (!measured || m_gone.contains(file.standardizedPath()))
        return;
    const QString& path = file.standardizedPath();
    put(m_trackLoudness.get(), SettingsKey::trackLoudness, path,
        {measured->rmsDb, measured->peakDb});
    put(m_programmeLoudness.get(), SettingsKey::trackProgrammeLoudness, path,
        levelNumbers(measured->programme));
    tell({path});
}

void SoundCheck::learn(const QString& path, const std::vector<double>& loudness) {
    assertOwnThread(*this);
    if (trackLoudness().contains(path))
        return;
    put(m_trackLoudness.get(), SettingsKey::trackLoudness, path, loudness);
    tell({path});
}

void SoundCheck::share(const QStringList& paths) {
    assertOwnThread(*this);
    tell(fill(m_trackLoudness.get(), SettingsKey::trackLoudness, paths) +
         fill(m_programmeLoudness.get(), SettingsKey::trackProgrammeLoudness, paths));
}

/// The paths that had no numbers and have those of another now.
QStringList SoundCheck::fill(NumbersMap& map, const QString& key, const QStringList& paths) {
    const auto known = std::find_if(paths.cbegin(), paths.cend(),
                                    [&](const QString& path) { return map.contains(path); });
    QStringList filled;
    if (known == paths.cend())
        return filled;
    const std::vector<double> numbers = map.value(*known);
    for (const QString& path : paths) {
        if (map.contains(path))
            continue;
        put(map, key, path, numbers);
        filled.append(path);
    }
    return filled;
}

void SoundCheck::put(NumbersMap& map, const QString& key, const QString& path,
                     const std::vector<double>& numbers) {
    map.insert(path, numbers);
    m_preferences.insertNumbers(key, path, numbers);
}

void SoundCheck::tell(const QStringList& found) {
    if (found.isEmpty())
        return;
    Q_EMIT trackLoudnessChanged();
    for (const QString& path : found)
        Q_EMIT gainFound(path);
}

} // namespace halvane
