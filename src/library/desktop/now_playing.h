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
class TransportEngine;

/// Tells the desktop what plays and does what its media controls ask. Main thread; pictures are
/// read by a worker, and what it found is published when it is there.
class NowPlaying : public QObject {
    Q_OBJECT

  public:
    /// `isApplicationActive` says whether one of our windows has the keyboard. Pictures that lie
    /// inside audio files are written to `artworkFolder` for the desktop to read. All references
    /// must outlive this object.
    NowPlaying(MediaControls& controls, Notifications& notifications, Transport& transport,
               const PlayQueue& queue, const TransportEngine& engine,
               std::function<bool()> isApplicationActive, const QString& artworkFolder,
               QObject* parent = nullptr);

    /// Registers for what the desktop may ask. Once, at start-up.
    void setupRemoteCommands();
    /// Publishes the playing entry as it is now. To be called after every change of the playing
    /// state, the entry or the position that playing on does not explain.
    void updateNowPlayingInfo();
    /// The position jumped: a seek, or anything but playing on, within one entry. Publishes too.
    void positionJumped();
    /// Repeat, shuffle, volume or the queue changed.
    void updateModes();
    /// Shows the entry as a notification unless the program is in front.
    void notifyTrackChange(const QueueItem& item);

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
    const TransportEngine& m_engine;
    std::function<bool()> m_isApplicationActive;
    QString m_artworkFolder;
    std::optional<CachedArtwork> m_nowPlayingArtworkCache; ///< of the last entry that was asked for
    QString m_resolving;                 ///< path of the track whose picture a worker looks for
    std::optional<QueueItem> m_toNotify; ///< waits for that picture
    SerialWorker m_worker;
};

} // namespace halvane
