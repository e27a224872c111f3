// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"

#include <QObject>
#include <QString>

#include <optional>

namespace halvane {

/// What the transport needs of the playback engine, so that its rules can be tried without sound:
/// it plays one file at a time from a chosen position, with an optional second file queued behind
/// it that follows without a gap. Times are in seconds, gains in dB. Main thread. No operation
/// waits for a disk, and no signal is emitted from inside an operation.
class TransportEngine : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Stops and forgets everything, and begins to open a file, without scheduling anything. One of
    /// opened, foundInCloud and openFailed tells what became of it, unless open or unload is called
    /// again by then.
    virtual void open(const QString& path) = 0;
    /// Stops and forgets everything.
    virtual void unload() = 0;
    /// Whether a file has been opened.
    [[nodiscard]] virtual bool hasFile() const = 0;
    /// Length of the file; 0 without one.
    [[nodiscard]] virtual double durationSeconds() const = 0;

    /// Schedules the file from a position, cut to the file's length; drops a pre-scheduled file.
    virtual Result<> scheduleSegment(double fromSeconds, bool andPlay) = 0;
    /// Stops the sound and keeps the position.
    virtual void pause() = 0;
    /// Goes on after a pause.
    virtual Result<> resume() = 0;
    /// The engine's own playing flag.
    [[nodiscard]] virtual bool isPlaying() const = 0;
    /// What is to be heard now has not come from the disk yet.
    [[nodiscard]] virtual bool isWaitingForDisk() const = 0;
    /// Position heard in the current file.
    [[nodiscard]] virtual double elapsedSeconds() const = 0;

    /// Opens a file and then queues it behind the current one, to be played under a gain of its own
    /// from its first sample on, if it can follow without a gap and does not live in the cloud.
    /// False where nothing is done because nothing plays that it could follow, or another file is
    /// queued or being opened.
    virtual bool prescheduleNextIfCompatible(const QString& path, double gain) = 0;
    /// Changes the gain of the pre-scheduled file, also where its sound has been decoded. False
    /// when it is not this one, or is still being opened.
    virtual bool setNextGain(const QString& path, double dB) = 0;
    /// Makes the pre-scheduled file current, whose gain is the track gain then, and gives its path;
    /// none when there is none.
    virtual std::optional<QString> adoptPrescheduledTrack() = 0;
    /// Drops a pre-scheduled file, or one being opened, keeping the position and the playing state.
    virtual void invalidatePreschedule() = 0;

    /// The gain of the current file, heard at once, and of the one that is scheduled next.
    virtual void setTrackGain(double dB) = 0;
    /// 0...1, clamped when applied.
    virtual void setVolume(double volume) = 0;

  Q_SIGNALS:
    /// The file that open was given is there and can be scheduled.
    void opened();
    /// The file lives in the cloud and has been left alone: opening it would have downloaded it.
    void foundInCloud();
    /// The same of the file that prescheduleNextIfCompatible was given.
    void nextFoundInCloud(const QString& path);
    /// The file can't be opened, or not be played.
    void openFailed(const QString& reason);

    /// The current file, or chain, has been heard to its end.
    void trackEnded();
    /// Playback could not be taken up again.
    void playbackInterrupted(const QString& reason);
    /// The stream was made again and playback goes on; a pre-scheduled file has been dropped.
    void graphRebuilt();
    /// The system wants silence, for a call perhaps (true), or no longer does (false). The engine
    /// itself plays on.
    void pauseRequested(bool pause);
};

} // namespace halvane
