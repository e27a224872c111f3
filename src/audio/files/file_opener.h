// SPDX-License-Identifier: MIT
#pragma once

#include "audio/files/audio_file.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <functional>
#include <memory>

namespace halvane {

class CloudFiles;

/// Opens a file on a thread of its own: a slow disk, or a long MP3 that does not tell its length,
/// would hold the main thread up. One that hangs holds up neither the next file nor the end of
/// this. Main thread.
class FileOpener : public QObject {
  public:
    /// What became of a file.
    struct Outcome {
        std::shared_ptr<AudioFile> file; ///< null: it was not opened
        bool isInCloud = false;          ///< it was left alone: opening it would download it
        QString failure;                 ///< why it could not be opened, for the log and the user
    };
    using Done = std::function<void(Outcome)>;

    /// Without cloud files every file counts as lying here.
    explicit FileOpener(std::shared_ptr<const CloudFiles> cloudFiles, QObject* parent = nullptr);

    /// `done` gets the outcome, from the event loop, unless this is called again or cancelled by
    /// then.
    void open(const QString& path, Done done);
    void cancel();
    /// Between open and its outcome.
    [[nodiscard]] bool isOpening() const { return static_cast<bool>(m_done); }

  private:
    const std::shared_ptr<const CloudFiles> m_cloudFiles;
    Done m_done; ///< of the present request
    SerialWorker m_worker;
};

} // namespace halvane
