// SPDX-License-Identifier: MIT
#pragma once

#include "audio/analysis/loudness_analyzer.h"
#include "library/catalog/library_store.h"
#include "library/sound/level_rules.h"
#include "library/tidying/file_availability.h"
#include "library/user/late_value.h"
#include "model/enums.h"
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

/// What an entry is played among, in the order of playing.
enum class Company {
    others, ///< tracks of other albums
    album,  ///< at least one neighbour of its own album
};

/// Whether both are of one album, and it is not that of all files without one.
bool areOfOneAlbum(const Track& a, const Track& b);

/// Evens out the loudness of tracks: measures the library's files once, one after the other in the
/// background, keeps the results in the preferences, and says what gain each track gets while it is
/// switched on. What lies on a network share is measured when it plays, so that nobody's network is
/// busy for hours unasked. What would have to be downloaded is not measured. Main thread only;
/// measuring has a thread of its own, at low priority.
class SoundCheck : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool soundCheckEnabled READ soundCheckEnabled WRITE setSoundCheckEnabled NOTIFY
                   soundCheckEnabledChanged)
    Q_PROPERTY(halvane::LevelBy levelBy READ levelBy WRITE setLevelBy NOTIFY levelWishesChanged)
    /// dB; for levels by loudness only, as is the next.
    Q_PROPERTY(double preamp READ preamp WRITE setPreamp NOTIFY levelWishesChanged)
    Q_PROPERTY(bool preventsClipping READ preventsClipping WRITE setPreventsClipping NOTIFY
                   levelWishesChanged)

  public:
    /// Measures one file, on a worker thread; must own what it uses.
    using Measure = std::function<std::optional<LoudnessAnalyzer::Measurement>(
        const QString& path, std::stop_token stop)>;

    /// The gains that a track can get, in dB. A louder or a softer one would not be for the better.
    static constexpr double lowestGain = -18;
    static constexpr double highestGain = 12;
    /// The preamp's, in dB, up or down.
    static constexpr double mostPreamp = 12;

    /// The tracks of the library that are of one album with a track, which is among them. Main
    /// thread.
    using AlbumTracks = std::function<TrackRows(const TrackPtr& track)>;

    /// Starts switched off and without results, until restore. Until albumTracks is given, a track
    /// is its album. The references must outlive it. When
    /// it goes, a running scan ends.
    SoundCheck(Preferences& preferences, const LibraryStore& library, const FileAvailability& files,
               std::shared_ptr<const CloudFiles> cloudFiles,
               Measure measure = LoudnessAnalyzer::measure, QObject* parent = nullptr);

    void setAlbumTracks(AlbumTracks albumTracks) { m_albumTracks = std::move(albumTracks); }

    /// Takes the switch from the preferences, and the results when they are first needed. Applies
    /// nothing and scans nothing.
    void restore();

    [[nodiscard]] bool soundCheckEnabled() const { return m_enabled; }
    /// Stores the switch; on starts a scan, off ends it.
    void setSoundCheckEnabled(bool enabled);

    // How levels are chosen while it is switched on. Each is stored the moment it changes.
    [[nodiscard]] LevelBy levelBy() const { return m_levelBy; }
    void setLevelBy(LevelBy levelBy);
    [[nodiscard]] double preamp() const { return m_wishes.preamp; }
    void setPreamp(double dB); ///< clamped; what is no number changes nothing
    [[nodiscard]] bool preventsClipping() const { return m_wishes.preventsClipping; }
    void setPreventsClipping(bool prevents);
    /// Gains that differ much may follow each other without a gap: whoever levels by loudness has
    /// chosen so.
    [[nodiscard]] bool isByLoudness() const {
        return m_enabled && m_levelBy != LevelBy::soundCheck;
    }

    /// Results by standardized path: RMS and peak in dBFS. An entry of another length counts as
    /// unmeasured for the gain and is not measured again.
    [[nodiscard]] const NumbersMap& trackLoudness() const { return m_trackLoudness.get(); }
    /// A file without a result has the sound of one with this result.
    void learn(const QString& path, const std::vector<double>& loudness);
    /// Files of one sound have all results that any of them has.
    void share(const QStringList& paths);
    /// The same of loudness as levelNumbers gives it.
    [[nodiscard]] const NumbersMap& programmeLoudness() const { return m_programmeLoudness.get(); }
    /// Files left the library, and the preferences with it.
    void forget(const QSet<QString>& paths);

    /// The gain in dB that a file is to be played with, within the limits. It is 0 while switched
    /// off. Without a result it is 0 too, or the preamp as far as that is safe.
    [[nodiscard]] double gainFor(const QString& path, Company company = Company::others) const;

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
    /// How levels are chosen has changed.
    void levelWishesChanged();
    /// The gain of this file, or that of its album, may be known now.
    void gainFound(const QString& path);

  private:
    struct Job {
        FileUrl file;
        bool isPlayed = false; ///< it may lie on a network share
    };

    [[nodiscard]] double soundCheckGainFor(const QString& path) const;
    [[nodiscard]] KnownLevel known(const Track& track) const;
    [[nodiscard]] Level levelOf(const TrackPtr& track, Company company) const;
    [[nodiscard]] bool isMeasured(const Track& track) const;
    [[nodiscard]] bool canBeMeasured(const Track& track) const;
    [[nodiscard]] std::deque<FileUrl> unmeasuredFiles() const;
    void cancelScan();
    void measureNext();
    std::optional<Job> takeJob();
    void take(const FileUrl& file, const std::optional<LoudnessAnalyzer::Measurement>& measured);
    QStringList fill(NumbersMap& map, const QString& key, const QStringList& paths);
    void put(NumbersMap& map, const QString& key, const QString& path,
             const std::vector<double>& numbers);
    void tell(const QStringList& found);

    Preferences& m_preferences;
    const LibraryStore& m_library;
    const FileAvailability& m_files;
    const std::shared_ptr<const CloudFiles> m_cloudFiles;
    const Measure m_measure;
    AlbumTracks m_albumTracks = [](const TrackPtr& track) { return TrackRows{track}; };
    bool m_enabled = false;
    LevelBy m_levelBy = LevelBy::soundCheck;
    LevelWishes m_wishes;
    LateValue<NumbersMap> m_trackLoudness;
    LateValue<NumbersMap> m_programmeLoudness;

    // What is still to be measured, and the one file that the worker has.
    QStringList m_played; ///< standardized paths, also while switched off
    std::deque<FileUrl> m_waiting;
    std::optional<Job> m_measuring;
    QSet<QString> m_gone; ///< standardized paths of what has left the library meanwhile
    /// Never ahead of what is playing.
    SerialWorker m_worker{SerialWorker::Priority::idle};
};

} // namespace halvane
