// SPDX-License-Identifier: MIT
#pragma once

#include "library/import/folder_changes.h"
#include "platform/folders/folder_watch.h"
#include "platform/serial_worker.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace halvane {

class Clock;
class FileAvailability;
class Importer;
class LanguageSetting;
class Preferences;
class Tidying;

/// What FollowedFolders works on.
struct FollowedFoldersNeeds {
    Preferences& preferences;
    const LibraryStore& store;
    const FileAvailability& files;
    Importer& importer;
    Tidying& tidying;
    const LanguageSetting& language;
    ReadingNeeds reading;
};

/// Follows the folders that the user gave: files that come to them come into the library by
/// themselves, and those that change are read again. They are compared with the library at the
/// start, and watched from then on. What can't be watched is compared when the user comes back to
/// the program, and every now and then. A track that the user takes out of the library does not
/// come back by itself while its file stays. Main thread.
class FollowedFolders : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isFollowing READ isFollowing WRITE setFollowing NOTIFY isFollowingChanged)
    Q_PROPERTY(QStringList folders READ folders NOTIFY foldersChanged)

  public:
    /// All references must outlive it.
    explicit FollowedFolders(FollowedFoldersNeeds needs, QObject* parent = nullptr);

    void restore();
    /// The library is whole, and agrees with the files that it knows.
    void begin();
    /// Compares what can't be watched: the user has come back.
    void lookAround();
    /// The user has given these files and folders.
    void follow(const QStringList& roots);
    /// The user has stopped the import of these.
    void giveUp(const QStringList& roots);

    /// Whether new files appear by themselves.
    [[nodiscard]] bool isFollowing() const { return m_isFollowing; }
    void setFollowing(bool isFollowing);
    /// Standardized paths, none of them in another.
    [[nodiscard]] const QStringList& folders() const { return m_folders; }
    /// How many of the library's tracks lie in a folder.
    [[nodiscard]] Q_INVOKABLE int trackCount(const QString& folder) const;
    /// Compares every folder with the library.
    Q_INVOKABLE void rescan();
    Q_INVOKABLE void stopFollowing(const QString& folder);
    /// The tracks in it leave the library, too.
    Q_INVOKABLE void removeWithTracks(const QString& folder);

  Q_SIGNALS:
    void isFollowingChanged();
    void foldersChanged();
    /// Known files were read again.
    void readAgain(const std::vector<halvane::LoadedItem>& items);
    /// Known files may be missing now, or have come back.
    void filesWentOrCame();
    /// A comparison has ended.
    void compared();

  private:
    [[nodiscard]] QStringList tracksIn(const QString& folder) const;
    void setFolders(const QStringList& folders);
    void watch();
    [[nodiscard]] QStringList unseen() const;
    void compareUnseen();
    void hear(const FolderNews& news);
    void lookAt(const FolderLook& look);
    void lookWhenIdle();
    void take(const FolderChanges& changes);
    void leaveOut(const QStringList& removed);
    void letBack(const TrackRows& came);

    const FollowedFoldersNeeds m_needs;
    bool m_isFollowing = true;
    bool m_isBegun = false;
    QStringList m_folders;
    QStringList m_lately;    ///< those that the running imports have brought
    QSet<QString> m_leftOut; ///< files that the user took out of the library
    FolderLook m_waiting;    ///< to be looked at when no import runs
    FolderWatch m_watch;
    QTimer m_nowAndThen;
    QElapsedTimer m_lastLook;
    SerialWorker m_disk; ///< asks what the user gave
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
