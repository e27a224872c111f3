// SPDX-License-Identifier: MIT
#include "library/user/sound_memory.h"

#include "library/sound/sound_check.h"
#include "library/tidying/file_availability.h"
#include "library/user/settings_keys.h"
#include "library/user/track_user_data.h"
#include "platform/thread_check.h"

#include <algorithm>

namespace halvane {

namespace {

using Place = Playlists::Place;

QHash<SoundIdentity, SoundNote> notesFrom(const NumbersMap& stored) {
    QHash<SoundIdentity, SoundNote> notes;
    notes.reserve(stored.size());
    for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry) {
        const auto identity = SoundIdentity::fromText(entry.key());
        const auto note = noteFromStored(entry.value());
        if (identity && note)
            notes.insert(*identity, *note);
    }
    return notes;
}

QHash<SoundIdentity, qint64> timesFrom(const IntegerMap& stored) {
    QHash<SoundIdentity, qint64> times;
    times.reserve(stored.size());
    for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry)
        if (const auto identity = SoundIdentity::fromText(entry.key()))
            times.insert(*identity, entry.value());
    return times;
}

QString storedPlace(const SoundIdentity& identity, const Place& place) {
    return identity.text() + u' ' + place.playlist.toString(QUuid::WithoutBraces) + u' ' +
           QString::number(place.index);
}

QHash<SoundIdentity, std::vector<Place>> placesFrom(const QStringList& stored) {
    QHash<SoundIdentity, std::vector<Place>> places;
    for (const QString& text : stored) {
        const QStringList parts = text.split(u' ');
        const auto identity = SoundIdentity::fromText(parts.first());
        bool isIndex = false;
        const std::size_t index = parts.size() == 3 ? parts[2].toULongLong(&isIndex) : 0;
        if (identity && isIndex)
            places[*identity].push_back({QUuid::fromString(parts[1]), index, {}});
    }
    return places;
}

// Reads what is stored in one form as another, now or later.
template<typename To, typename From>
void restoreAs(LateValue<To>& value, Later<From> later, std::function<std::optional<From>()> now,
               To (*convert)(const From&)) {
    const auto converted = [convert](std::optional<From> stored) {
        return stored ? std::optional<To>(convert(*stored)) : std::nullopt;
    };
    Later<To> convertedLater;
    if (later)
        convertedLater = [later = std::move(later), converted] { return converted(later()); };
    value.restore(std::move(convertedLater),
                  [now = std::move(now), converted] { return converted(now()); });
}

} // namespace

SoundMemory::SoundMemory(const SoundMemoryNeeds& needs, QObject* parent)
    : QObject(parent)
    , m_needs(needs) {
    connect(&needs.userData, &TrackUserData::saying, this, &SoundMemory::noteSaid);
    connect(&needs.soundCheck, &SoundCheck::gainFound, this, &SoundMemory::noteLoudness);
    connect(&needs.store, &LibraryStore::came, this, &SoundMemory::meet);
    connect(&needs.store, &LibraryStore::replaced, this, &SoundMemory::meetReplaced);
}

void SoundMemory::restore() {
    assertOwnThread(*this);
    Preferences& preferences = m_needs.preferences;
    restoreAs<Notes, NumbersMap>(
        m_notes, preferences.numbersMapLater(SettingsKey::soundNotes),
        [&preferences] { return preferences.numbersMap(SettingsKey::soundNotes); }, &notesFrom);
    restoreAs<Times, IntegerMap>(
        m_lastPlayed, preferences.integerMapLater(SettingsKey::soundLastPlayed),
        [&preferences] { return preferences.integerMap(SettingsKey::soundLastPlayed); },
        &timesFrom);
    restoreAs<Places, QStringList>(
        m_places, preferences.stringsLater(SettingsKey::soundPlaces),
        [&preferences] { return preferences.strings(SettingsKey::soundPlaces); }, &placesFrom);
}

std::optional<SoundNote> SoundMemory::note(const SoundIdentity& identity) const {
    const auto found = m_notes.get().constFind(identity);
    if (found == m_notes.get().cend())
        return std::nullopt;
    SoundNote note = *found;
    note.said.lastPlayed = m_lastPlayed.get().value(identity);
    return note;
}

QHash<SoundIdentity, Said> SoundMemory::allSaid() const {
    QHash<SoundIdentity, Said> all;
    all.reserve(m_notes.get().size());
    for (auto identity = m_notes.get().keyBegin(); identity != m_notes.get().keyEnd(); ++identity)
        all.insert(*identity, note(*identity)->said);
    return all;
}

void SoundMemory::join(const std::vector<std::pair<SoundIdentity, Said>>& ofSounds) {
    assertOwnThread(*this);
    const Preferences::Together together(m_needs.preferences);
    for (const auto& [identity, said] : ofSounds) {
        const Said known = note(identity).value_or(SoundNote()).said;
        if (const Said all = joined(known, said); all != known)
            putSaid(identity, all);
    }
}

QStringList SoundMemory::pathsOf(const SoundIdentity& identity) const {
    QStringList paths = m_paths.value(identity);
    paths.removeIf([&](const QString& path) { return identityOf(path) != identity; });
    return paths;
}

SoundIdentity SoundMemory::identityOf(const QString& path) const {
    const TrackPtr track = m_needs.store.track(path);
    return track ? track->identity : SoundIdentity();
}

void SoundMemory::putNote(const SoundIdentity& identity, const SoundNote& note) {
    m_notes.get().insert(identity, note);
    m_needs.preferences.insertNumbers(SettingsKey::soundNotes, identity.text(), storedNote(note));
    const qint64 lastPlayed = note.said.lastPlayed;
    if (lastPlayed == m_lastPlayed.get().value(identity))
        return;
    m_lastPlayed.get().insert(identity, lastPlayed);
    m_needs.preferences.insertInteger(SettingsKey::soundLastPlayed, identity.text(), lastPlayed);
}

void SoundMemory::putSaid(const SoundIdentity& identity, const Said& said) {
    SoundNote known = note(identity).value_or(SoundNote());
    known.said = said;
    putNote(identity, known);
}

// What is noted may be ahead of a copy that was not known to be one.
void SoundMemory::noteSaid(const QString& path, const Said& before) {
    assertOwnThread(*this);
    const SoundIdentity identity = identityOf(path);
    if (!identity.isKnown())
        return;
    const Said now = m_needs.userData.said(path);
    const auto known = note(identity);
    const Said said = known ? followed(known->said, before, now) : now;
    putSaid(identity, said);
    Says says{{path, said}};
    for (const QString& copy : pathsOf(identity))
        says.emplace_back(copy, said);
    m_needs.userData.say(says);
}

void SoundMemory::noteLoudness(const QString& path) {
    const SoundIdentity identity = identityOf(path);
    if (identity.isKnown())
        m_needs.soundCheck.share(pathsOf(identity));
}

void SoundMemory::meet(const TrackRows& tracks) {
    assertOwnThread(*this);
    const Preferences::Together together(m_needs.preferences);
    Says says;
    std::vector<Place> places;
    for (const TrackPtr& track : tracks) {
        if (!track->identity.isKnown() || !track->sourceURL)
            continue;
        const QString path = track->path();
        const auto known = note(track->identity);
        const Said said = m_needs.userData.said(path);
        const Said all = known ? joined(said, known->said) : withTags(said, track->saidTags);
        if (all != said)
            says.emplace_back(path, all);
        if (all != (known ? known->said : Said()))
            putSaid(track->identity, all);
        if (known && !known->loudness.empty())
            m_needs.soundCheck.learn(path, known->loudness);
        const auto own = takePlaces(track->identity, path);
        places.insert(places.end(), own.cbegin(), own.cend());
    }
    m_needs.userData.say(says);
    putBack(std::move(places));
}

// Which sounds files have whose sound is another now, is known when all have been read.
void SoundMemory::meetReplaced(const TrackRows& tracks, const TrackRows& before) {
    TrackRows met;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const SoundIdentity identity = tracks[i]->identity;
        const bool isSame = identity == before[i]->identity;
        if (!identity.isKnown() || (isSame && tracks[i]->saidTags == before[i]->saidTags))
            continue;
        if (!isSame && before[i]->identity.isKnown())
            m_replaced.push_back({tracks[i]->path(), before[i]->identity});
        else
            met.push_back(tracks[i]);
    }
    meet(met);
}

void SoundMemory::survey() {
    assertOwnThread(*this);
    m_isAskedAgain = m_isSurveying;
    if (m_isSurveying)
        return;
    m_isSurveying = true;
    QSet<SoundIdentity> sought;
    for (auto place = m_places.get().keyBegin(); place != m_places.get().keyEnd(); ++place)
        sought.insert(*place);
    const std::vector<Replaced> replaced = std::exchange(m_replaced, {});
    for (const Replaced& file : replaced)
        sought.insert(file.before);
    m_worker.run([rows = m_needs.store.snapshot(), sought] { return surveySounds(*rows, sought); },
                 [this, replaced](PathsOfSounds paths) {
                     m_paths = std::move(paths);
                     m_toAgree = {m_paths.keyBegin(), m_paths.keyEnd()};
                     const Preferences::Together together(m_needs.preferences);
                     settle(replaced);
                     takeStep();
                 });
}

// The windows get a turn between the portions.
void SoundMemory::takeStep() {
    constexpr std::size_t agreedAtOnce = 500;
    agree(agreedAtOnce);
    if (!m_toAgree.empty()) {
        QMetaObject::invokeMethod(this, &SoundMemory::takeStep, Qt::QueuedConnection);
        return;
    }
    fillPlaces();
    mendPlaylists();
    m_isSurveying = false;
    if (m_isAskedAgain)
        survey();
    else
        Q_EMIT surveyed();
}

void SoundMemory::settle(const std::vector<Replaced>& all) {
    Says says;
    QHash<QString, QString> moved; // what playlists mean by a path lies elsewhere now
    for (const Replaced& replaced : all) {
        const SoundIdentity identity = identityOf(replaced.path);
        if (!identity.isKnown() || identity == replaced.before)
            continue;
        const bool hasOldGone = !pathsOf(replaced.before).isEmpty();
        const auto known = note(identity);
        const Said said =
            saidOfReplaced(m_needs.userData.said(replaced.path),
                           known ? std::optional(known->said) : std::nullopt, hasOldGone);
        says.emplace_back(replaced.path, said);
        if (!known && said != Said())
            putSaid(identity, said);
        if (const auto path = availablePath(replaced.before))
            moved.insert(replaced.path, *path);
    }
    m_needs.userData.say(says);
    m_needs.playlists.putStandIns([&moved](const QString& path) {
        const auto to = moved.constFind(path);
        return to == moved.cend() ? std::nullopt : std::optional(*to);
    });
}

// What is noted is newer than what a copy has that was not known to be one.
void SoundMemory::agree(std::size_t most) {
    const Preferences::Together together(m_needs.preferences);
    Says says;
    for (; most > 0 && !m_toAgree.empty(); --most) {
        const SoundIdentity identity = m_toAgree.back();
        m_toAgree.pop_back();
        const QStringList paths = pathsOf(identity);
        auto known = note(identity);
        if (!known) {
            known = SoundNote();
            for (const QString& path : paths)
                known->said = joined(known->said, m_needs.userData.said(path));
            if (known->said != Said())
                putSaid(identity, known->said);
        }
        for (const QString& path : paths)
            says.emplace_back(path, known->said);
        if (!known->loudness.empty() && !paths.isEmpty())
            m_needs.soundCheck.learn(paths.first(), known->loudness);
        m_needs.soundCheck.share(paths);
    }
    m_needs.userData.say(says);
}

// A copy may have stayed in the library when the track left.
void SoundMemory::fillPlaces() {
    std::vector<Place> places;
    for (const SoundIdentity& identity : m_places.get().keys()) {
        const auto path = availablePath(identity);
        if (!path)
            continue;
        const auto own = takePlaces(identity, *path);
        places.insert(places.end(), own.cbegin(), own.cend());
    }
    putBack(std::move(places));
}

std::optional<QString> SoundMemory::availablePath(const SoundIdentity& identity) const {
    for (const QString& path : pathsOf(identity))
        if (m_needs.files.state(path) == TrackAvailability::available)
            return path;
    return std::nullopt;
}

void SoundMemory::mendPlaylists() {
    assertOwnThread(*this);
    m_needs.playlists.putStandIns([this](const QString& path) -> std::optional<QString> {
        if (m_needs.files.state(path) != TrackAvailability::missing)
            return std::nullopt;
        const SoundIdentity identity = identityOf(path);
        return identity.isKnown() ? availablePath(identity) : std::nullopt;
    });
}

void SoundMemory::leaving(const QStringList& paths) {
    assertOwnThread(*this);
    QSet<QString> known;
    for (const QString& path : paths) {
        const SoundIdentity identity = identityOf(path);
        if (!identity.isKnown())
            continue;
        m_leaving.insert(path, {identity, {}});
        known.insert(path);
    }
    for (const Place& place : m_needs.playlists.placesOf(known))
        m_leaving[place.path].places.push_back(place);
}

void SoundMemory::left(const QSet<QString>& paths) {
    assertOwnThread(*this);
    const Preferences::Together together(m_needs.preferences);
    QStringList stored;
    for (const QString& path : paths) {
        const auto found = m_leaving.constFind(path);
        if (found == m_leaving.cend())
            continue;
        const SoundIdentity identity = found->identity;
        const auto loudness = m_needs.soundCheck.trackLoudness().value(path);
        SoundNote known = note(identity).value_or(SoundNote());
        if (!loudness.empty() && known.loudness.empty()) {
            known.loudness = loudness;
            putNote(identity, known);
        }
        for (const Place& place : found->places) {
            m_places.get()[identity].push_back({place.playlist, place.index, {}});
            stored.append(storedPlace(identity, place));
        }
        m_leaving.erase(found);
    }
    if (stored.isEmpty())
        return;
    m_needs.preferences.insertStrings(SettingsKey::soundPlaces, stored);
    survey();
}

std::vector<Place> SoundMemory::takePlaces(const SoundIdentity& identity, const QString& path) {
    if (!m_places.get().contains(identity))
        return {};
    std::vector<Place> places = m_places.get().take(identity);
    QStringList stored;
    for (Place& place : places) {
        stored.append(storedPlace(identity, place));
        place.path = path;
    }
    m_needs.preferences.removeEntries({SettingsKey::soundPlaces}, stored);
    return places;
}

void SoundMemory::putBack(std::vector<Place> places) {
    if (places.empty())
        return;
    std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
        return std::pair(a.playlist, a.index) < std::pair(b.playlist, b.index);
    });
    // Two copies may have left that come back as one.
    QSet<std::pair<QUuid, QString>> held;
    std::erase_if(places, [&held](const Place& place) {
        const auto before = held.size();
        held.insert({place.playlist, place.path});
        return held.size() == before;
    });
    m_needs.playlists.putBack(places);
}

} // namespace halvane
