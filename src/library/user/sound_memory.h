// SPDX-License-Identifier: MIT
#pragma once

#include "library/user/late_value.h"
#include "library/user/playlists.h"
#include "library/user/said.h"
#include "library/user/sound_survey.h"
#include "platform/serial_worker.h"

#include <QObject>

namespace halvane {

class FileAvailability;
class SoundCheck;
class TrackUserData;

/// What a SoundMemory works on.
struct SoundMemoryNeeds {
    Preferences& preferences;
    const LibraryStore& store;
    TrackUserData& userData;
    Playlists& playlists;
    SoundCheck& soundCheck;
    const FileAvailability& files;
};

/// Lets what the user says of a track follow its sound. It is kept by path elsewhere, and noted
/// here by the identity of the sound, in the same change. A file that comes with a known sound is
/// told of again what is noted: one that was renamed, moved or copied, or had been removed from the
/// library. The first that comes with a sound that nothing is noted of is told what its tags say.
/// From then on what is said of one copy is said of all. Missing tracks in playlists are
/// stood in for by their copies, and tracks that left the library come back to their places. A note
/// stays when its tracks leave. Main thread.
class SoundMemory : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    explicit SoundMemory(const SoundMemoryNeeds& needs, QObject* parent = nullptr);

    /// Takes the notes from the preferences when they are first needed.
    void restore();
    /// What is noted of a sound; none if nothing is.
    [[nodiscard]] std::optional<SoundNote> note(const SoundIdentity& identity) const;
    /// What is noted of every sound.
    [[nodiscard]] QHash<SoundIdentity, Said> allSaid() const;
    /// Joins this with what is noted of these sounds. Their tracks are not told of it.
    void join(const std::vector<std::pair<SoundIdentity, Said>>& ofSounds);
    /// The paths of a sound that several tracks share, as far as a survey has found them.
    [[nodiscard]] QStringList pathsOf(const SoundIdentity& identity) const;

    /// Looks on a worker which tracks share a sound, and then brings them to agree. To be called
    /// when tracks have come or were identified.
    void survey();
    /// Puts copies that are there in the places of missing tracks in playlists.
    void mendPlaylists();
    /// These tracks are about to leave the library; everything is still there.
    void leaving(const QStringList& paths);
    /// They have left the library, and not yet Sound Check.
    void left(const QSet<QString>& paths);

  Q_SIGNALS:
    /// A survey has ended, and all agree.
    void surveyed();

  private:
    using Notes = QHash<SoundIdentity, SoundNote>;
    using Times = QHash<SoundIdentity, qint64>;
    using Places = QHash<SoundIdentity, std::vector<Playlists::Place>>;
    using Says = std::vector<std::pair<QString, Said>>;
    struct Leaving {
        SoundIdentity identity;
        std::vector<Playlists::Place> places;
    };
    struct Replaced {
        QString path;
        SoundIdentity before;
    };

    void noteSaid(const QString& path, const Said& before);
    void noteLoudness(const QString& path);
    void meet(const TrackRows& tracks);
    void meetReplaced(const TrackRows& tracks, const TrackRows& before);
    void settle(const std::vector<Replaced>& all);
    void takeStep();
    void agree(std::size_t most);
    void fillPlaces();

    [[nodiscard]] SoundIdentity identityOf(const QString& path) const;
    [[nodiscard]] std::optional<QString> availablePath(const SoundIdentity& identity) const;
    void putNote(const SoundIdentity& identity, const SoundNote& note);
    void putSaid(const SoundIdentity& identity, const Said& said);
    std::vector<Playlists::Place> takePlaces(const SoundIdentity& identity, const QString& path);
    void putBack(std::vector<Playlists::Place> places);

    const SoundMemoryNeeds m_needs;
    LateValue<Notes> m_notes;             ///< without when they were last played
    LateValue<Times> m_lastPlayed;        ///< of sounds that have a note
    LateValue<Places> m_places;           ///< of sounds that have left the library
    PathsOfSounds m_paths;                ///< as the newest survey found them; to be checked on use
    std::vector<SoundIdentity> m_toAgree; ///< keys of m_paths, of the survey under way
    QHash<QString, Leaving> m_leaving;
    std::vector<Replaced> m_replaced; ///< files whose sound has changed, until a survey begins
    bool m_isSurveying = false;       ///< until all agree
    bool m_isAskedAgain = false;      ///< while a survey was under way
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
