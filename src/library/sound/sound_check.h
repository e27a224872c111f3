// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/loudness_analyzer.h"
#include "library/catalog/library_store.h"
#include "library/tidying/file_availability.h"
#include "library/user/late_value.h"
#include "model/file_url.h"
#include "platform/serial_worker.h"

#include <QObject>
#include <QSet>

#include <deque>
#include <functional>
#include <optional>
#include <stop_token>

namespace halvane {

class CloudFiles;

/// The gain in dB that brings a track towards -16 dBFS without lifting its peak above -1 dBFS:
/// loud tracks are turned down, quiet ones turned up as far as their peak allows. Not clamped.
double soundCheckGain(double rmsDb, double peakDb);

/// Evens out the loudness of tracks: measures the library's files once, one after the other in the
/// background, keeps the results in the preferences, and says what gain each track gets while it is
/// switched on. What lies on a network share is measured when it plays, so that nobody's network is
/// busy for hours unasked. What would have to be downloaded is not measured. Main thread only;
/// measuring has a thread of its own, at low priority.
class SoundCheck : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool soundCheckEnabled READ soundCheckEnabled WRITE setSoundCheckEnabled NOTIFY
                   soundCheckEnabledChanged)

  public:
    /// Measures one file, on a worker thread; must own what it uses.
    using Measure = std::function<std::optional<LoudnessAnalyzer::Measurement>(
        const QString& path, std::stop_token stop)>;

    /// The gains that a track can get, in dB. A louder or a softer one would not be for the better.
    static constexpr double lowestGain = -18;
    static constexpr double highestGain = 12;

    /// Starts switched off and without results, until restore. The references must outlive it. When
    /// it goes, a running scan ends.
    SoundCheck(Preferences& preferences, const LibraryStore& library, const FileAvailability& files,
               std::shared_ptr<const CloudFiles> cloudFiles,
               Measure measure = LoudnessAnalyzer::measure, QObject* parent = nullptr);

    /// Takes the switch from the preferences, and the results when they are first needed. Applies
    /// nothing and scans nothing.
    void restore();

    [[nodiscard]] bool soundCheckEnabled() const { return m_enabled; }
    /// Stores the switch; on starts a scan, off ends it.
    void setSoundCheckEnabled(bool enabled);

    /// Results by standardized path: RMS and peak in dBFS. An entry of another length counts as
    /// unmeasured for the gain and is not measured again.
    [[nodiscard]] const NumbersMap& trackLoudness() const { return m_trackLoudness.get(); }
    /// A file without a result has the sound of one with this result.
    void learn(const QString& path, const std::vector<double>& loudness);
    /// Files left the library, and the preferences with it.
    void forget(const QSet<QString>& paths);

    /// The gain in dB that a file is to be played with, within the limits; 0 while switched off or
    /// without a result.
    [[nodiscard]] double gainFor(const QString& path) const;

    /// The listener plays the first of these files, and the others are to follow: they are measured
    /// before all others.
    void setPlayed(const QStringList& paths);

    /// Starts measuring what is available and has no result yet, in place of a running scan; leaves
    /// a running scan alone when there is nothing to measure. Does nothing while switched off.
    void scanLoudnessIfNeeded();

  Q_SIGNALS:
    void soundCheckEnabledChanged();
    /// Results were added, removed or restored.
    void trackLoudnessChanged();
    /// The gain of this file is known now.
    void gainFound(const QString& path);

  private:
    struct Job {
        FileUrl file;
        bool isPlayed = false; ///< it may lie on a network share
    };

    [[nodiscard]] bool canBeMeasured(const QString& path) const;
    [[nodiscard]] std::deque<FileUrl> unmeasuredFiles() const;
    void cancelScan();
    void measureNext();
    std::optional<Job> takeJob();
    void take(const FileUrl& file, const std::optional<LoudnessAnalyzer::Measurement>& measured);

    Preferences& m_preferences;
    const LibraryStore& m_library;
    const FileAvailability& m_files;
    const std::shared_ptr<const CloudFiles> m_cloudFiles;
    const Measure m_measure;
    bool m_enabled = false;
    LateValue<NumbersMap> m_trackLoudness;

    // What is still to be measured, and the one file that the worker has.
    QStringList m_played; ///< standardized paths, also while switched off
    std::deque<FileUrl> m_waiting;
    std::optional<Job> m_measuring;
    QSet<QString> m_gone; ///< standardized paths of what has left the library meanwhile
    /// Never ahead of what is playing.
    SerialWorker m_worker{SerialWorker::Priority::idle};
};

} // namespace halvane
