// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "library/import/dropped_url_collector.h"
#include "library/import/given_playlists.h"
#include "library/import/reading_needs.h"
#include "platform/serial_worker.h"

#include <QObject>
#include <QStringList>
#include <QVariant>

#include <deque>
#include <functional>

namespace halvane {

class CatalogPublisher;
class Clock;
class FileChooser;
class ImportedPaths;
class LanguageSetting;
class PlayQueue;
class Playlists;
class StatusLine;

/// Asks one item of a drop for its address. It may answer on any thread.
using DroppedItem = std::function<void(std::function<void(const QVariant&)> answer)>;

/// Brings files into the library and the queue. A worker searches folders and reads files, one
/// import after the other. Tracks come in small portions, and each portion is stored. Main thread.
class Importer : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isImporting READ isImporting NOTIFY isImportingChanged)
    Q_PROPERTY(double importProgress READ importProgress NOTIFY
                   importProgressChanged) // below 0: no files have been found so far

  public:
    /// All references must outlive it. Its destruction ends a running import, whose tracks so far
    /// stay.
    Importer(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
             ImportedPaths& importedPaths, Playlists& playlists, FileChooser& fileChooser,
             Clock& clock, StatusLine& status, const LanguageSetting& language, ReadingNeeds needs,
             QObject* parent = nullptr);

    /// Shows the desktop's panel and imports what is chosen there.
    Q_INVOKABLE void chooseAndImportMusic(bool files, bool directories);
    /// Imports files and folders, and makes playlists of lists. Every way of importing comes here.
    Q_INVOKABLE void importDroppedURLs(const QList<QUrl>& urls);
    /// Imports files that have come to followed folders, after all that the user gives. They don't
    /// play. They join a queue that holds the whole library.
    void takeIn(const QStringList& files);
    /// The user has chosen something else: what was given before comes, and does not play.
    void giveWay() { ++m_choices; }
    /// Ends the running import and drops those that wait. What has been read stays.
    Q_INVOKABLE void stopImport();
    /// Asks the items of a drop for their addresses and imports those when all have answered. Gives
    /// whether there were any items.
    bool importDroppedProviders(const std::vector<DroppedItem>& items);

    /// The part of the files that has been read, from 0 to 1; below 0 while folders are searched,
    /// and when no import runs.
    [[nodiscard]] double importProgress() const { return m_progress; }
    [[nodiscard]] bool isImporting() const { return m_isRunning; }

  Q_SIGNALS:
    void isImportingChanged();
    void importProgressChanged();
    /// The user gave these files and folders.
    void rootsGiven(const QStringList& roots);
    /// The user has stopped the import of these.
    void rootsGivenUp(const QStringList& roots);
    /// Tracks are about to be added.
    void adding();
    /// An entry of the queue is to be played as if the user had asked for it.
    void playAsked(const QUuid& entry);
    /// Nothing but lists was given, and this playlist, which the first of them has become, is to
    /// be played.
    void playlistAsked(const QUuid& playlist);
    /// An import has brought tracks and is over.
    void imported();
    /// No import runs or waits.
    void idle();

  private:
    struct Found {
        std::size_t files;
        std::size_t newFiles;
        std::size_t leftOut; ///< of other kinds
        QString firstPath;   ///< the known one where the file is known under another
        QStringList missing; ///< the names of roots that are not there
        GivenPlaylists playlists;
        bool isListsAlone; ///< nothing else was given
    };
    struct Run;
    enum class From {
        user,
        followedFolder,
    };
    struct Given {
        QStringList roots;
        From from;
        int choices; ///< that had been made before
    };

    void give(const QStringList& roots, From from);
    void startNext();
    void take(const Found& found);
    void addPlaylists(const Found& found);
    [[nodiscard]] bool playsList() const;
    void finishTakingIn();
    [[nodiscard]] QString resultText(qint64 added) const;
    void addRows(const TrackRows& rows);
    void playFirst();
    void askUnlessChosen(const std::function<void()>& ask);
    [[nodiscard]] QString report(const QString& result) const;
    void finish();
    void end();
    void setRunning(bool isRunning);
    void setProgress(double progress);

    LibraryStore& m_store;
    CatalogPublisher& m_catalog;
    PlayQueue& m_queue;
    ImportedPaths& m_importedPaths;
    Playlists& m_playlists;
    FileChooser& m_fileChooser;
    Clock& m_clock;
    StatusLine& m_status;
    const LanguageSetting& m_language;
    const ReadingNeeds m_needs;
    std::deque<Given> m_waiting;
    Given m_running;   ///< or ran last
    int m_choices = 0; ///< how often the user has chosen what to play
    bool m_isRunning = false;
    double m_progress = -1;
    double m_rebuiltAt = 0;
    QUuid m_first; ///< the entry that is still to be played, or null
    qint64 m_added = 0;
    qint64 m_takenIn = 0; ///< and not told of
    qint64 m_skipped = 0;
    qint64 m_leftOut = 0;
    QStringList m_missing;    ///< the names of what was given and is not there
    QString m_playlistsText;  ///< what lists have become, or empty
    QStringList m_unreadable; ///< the names of lists
    bool m_isListsAlone = false;
    QUuid m_playlist; ///< that the first list has become, or null
    Mailbox m_drops;  ///< for the items of a drop, which answer on any thread
    SerialWorker m_worker;
};

} // namespace halvane
