// SPDX-License-Identifier: MIT
#pragma once

#include "model/queue_item.h"
#include "platform/mpris/media_controls.h"
#include "platform/serial_worker.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace halvane {

class Notifications;
class PlayQueue;
class Transport;

/// Tells the desktop what plays and does what its media controls ask. A worker reads the pictures,
/// which are published when they are there. Main thread.
class NowPlaying : public QObject {
    Q_OBJECT

  public:
    /// `isApplicationActive` says whether one of our windows has the keyboard. Pictures from inside
    /// audio files are written to `artworkFolder` for the desktop to read. All references must
    /// outlive it.
    NowPlaying(MediaControls& controls, Notifications& notifications, Transport& transport,
               const PlayQueue& queue, std::function<bool()> isApplicationActive,
               const QString& artworkFolder, QObject* parent = nullptr);

    /// Registers for what the desktop may ask. To be called once, at the start.
    void setupRemoteCommands();
    /// Publishes the playing entry as it is now. To be called after every change of the entry, the
    /// playing state, or the position other than by playing on.
    void updateNowPlayingInfo();
    /// The position moved within one entry other than by playing on. Publishes the entry too.
    void positionJumped();
    /// Repeat, shuffle, volume or the queue changed.
    void updateModes();
    /// Shows the entry as a notification unless the program is in front or, with its first track,
    /// about to be.
    void notifyTrackChange(const QueueItem& item);
    /// The playing entry has another picture.
    void artworkChanged();
    /// The program came to the front.
    void applicationActivated() { m_isComingUp = false; }

  Q_SIGNALS:
    /// The desktop asks for a file to be opened.
    void fileAsked(const QString& path);

  private:
    struct CachedArtwork {
        QString path; ///< of the track
        std::optional<QString> file;
    };

    CommandResult changePlaybackPosition(double seconds);
    std::optional<QString> nowPlayingArtwork(const QueueItem& item);
    void resolveArtwork(const QueueItem& item);
    void resolved(const QString& path, const std::optional<QString>& file);
    void post(const QueueItem& item, const std::optional<QString>& image);

    MediaControls& m_controls;
    Notifications& m_notifications;
    Transport& m_transport;
    const PlayQueue& m_queue;
    std::function<bool()> m_isApplicationActive;
    bool m_isComingUp = true; ///< never in front so far, and nothing has played
    QString m_artworkFolder;
    std::optional<CachedArtwork> m_nowPlayingArtworkCache; ///< of the last entry that was asked for
    QString m_resolving;                 ///< path of the track whose picture the worker looks for
    std::optional<QueueItem> m_toNotify; ///< the entry that waits for that picture
    SerialWorker m_worker;
};

} // namespace halvane
