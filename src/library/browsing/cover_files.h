// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/cover_survey.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <memory>

namespace halvane {

class CachePersistence;
class CatalogPublisher;
class CoverStore;
class PlayQueue;

/// Keeps covers up with their files, which others add, replace, rename and delete. A worker looks
/// at the folders and files when it is asked to, and only then: nothing wakes a disk by itself.
/// Main thread.
class CoverFiles : public QObject {
    Q_OBJECT
    /// How often something has changed. A binding that reads it follows revisionOf().
    Q_PROPERTY(int changes READ changes NOTIFY changesChanged)

  public:
    /// All references must outlive it.
    CoverFiles(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
               CachePersistence& persistence, std::shared_ptr<const CoverStore> covers,
               QObject* parent = nullptr);

    /// Looks at the disk. A look that is still under way is followed by another.
    void refresh();
    /// Looks at what is behind the covers of one album. While a look is under way, the last album
    /// that was asked for waits.
    void refreshAlbum(const QString& id);

    [[nodiscard]] int changes() const { return m_changes; }
    /// How often there has been another picture behind a key of the cover store.
    Q_INVOKABLE [[nodiscard]] int revisionOf(const QString& key) const;

  Q_SIGNALS:
    void changesChanged();
    /// There are other pictures behind these keys. An empty key stands for tracks that have lost
    /// their covers.
    void changed(const QSet<QString>& keys);
    /// A look at the whole library has ended, and what it found is published.
    void refreshed();

  private:
    void lookAtAlbum();
    void publish(CoverSurvey survey);
    void replaceCovers(const QHash<QString, std::optional<FileUrl>>& covers, QSet<QString>& keys);

    LibraryStore& m_store;
    CatalogPublisher& m_catalog;
    PlayQueue& m_queue;
    CachePersistence& m_persistence;
    const std::shared_ptr<const CoverStore> m_covers;
    QHash<QString, FolderDates> m_folders; ///< as CoverSurvey has them
    QHash<QString, int> m_revisions;       ///< by key
    int m_changes = 0;
    bool m_isLooking = false;
    bool m_isWanted = false; ///< another look
    bool m_isLookingAtAlbum = false;
    QString m_wantedAlbum; ///< to be looked at next; empty: none
    SerialWorker m_worker{SerialWorker::Priority::low};
};

} // namespace halvane
