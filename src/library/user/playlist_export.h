// SPDX-License-Identifier: MIT
#pragma once

#include "platform/serial_worker.h"

#include <QObject>
#include <QUuid>

namespace halvane {

class FileChooser;
class LanguageSetting;
class LibraryStore;
class Playlists;
class StatusLine;

/// Writes playlists as files for other players. Paths that are not in the library are written as
/// well, so that a list that was read and is written again has lost nothing. Main thread.
class PlaylistExport : public QObject {
    Q_OBJECT

  public:
    /// All references must outlive it.
    PlaylistExport(const Playlists& playlists, const LibraryStore& store, FileChooser& fileChooser,
                   StatusLine& status, const LanguageSetting& language, QObject* parent = nullptr);

    /// Asks in the desktop's panel where to. The extension chosen there decides between M3U8 and
    /// XSPF.
    Q_INVOKABLE void exportPlaylist(const QUuid& id);

  Q_SIGNALS:
    /// A file was written, or could not be.
    void ended();

  private:
    void write(const QUuid& id, const QString& file);

    const Playlists& m_playlists;
    const LibraryStore& m_store;
    FileChooser& m_fileChooser;
    StatusLine& m_status;
    const LanguageSetting& m_language;
    SerialWorker m_worker;
};

} // namespace halvane
