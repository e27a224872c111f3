// SPDX-License-Identifier: MIT
#include "library/user/said_file.h"

#include "metadata/file_dates.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const QString kind = u"Halvane listening data"_s;
constexpr int version = 1;

QString dateText(qint64 seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds + static_cast<qint64>(referenceDateOffset))
        .toUTC()
        .toString(Qt::ISODate);
}

qint64 dateFrom(const QString& text) {
    const QDateTime date = QDateTime::fromString(text, Qt::ISODate);
    const qint64 seconds =
        date.isValid() ? date.toSecsSinceEpoch() - static_cast<qint64>(referenceDateOffset) : 0;
    return std::max<qint64>(seconds, 0);
}

void insertText(QJsonObject& object, const QString& key, const QString& text) {
    if (!text.isEmpty())
        object.insert(key, text);
}

void insertNumber(QJsonObject& object, const QString& key, qint64 number) {
    if (number > 0)
        object.insert(key, number);
}

QJsonObject objectOf(const SaidEntry& entry) {
    QJsonObject object;
    insertText(object, u"path"_s, entry.path);
    if (entry.identity.isKnown())
        object.insert(u"sound"_s, entry.identity.text());
    insertText(object, u"title"_s, entry.title);
    insertText(object, u"artist"_s, entry.artist);
    insertText(object, u"album"_s, entry.album);
    if (entry.said.isLoved)
        object.insert(u"loved"_s, true);
    insertNumber(object, u"rating"_s, entry.said.rating);
    insertNumber(object, u"plays"_s, entry.said.plays);
    if (entry.said.lastPlayed > 0)
        object.insert(u"lastPlayed"_s, dateText(entry.said.lastPlayed));
    return object;
}

SaidEntry entryFrom(const QJsonObject& object) {
    constexpr qint64 mostStars = 5;
    SaidEntry entry;
    entry.path = object.value(u"path"_s).toString();
    entry.identity =
        SoundIdentity::fromText(object.value(u"sound"_s).toString()).value_or(SoundIdentity());
    entry.title = object.value(u"title"_s).toString();
    entry.artist = object.value(u"artist"_s).toString();
    entry.album = object.value(u"album"_s).toString();
    entry.said = {object.value(u"loved"_s).toBool(),
                  std::clamp<qint64>(object.value(u"rating"_s).toInteger(), 0, mostStars),
                  std::max<qint64>(object.value(u"plays"_s).toInteger(), 0),
                  dateFrom(object.value(u"lastPlayed"_s).toString())};
    return entry;
}

} // namespace

QByteArray SaidFile::toJson() const {
    QJsonArray entries;
    for (const SaidEntry& entry : tracks)
        entries.append(objectOf(entry));
    QJsonArray lists;
    for (const SaidPlaylist& playlist : playlists)
        lists.append(QJsonObject{{u"name"_s, playlist.name},
                                 {u"paths"_s, QJsonArray::fromStringList(playlist.paths)}});
    return QJsonDocument(QJsonObject{{u"kind"_s, kind},
                                     {u"version"_s, version},
                                     {u"tracks"_s, entries},
                                     {u"playlists"_s, lists}})
        .toJson();
}

std::optional<SaidFile> SaidFile::fromJson(const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    if (object.value(u"kind"_s).toString() != kind)
        return std::nullopt;
    SaidFile file;
    for (const QJsonValue& value : object.value(u"tracks"_s).toArray())
        if (SaidEntry entry = entryFrom(value.toObject());
            !entry.path.isEmpty() || entry.identity.isKnown())
            file.tracks.push_back(std::move(entry));
    for (const QJsonValue& value : object.value(u"playlists"_s).toArray()) {
        SaidPlaylist playlist{value[u"name"_s].toString().simplified(), {}};
        for (const QJsonValue& path : value[u"paths"_s].toArray())
            if (path.isString() && !path.toString().isEmpty())
                playlist.paths.append(path.toString());
        if (!playlist.name.isEmpty())
            file.playlists.push_back(std::move(playlist));
    }
    return file;
}

SaidFile saidFileOf(const TrackRows& rows, const AllSaid& said,
                    const std::vector<Playlist>& playlists) {
    SaidFile file;
    QSet<QString> listed;
    for (const Playlist& playlist : playlists) {
        SaidPlaylist& to = file.playlists.emplace_back();
        to.name = playlist.name;
        to.paths = QStringList(playlist.trackPaths.cbegin(), playlist.trackPaths.cend());
        listed.unite(QSet<QString>(to.paths.cbegin(), to.paths.cend()));
    }
    QHash<SoundIdentity, Said> away = said.ofSounds;
    for (const TrackPtr& track : rows) {
        const QString path = track->path();
        away.remove(track->identity);
        const Said ofPath{said.loved.contains(path), said.ratings.value(path),
                          said.plays.value(path), said.lastPlayed.value(path)};
        if (ofPath != Said() || listed.contains(path))
            file.tracks.push_back(
                {path, track->identity, track->title, track->artist, track->album, ofPath});
    }
    std::vector<SoundIdentity> identities(away.keyBegin(), away.keyEnd());
    std::sort(identities.begin(), identities.end());
    for (const SoundIdentity& identity : identities)
        if (away.value(identity) != Said())
            file.tracks.push_back({{}, identity, {}, {}, {}, away.value(identity)});
    return file;
}

SaidPlan saidPlanOf(SaidFile file, const TrackRows& rows, qint64 now) {
    QHash<SoundIdentity, QStringList> pathsOfSounds;
    QHash<QString, SoundIdentity> soundOfPath;
    for (const TrackPtr& track : rows) {
        const QString path = track->path();
        soundOfPath.insert(path, track->identity);
        if (track->identity.isKnown())
            pathsOfSounds[track->identity].append(path);
    }
    const auto pathsHere = [&](const SaidEntry& entry) {
        const QStringList paths =
            entry.identity.isKnown() ? pathsOfSounds.value(entry.identity) : QStringList();
        const auto there = soundOfPath.constFind(entry.path);
        const bool isSound =
            entry.identity.isKnown() && there != soundOfPath.cend() && there->isKnown();
        return paths.isEmpty() && there != soundOfPath.cend() && !isSound ? QStringList(entry.path)
                                                                          : paths;
    };
    SaidPlan plan;
    QHash<QString, QString> pathHere;
    for (SaidEntry& entry : file.tracks) {
        if (entry.said.lastPlayed > now)
            entry.said.lastPlayed = 0;
        const QStringList paths = pathsHere(entry);
        ++(paths.isEmpty() ? plan.away : plan.found);
        for (const QString& path : paths)
            plan.ofPaths.emplace_back(path, entry.said);
        if (entry.identity.isKnown() && entry.said != Said())
            plan.ofSounds.emplace_back(entry.identity, entry.said);
        if (!paths.isEmpty() && !paths.contains(entry.path))
            pathHere.insert(entry.path, paths.first());
    }
    for (const SaidPlaylist& playlist : file.playlists) {
        SaidPlaylist& here = plan.playlists.emplace_back();
        here.name = playlist.name;
        for (const QString& path : playlist.paths)
            here.paths.append(pathHere.value(path, path));
    }
    return plan;
}

} // namespace halvane
