// SPDX-License-Identifier: MIT
#pragma once

#include "model/queue_item.h"

#include <QObject>
#include <QString>

namespace halvane {

/// What the playing entry's sound goes through: codec, bit depth and rate, such as "FLAC · 24-bit ·
/// 96 kHz → 48 kHz". The rates of the file and the output are both shown if they differ. Rates are
/// in Hz, 0 or less if unknown. Pure; any thread.
QString signalPathDescription(const QueueItem& item, double fileRate, double outputRate);

class AudioPlaybackEngine;
class OutputDevices;
class PlayQueue;
class Transport;

/// The description of the current entry's signal path. Main thread.
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

    [[nodiscard]] QString signalPathDescription() const;

  Q_SIGNALS:
    void signalPathDescriptionChanged();

  private:
    const PlayQueue& m_queue;
    const AudioPlaybackEngine& m_engine;
};

} // namespace halvane
