// SPDX-License-Identifier: MIT
#include "library/user/playlists.h"

#include "library/user/said.h"
#include "library/user/settings_keys.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace halvane {

namespace {

std::optional<Playlist> decodedPlaylist(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    const QJsonValue id = object["id"_L1];
    const QJsonValue name = object["name"_L1];
    const QJsonValue paths = object["trackPaths"_L1];
    if (!id.isString() || !name.isString() || !paths.isArray())
        return std::nullopt;
    Playlist playlist;
    playlist.id = QUuid::fromString(id.toString());
    playlist.name = name.toString();
    if (playlist.id.isNull())
        return std::nullopt;
    for (const QJsonValue path : paths.toArray()) {
        if (!path.isString())
            return std::nullopt;
        playlist.trackPaths.push_back(path.toString());
    }
    return playlist;
}

using Places = std::vector<Playlists::Place>::const_iterator;

// Of one playlist. Paths that it holds again are left out.
std::vector<QString> pathsWith(const std::vector<QString>& paths, Places place, Places end) {
    const QSet<QString> known(paths.cbegin(), paths.cend());
    std::vector<QString> all;
    all.reserve(paths.size() + static_cast<std::size_t>(end - place));
    auto staying = paths.cbegin();
    for (; place != end; ++place) {
        if (known.contains(place->path))
            continue;
        while (all.size() < place->index && staying != paths.cend())
            all.push_back(*staying++);
        all.push_back(place->path);
    }
    all.insert(all.end(), staying, paths.cend());
    return all;
}

} // namespace

QByteArray encodedPlaylists(const std::vector<Playlist>& playlists) {
    QJsonArray array;
    for (const Playlist& playlist : playlists) {
        QJsonArray paths;
        for (const QString& path : playlist.trackPaths)
            paths.append(path);
        array.append(QJsonObject{{u"id"_s, playlist.id.toString(QUuid::WithoutBraces).toUpper()},
                                 {u"name"_s, playlist.name},
                                 {u"trackPaths"_s, paths}});
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<std::vector<Playlist>> decodedPlaylists(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    std::vector<Playlist> playlists;
    for (const QJsonValue value : document.array()) {
        auto playlist = decodedPlaylist(value);
        if (!playlist)
            return std::nullopt;
        playlists.push_back(std::move(*playlist));
    }
    return playlists;
}

Playlists::Playlists(Preferences& preferences, QObject* parent)
    : QAbstractListModel(parent)
    , m_preferences(preferences) {
}

void Playlists::restore() {
    assertOwnThread(*this);
    const auto stored = m_preferences.blob(SettingsKey::playlists);
    auto playlists = stored ? decodedPlaylists(*stored) : std::nullopt;
    if (!playlists)
        return;
    beginResetModel();
    m_playlists = std::move(*playlists);
    endResetModel();
    persistPlaylists();
}

void Playlists::persistPlaylists() {
    m_preferences.setBlob(SettingsKey::playlists, encodedPlaylists(m_playlists));
}

std::optional<std::size_t> Playlists::rowOf(const QUuid& id) const {
    const auto found = std::find_if(m_playlists.cbegin(), m_playlists.cend(),
                                    [&](const Playlist& playlist) { return playlist.id == id; });
    return found == m_playlists.cend() ? std::nullopt
                                       : std::optional<std::size_t>(found - m_playlists.cbegin());
}

const Playlist* Playlists::find(const QUuid& id) const {
    const auto row = rowOf(id);
    return row ? &m_playlists[*row] : nullptr;
}

QUuid Playlists::createPlaylist(const QString& named) {
    assertOwnThread(*this);
    Playlist playlist;
    playlist.name = named.trimmed();
    if (playlist.name.isEmpty())
        return {};
    const QUuid id = playlist.id;
    beginInsertRows({}, rowCount(), rowCount());
    m_playlists.push_back(std::move(playlist));
    endInsertRows();
    persistPlaylists();
    return id;
}

QUuid Playlists::addPlaylist(const QString& name, const QStringList& paths) {
    const QUuid id = createPlaylist(freeName(name.trimmed()));
    addTrackPaths(paths, id);
    return id;
}

QString Playlists::freeName(const QString& name) const {
    QSet<QString> taken;
    for (const Playlist& playlist : m_playlists)
        taken.insert(playlist.name);
    QString free = name;
    for (int number = 2; taken.contains(free); ++number)
        free = name + u' ' + QString::number(number);
    return free;
}

void Playlists::renamePlaylist(const QUuid& id, const QString& to) {
    assertOwnThread(*this);
    const QString name = to.trimmed();
    const auto row = rowOf(id);
    if (name.isEmpty() || !row)
        return;
    m_playlists[*row].name = name;
    persistPlaylists();
    const QModelIndex changed = index(static_cast<int>(*row));
    Q_EMIT dataChanged(changed, changed, {Qt::DisplayRole, NameRole});
    Q_EMIT nameChanged(id);
}

void Playlists::deletePlaylist(const QUuid& id) {
    assertOwnThread(*this);
    const auto row = rowOf(id);
    if (!row)
        return;
    Q_EMIT deleting(id);
    beginRemoveRows({}, static_cast<int>(*row), static_cast<int>(*row));
    m_playlists.erase(m_playlists.begin() + static_cast<std::ptrdiff_t>(*row));
    endRemoveRows();
    persistPlaylists();
    Q_EMIT deleted(id);
}

void Playlists::addTrackPaths(const QStringList& paths, const QUuid& toPlaylist) {
    assertOwnThread(*this);
    const auto row = rowOf(toPlaylist);
    if (!row || paths.isEmpty())
        return;
    std::vector<QString>& held = m_playlists[*row].trackPaths;
    QSet<QString> known(held.cbegin(), held.cend());
    const std::size_t before = held.size();
    for (const QString& path : paths) {
        if (!known.contains(path)) {
            known.insert(path);
            held.push_back(path);
        }
    }
    if (held.size() == before)
        return;
    persistPlaylists();
    pathsChanged(*row);
}

void Playlists::removeTrackPath(const QString& path, const QUuid& fromPlaylist) {
    removeTrackPaths({path}, fromPlaylist);
}

void Playlists::removeTrackPaths(const QStringList& paths, const QUuid& fromPlaylist) {
    assertOwnThread(*this);
    const auto row = rowOf(fromPlaylist);
    if (!row)
        return;
    Q_EMIT removingPaths(paths, fromPlaylist);
    const QSet<QString> gone(paths.cbegin(), paths.cend());
    if (std::erase_if(m_playlists[*row].trackPaths,
                      [&](const QString& path) { return gone.contains(path); }) == 0)
        return;
    persistPlaylists();
    pathsChanged(*row);
}

void Playlists::removePaths(const QSet<QString>& paths) {
    assertOwnThread(*this);
    std::vector<std::size_t> changed;
    for (std::size_t row = 0; row < m_playlists.size(); ++row) {
        const auto gone = std::erase_if(m_playlists[row].trackPaths,
                                        [&](const QString& path) { return paths.contains(path); });
        if (gone > 0)
            changed.push_back(row);
    }
    storeChanged(changed);
}

void Playlists::storeChanged(const std::vector<std::size_t>& rows) {
    if (rows.empty())
        return;
    persistPlaylists();
    for (const std::size_t row : rows)
        pathsChanged(row);
}

void Playlists::putStandIns(
    const std::function<std::optional<QString>(const QString& path)>& standIn) {
    assertOwnThread(*this);
    std::vector<std::size_t> changed;
    for (std::size_t row = 0; row < m_playlists.size(); ++row) {
        if (auto paths = withStandIns(m_playlists[row].trackPaths, standIn)) {
            m_playlists[row].trackPaths = *std::move(paths);
            changed.push_back(row);
        }
    }
    storeChanged(changed);
}

std::vector<Playlists::Place> Playlists::placesOf(const QSet<QString>& paths) const {
    std::vector<Place> places;
    for (const Playlist& playlist : m_playlists) {
        for (std::size_t index = 0; index < playlist.trackPaths.size(); ++index) {
            if (paths.contains(playlist.trackPaths[index]))
                places.push_back({playlist.id, index, playlist.trackPaths[index]});
        }
    }
    return places;
}

void Playlists::putBack(const std::vector<Place>& places) {
    assertOwnThread(*this);
    std::vector<std::size_t> changed;
    for (auto place = places.cbegin(); place != places.cend();) {
        const QUuid id = place->playlist;
        const auto end =
            std::find_if(place, places.cend(), [&](const Place& p) { return p.playlist != id; });
        if (const auto row = rowOf(id)) {
            m_playlists[*row].trackPaths = pathsWith(m_playlists[*row].trackPaths, place, end);
            changed.push_back(*row);
        }
        place = end;
    }
    storeChanged(changed);
}

void Playlists::putBack(std::size_t row, const Playlist& playlist) {
    assertOwnThread(*this);
    const std::size_t at = std::min(row, m_playlists.size());
    beginInsertRows({}, static_cast<int>(at), static_cast<int>(at));
    m_playlists.insert(m_playlists.begin() + static_cast<std::ptrdiff_t>(at), playlist);
    endInsertRows();
    persistPlaylists();
    Q_EMIT cameBack(playlist.id);
}

void Playlists::pathsChanged(std::size_t row) {
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed, {TrackCountRole});
    Q_EMIT trackPathsChanged(m_playlists[row].id);
}

int Playlists::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_playlists.size());
}

QVariant Playlists::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Playlist& playlist = m_playlists[static_cast<std::size_t>(index.row())];
    switch (role) {
    case PlaylistIdRole:
        return playlist.id;
    case Qt::DisplayRole:
    case NameRole:
        return playlist.name;
    case TrackCountRole:
        return static_cast<int>(playlist.trackPaths.size());
    default:
        return {};
    }
}

QHash<int, QByteArray> Playlists::roleNames() const {
    return {{PlaylistIdRole, "playlistId"}, {NameRole, "name"}, {TrackCountRole, "trackCount"}};
}

} // namespace halvane
