// SPDX-License-Identifier: MIT
#pragma once

#include "audio/files/audio_file.h"

#include <QObject>
#include <QThreadPool>

#include <functional>

namespace halvane {

/// Opens one file at a time on a thread of its own: a slow disk, or a long MP3 that does not tell
/// its length, would hold the main thread up. Main thread.
class FileOpener : public QObject {
  public:
    using Done = std::function<void(AudioFile::Opened)>;

    explicit FileOpener(QObject* parent = nullptr);
    /// Waits for the file that is being opened.
    ~FileOpener() override;

    /// `done` gets the outcome, from the event loop, unless this is called again or cancelled by
    /// then.
    void open(const QString& path, Done done);
    void cancel();
    /// Between open and its outcome.
    bool isOpening() const { return static_cast<bool>(m_done); }

  private:
    QThreadPool m_worker;
    Done m_done;              ///< of the present request
    quint64 m_generation = 0; ///< of the present request; outcomes of earlier ones are dropped
};

} // namespace halvane
