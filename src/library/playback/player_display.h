// SPDX-License-Identifier: MIT
#pragma once

#include "model/album.h"
#include "model/queue_item.h"

#include <QObject>

namespace halvane {

class Browsing;
class LanguageSetting;
class PlayQueue;
class ProgressClock;
class TrackUserData;
class Transport;
class ViewState;

/// What every size of player shows of the queue's current entry. Main thread.
class PlayerDisplay : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasCurrentTrack READ hasCurrentTrack NOTIFY currentTrackChanged)
    /// Without texts when there is none.
    Q_PROPERTY(halvane::QueueItem currentTrack READ currentTrack NOTIFY currentTrackChanged)
    Q_PROPERTY(bool isCurrentTrackLoved READ isCurrentTrackLoved NOTIFY isCurrentTrackLovedChanged)
    Q_PROPERTY(
        bool hasCurrentArtworkAlbum READ hasCurrentArtworkAlbum NOTIFY currentArtworkAlbumChanged)
    Q_PROPERTY(halvane::Album currentArtworkAlbum READ currentArtworkAlbum NOTIFY
                   currentArtworkAlbumChanged)
    /// The length beside the progress line, or the time that is left.
    Q_PROPERTY(QString durationDisplay READ durationDisplay NOTIFY durationDisplayChanged)
    Q_PROPERTY(QString queuePositionText READ queuePositionText NOTIFY queuePositionTextChanged)
    Q_PROPERTY(QString queueLeftText READ queueLeftText NOTIFY queueLeftTextChanged)
    Q_PROPERTY(QString queueSourceText READ queueSourceText NOTIFY queueSourceTextChanged)

  public:
    /// All references must outlive it.
    PlayerDisplay(const PlayQueue& queue, const Transport& transport, const ProgressClock& progress,
                  const ViewState& views, const TrackUserData& userData, const Browsing& browsing,
                  const LanguageSetting& language, QObject* parent = nullptr);

    [[nodiscard]] bool hasCurrentTrack() const;
    [[nodiscard]] QueueItem currentTrack() const;
    [[nodiscard]] bool isCurrentTrackLoved() const;
    [[nodiscard]] bool hasCurrentArtworkAlbum() const;
    /// The album whose artwork is shown for what plays, empty without one.
    [[nodiscard]] Album currentArtworkAlbum() const;
    [[nodiscard]] QString durationDisplay() const;
    /// The time at a fraction of the current track's length; empty where that is not known.
    Q_INVOKABLE [[nodiscard]] QString timeAt(double fraction) const;
    [[nodiscard]] QString queuePositionText() const;
    /// How much comes after the current entry. All of it, where nothing is current or shuffle may
    /// play what stands before.
    [[nodiscard]] QString queueLeftText() const;
    [[nodiscard]] QString queueSourceText() const;

  Q_SIGNALS:
    void currentTrackChanged();
    void isCurrentTrackLovedChanged();
    void currentArtworkAlbumChanged();
    void durationDisplayChanged();
    void queuePositionTextChanged();
    void queueLeftTextChanged();
    void queueSourceTextChanged();

  private:
    void followQueue();

    const PlayQueue& m_queue;
    const Transport& m_transport;
    const ProgressClock& m_progress;
    const ViewState& m_views;
    const TrackUserData& m_userData;
    const Browsing& m_browsing;
    const LanguageSetting& m_language;
};

} // namespace halvane
