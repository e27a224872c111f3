// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/transport_engine.h"
#include "platform/clock.h"

#include <QObject>

namespace halvane {

/// The position as it is shown. It is read from the engine four times a second while a track plays
/// and somebody watches, and not at all otherwise. Times are in seconds, fractions from 0 to 1.
/// Main thread.
class ProgressClock : public QObject {
    Q_OBJECT
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString elapsedTime READ elapsedTime NOTIFY elapsedTimeChanged)

  public:
    /// The engine and the clock must outlive this.
    ProgressClock(const TransportEngine& engine, Clock& clock, QObject* parent = nullptr);

    [[nodiscard]] double progress() const { return m_progress; }
    [[nodiscard]] const QString& elapsedTime() const { return m_elapsedTime; }
    [[nodiscard]] double elapsedSeconds() const { return m_elapsedSeconds; }

    /// Starts the quarter-second beat, also if it runs already.
    void start();
    void stop();
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// A view that comes into sight calls beginWatching, and endWatching when it goes out of sight.
    Q_INVOKABLE void beginWatching();
    Q_INVOKABLE void endWatching();
    /// Reads the engine. Does nothing while the user drags the slider or no file is loaded.
    void tick();

    /// Shows a position and ends dragging.
    void show(double progress, double elapsedSeconds);
    /// Shows the end of the queue: a full line and the text of the last track's length.
    void showEnd(const QString& duration);
    /// The slider is dragged to a fraction of a track. The clock leaves it alone until the next
    /// show.
    void scrub(double fraction, std::optional<double> durationSeconds);

  Q_SIGNALS:
    void progressChanged();
    void elapsedTimeChanged();

  private:
    void setProgress(double progress);
    void setElapsedTime(const QString& text);
    void updateBeat();

    const TransportEngine& m_engine;
    Clock& m_clock;
    double m_progress = 0;
    QString m_elapsedTime;
    double m_elapsedSeconds = 0;
    bool m_isScrubbing = false;
    bool m_isRunning = false;
    int m_watchers = 0;
    std::unique_ptr<Timer> m_beat; ///< there while it runs and is watched
};

} // namespace halvane
