// SPDX-License-Identifier: MIT
#include "library/playback/signal_path.h"

#include "audio/graph/playback_engine.h"
#include "library/playback/play_queue.h"
#include "library/playback/transport.h"
#include "library/sound/output_devices.h"

#include <QStringList>

#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

QString kilohertz(double rate) {
    const double kHz = rate / 1000;
    return QString::asprintf(kHz == std::floor(kHz) ? "%.0f kHz" : "%.1f kHz", kHz);
}

} // namespace

QString signalPathDescription(const QueueItem& item, double fileRate, double outputRate) {
    QStringList parts;
    const auto words = item.quality.split(u' ', Qt::SkipEmptyParts);
    if (!words.isEmpty())
        parts += words.first();
    if (!item.bitDepth.isEmpty())
        parts += item.bitDepth;
    if (fileRate > 0 && outputRate > 0) {
        const QString output = kilohertz(outputRate);
        const bool resampled = std::abs(fileRate - outputRate) > 1;
        parts += resampled ? kilohertz(fileRate) + u" → "_s + output : output;
    }
    return parts.join(u" · "_s);
}

SignalPath::SignalPath(const PlayQueue& queue, const Transport& transport,
                       const AudioPlaybackEngine& engine, const OutputDevices& output,
                       QObject* parent)
    : QObject(parent)
    , m_queue(queue)
    , m_engine(engine) {
    // The rates are known once something is loaded, and change with the device.
    constexpr auto changed = &SignalPath::signalPathDescriptionChanged;
    connect(&output, &OutputDevices::outputDeviceNameChanged, this, changed);
    connect(&engine, &AudioPlaybackEngine::outputSampleRateChanged, this, changed);
    connect(&transport, &Transport::isPlayingChanged, this, changed);
    connect(&transport, &Transport::loadedFileChanged, this, changed);
    connect(&queue, &PlayQueue::currentChanged, this, changed);
    connect(&queue, &PlayQueue::currentRecordChanged, this, changed);
}

QString SignalPath::signalPathDescription() const {
    const auto item = m_queue.currentItem();
    return item ? halvane::signalPathDescription(*item, m_engine.fileSampleRate(),
                                                 m_engine.outputSampleRate())
                : QString();
}

} // namespace halvane
