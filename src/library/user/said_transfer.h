// SPDX-License-Identifier: MIT
#pragma once

#include "library/user/said_file.h"
#include "platform/serial_worker.h"

#include <QObject>

namespace halvane {

class FileChooser;
class LanguageSetting;
class Playlists;
class SoundMemory;
class StatusLine;
class TrackUserData;

/// What a SaidTransfer works on.
struct SaidTransferNeeds {
    const LibraryStore& store;
    TrackUserData& userData;
    SoundMemory& sounds;
    Playlists& playlists;
    FileChooser& fileChooser;
    StatusLine& status;
    const LanguageSetting& language;
};

/// Writes what the listener has said of tracks to one file, and takes such a file in: from another
/// machine, or from before. What is taken in is joined with what is said here, so that taking it in
/// again changes nothing. Main thread.
class SaidTransfer : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    explicit SaidTransfer(const SaidTransferNeeds& needs, QObject* parent = nullptr);

    /// Asks in the desktop's panel where to.
    void exportSaid();
    /// Asks there which files.
    void importSaid();

  Q_SIGNALS:
    /// A file was written or taken in, or could not be.
    void ended();

  private:
    void write(const QString& path);
    void read(const QString& path);
    void take(SaidPlan plan);
    void takeStep();
    void takePlaylists(const std::vector<SaidPlaylist>& playlists);
    [[nodiscard]] AllSaid allSaid() const;

    const SaidTransferNeeds m_needs;
    SaidPlan m_plan; ///< what is left of it
    SerialWorker m_worker;
};

} // namespace halvane
