// SPDX-License-Identifier: MIT
// The two interfaces of the MPRIS object as the bus sees them. Internal to MprisControls.
#pragma once

#include "platform/mailbox.h"
#include "platform/mpris/mpris_state.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QDBusObjectPath>

#include <functional>

namespace halvane {

/// What both interfaces work on.
struct MprisShared {
    MprisState state;
    MediaCommandHandlers handlers;
    WindowCommandHandlers windows;
    QString connection;                              ///< its name
    std::function<bool(const QString& path)> exists; ///< may wait for a disk
};

class MprisRootAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ yes)
    // The full-screen player fills the window, and the window keeps its size.
    Q_PROPERTY(bool Fullscreen READ no)
    Q_PROPERTY(bool CanSetFullscreen READ no)
    Q_PROPERTY(bool CanRaise READ yes)
    Q_PROPERTY(bool HasTrackList READ no)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ uriSchemes)
    Q_PROPERTY(QStringList SupportedMimeTypes READ mimeTypes)

  public:
    MprisRootAdaptor(QObject* object, MprisShared& shared)
        : QDBusAbstractAdaptor(object)
        , m_shared(shared) {}

    [[nodiscard]] bool yes() const { return true; }
    [[nodiscard]] bool no() const { return false; }
    [[nodiscard]] QString identity() const;
    [[nodiscard]] QString desktopEntry() const;
    [[nodiscard]] QStringList uriSchemes() const;
    [[nodiscard]] QStringList mimeTypes() const { return mprisMimeTypes(); }

  public Q_SLOTS:
    void Raise();
    void Quit();

  private:
    MprisShared& m_shared;
};

class MprisPlayerAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(QString LoopStatus READ loopStatus WRITE setLoopStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(bool Shuffle READ shuffle WRITE setShuffle)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(double MinimumRate READ rate)
    Q_PROPERTY(double MaximumRate READ rate)
    Q_PROPERTY(bool CanGoNext READ canGoNext)
    Q_PROPERTY(bool CanGoPrevious READ canGoPrevious)
    Q_PROPERTY(bool CanPlay READ canPlay)
    Q_PROPERTY(bool CanPause READ canPause)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ canControl)

  public:
    MprisPlayerAdaptor(QObject* object, MprisShared& shared)
        : QDBusAbstractAdaptor(object)
        , m_shared(shared) {}

    [[nodiscard]] QString playbackStatus() const {
        return mprisPlaybackStatus(m_shared.state.playback);
    }
    [[nodiscard]] QString loopStatus() const { return mprisLoopStatus(m_shared.state.loop); }
    void setLoopStatus(const QString& status);
    [[nodiscard]] double rate() const { return 1.0; }
    void setRate(double rate);
    [[nodiscard]] bool shuffle() const { return m_shared.state.shuffle; }
    void setShuffle(bool shuffle);
    [[nodiscard]] QVariantMap metadata() const { return mprisMetadata(m_shared.state.info); }
    [[nodiscard]] double volume() const { return m_shared.state.volume; }
    void setVolume(double volume);
    [[nodiscard]] qlonglong position() const;
    [[nodiscard]] bool canGoNext() const { return m_shared.state.capabilities.canGoNext; }
    [[nodiscard]] bool canGoPrevious() const { return m_shared.state.capabilities.canGoPrevious; }
    [[nodiscard]] bool canPlay() const { return m_shared.state.capabilities.canPlay; }
    [[nodiscard]] bool canPause() const { return m_shared.state.capabilities.canPause; }
    [[nodiscard]] bool canSeek() const { return m_shared.state.capabilities.canSeek; }
    [[nodiscard]] bool canControl() const { return true; }

  public Q_SLOTS:
    void Next();
    void Previous();
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    void Seek(qlonglong Offset);
    void SetPosition(const QDBusObjectPath& TrackId, qlonglong Position);
    void OpenUri(const QString& Uri, const QDBusMessage& message);

  Q_SIGNALS:
    void Seeked(qlonglong Position);

  private:
    void refuse(const QDBusMessage& message, const QString& why) const;

    MprisShared& m_shared;
    Mailbox m_looks; ///< for what the looks at files have found
};

} // namespace halvane
