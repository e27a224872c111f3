// SPDX-License-Identifier: MIT
#pragma once

#include "model/playlist.h"

#include <QAbstractListModel>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace halvane {

class Preferences;

/// The user's playlists, and the list of them that the views show. A playlist is a name and
/// standardized paths in an order. A path that is not in the library stays until it is removed.
/// Every change is stored at once. Main thread.
class Playlists : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role {
        PlaylistIdRole = Qt::UserRole + 1, ///< playlistId: QUuid
        NameRole,                          ///< name
        TrackCountRole,                    ///< trackCount: paths held
    };

    /// Empty until restore. The preferences must outlive it.
    explicit Playlists(Preferences& preferences, QObject* parent = nullptr);

    /// Takes the stored playlists. What can't be decoded is left alone.
    void restore();

    [[nodiscard]] const std::vector<Playlist>& all() const { return m_playlists; }
    /// The playlist of an id, or null. Valid until the next change.
    [[nodiscard]] const Playlist* find(const QUuid& id) const;
    [[nodiscard]] std::optional<std::size_t> rowOf(const QUuid& id) const;

    /// Gives the new playlist's id, or null for a blank name.
    Q_INVOKABLE QUuid createPlaylist(const QString& named);
    /// A playlist with these paths, each once. A name that is taken gets a number. Gives its id.
    QUuid addPlaylist(const QString& name, const QStringList& paths);
    /// Does nothing for a blank name or an unknown id.
    Q_INVOKABLE void renamePlaylist(const QUuid& id, const QString& to);
    Q_INVOKABLE void deletePlaylist(const QUuid& id);
    /// Appends the paths that the playlist doesn't hold yet, each once.
    Q_INVOKABLE void addTrackPaths(const QStringList& paths, const QUuid& toPlaylist);
    /// Removes every occurrence of a path.
    Q_INVOKABLE void removeTrackPath(const QString& path, const QUuid& fromPlaylist);
    Q_INVOKABLE void removeTrackPaths(const QStringList& paths, const QUuid& fromPlaylist);
    /// Removes the paths of tracks that left the library from every playlist.
    void removePaths(const QSet<QString>& paths);

    /// Puts other paths in the places of those that have a stand-in.
    void putStandIns(const std::function<std::optional<QString>(const QString& path)>& standIn);

    /// Where a playlist holds a path, or held it.
    struct Place {
        QUuid playlist;
        std::size_t index = 0;
        QString path;
    };
    /// The places of these paths, ascending in each playlist.
    [[nodiscard]] std::vector<Place> placesOf(const QSet<QString>& paths) const;
    /// Puts paths back to such places, unless their playlist has gone or holds them again.
    void putBack(const std::vector<Place>& places);
    /// Puts a playlist that was deleted back to its row.
    void putBack(std::size_t row, const Playlist& playlist);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    /// A playlist's paths changed.
    void trackPathsChanged(const QUuid& id);
    void nameChanged(const QUuid& id);
    /// The user's wish, before it is done.
    void deleting(const QUuid& id);
    void removingPaths(const QStringList& paths, const QUuid& id);
    void deleted(const QUuid& id);
    /// A playlist that was deleted is back.
    void cameBack(const QUuid& id);

  private:
    [[nodiscard]] QString freeName(const QString& name) const;
    void pathsChanged(std::size_t row);
    void storeChanged(const std::vector<std::size_t>& rows);
    void persistPlaylists();

    Preferences& m_preferences;
    std::vector<Playlist> m_playlists;
};

/// The stored form: a JSON array of objects with "id", "name" and "trackPaths". Pure.
QByteArray encodedPlaylists(const std::vector<Playlist>& playlists);
/// None if any part of it is malformed. Pure.
std::optional<std::vector<Playlist>> decodedPlaylists(const QByteArray& json);

} // namespace halvane
