// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/loudness_analyzer.h"
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
/// background, keeps the results in the preferences, and gives each track its gain while it is
/// switched on. Main thread only; measuring has a thread of its own, at low priority.
class SoundCheck : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool soundCheckEnabled READ soundCheckEnabled WRITE setSoundCheckEnabled NOTIFY
                   soundCheckEnabledChanged)

  public:
    /// What Sound Check asks of its surroundings, all on the main thread except `measure`.
    struct Collaborators {
        /// Calls back with each of the library's files, in library order.
        std::function<void(const std::function<void(const FileUrl&)>&)> visitFiles;
        /// Whether the file at a standardized path is neither missing nor in the cloud.
        std::function<bool(const QString& path)> isAvailable;
        /// The standardized path of the queue's current entry; none without one, or without a file.
        std::function<std::optional<QString>()> currentPath;
        /// Sets the per-track gain in dB.
        std::function<void(double dB)> setTrackGain;
        /// Measures one file; runs on a worker thread, and must own what it uses.
        std::function<std::optional<LoudnessAnalyzer::Measurement>(const QString& path,
                                                                   std::stop_token stop)>
            measure = LoudnessAnalyzer::measure;
    };

    /// Starts switched off and without results, until restore. The preferences must outlive it.
    /// When it goes, a running scan ends.
    SoundCheck(Preferences& preferences, std::shared_ptr<const CloudFiles> cloudFiles,
               Collaborators collaborators, QObject* parent = nullptr);

    /// Takes the switch from the preferences, and the results when they are first needed. Applies
    /// nothing and scans nothing.
    void restore();

    [[nodiscard]] bool soundCheckEnabled() const { return m_enabled; }
    /// Stores the switch and applies it to the current track at once; on starts a scan, off ends
    /// it.
    void setSoundCheckEnabled(bool enabled);

    /// Results by standardized path: RMS and peak in dBFS. An entry of another length counts as
    /// unmeasured for the gain and is not measured again.
    [[nodiscard]] const NumbersMap& trackLoudness() const { return m_trackLoudness.get(); }
    /// Files left the library, and the preferences with it.
    void forget(const QSet<QString>& paths);

    /// The gain in dB for a file; none while switched off or without a result. Not clamped.
    [[nodiscard]] std::optional<double> soundCheckGain(const QString& forPath) const;
    /// Sets the track gain for a file, clamped to -18...+12 dB; 0 dB where there is no gain.
    void applySoundCheck(const std::optional<QString>& forPath);
    void applySoundCheckForCurrentTrack();

    /// Starts measuring what is available and has no result yet, in place of a running scan; leaves
    /// a running scan alone when there is nothing to measure. Does nothing while switched off.
    void scanLoudnessIfNeeded();

  Q_SIGNALS:
    void soundCheckEnabledChanged();
    /// Results were added, removed or restored.
    void trackLoudnessChanged();

  private:
    [[nodiscard]] std::deque<FileUrl> unmeasuredFiles() const;
    void cancelScan();
    void measureNext();
    void take(const FileUrl& file, const std::optional<LoudnessAnalyzer::Measurement>& measured);

    Preferences& m_preferences;
    const std::shared_ptr<const CloudFiles> m_cloudFiles;
    Collaborators m_collaborators;
    bool m_enabled = false;
    LateValue<NumbersMap> m_trackLoudness;

    // The scan: what is still to be measured, and the one file that the worker has.
    std::deque<FileUrl> m_waiting;
    QSet<QString> m_gone; ///< standardized paths of those among them that have left the library
    QString m_measuring;  ///< standardized path; empty: none, or it left the library meanwhile
    /// Never ahead of what is playing.
    SerialWorker m_worker{SerialWorker::Priority::idle};
};

} // namespace halvane
