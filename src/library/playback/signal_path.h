// SPDX-License-Identifier: MIT
#pragma once

#include "model/queue_item.h"

#include <QObject>
#include <QString>

namespace halvane {

/// What the playing entry's sound goes through on its way out: codec, bit depth, and the file's
/// rate with the output's where they differ ("FLAC · 24-bit · 96 kHz → 48 kHz"). Rates in Hz, 0 or
/// less where unknown. Pure, any thread.
QString signalPathDescription(const QueueItem& item, double fileRate, double outputRate);

class AudioPlaybackEngine;
class OutputDevices;
class PlayQueue;
class Transport;

/// The description of the current entry's path, kept as it is now. Main thread.
class SignalPath : public QObject {
    Q_OBJECT
    /// Empty without a current entry.
    Q_PROPERTY(QString signalPathDescription READ signalPathDescription NOTIFY
                   signalPathDescriptionChanged)

  public:
    /// All references must outlive it.
    SignalPath(const PlayQueue& queue, const Transport& transport,
               const AudioPlaybackEngine& engine, const OutputDevices& output,
               QObject* parent = nullptr);

    QString signalPathDescription() const;

  Q_SIGNALS:
    void signalPathDescriptionChanged();

  private:
    const PlayQueue& m_queue;
    const AudioPlaybackEngine& m_engine;
};

} // namespace halvane
