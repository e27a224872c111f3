// SPDX-License-Identifier: MIT
// Where the sound goes, as the views see it.
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "library/playback/signal_path.h"

#include <algorithm>

namespace halvane {

void LibraryViewModel::forwardOutput() {
    using Self = LibraryViewModel;
    const OutputDevices* output = &m_concerns->output;
    connect(output, &OutputDevices::outputDeviceNameChanged, this, &Self::outputDeviceNameChanged);
    connect(output, &OutputDevices::selectedOutputDeviceNameChanged, this,
            &Self::selectedOutputDeviceNameChanged);
    // The rates are known once something is loaded, and change with the device.
    connect(output, &OutputDevices::outputDeviceNameChanged, this,
            &Self::signalPathDescriptionChanged);
    connect(&m_concerns->engine, &AudioPlaybackEngine::outputSampleRateChanged, this,
            &Self::signalPathDescriptionChanged);
    connect(&m_concerns->transport, &Transport::isPlayingChanged, this,
            &Self::signalPathDescriptionChanged);
    connect(&m_concerns->transport, &Transport::loadedFileChanged, this,
            &Self::signalPathDescriptionChanged);
    for (const auto changed : {&PlayQueue::currentChanged, &PlayQueue::currentRecordChanged})
        connect(&m_concerns->queue, changed, this, &Self::signalPathDescriptionChanged);
}

QString LibraryViewModel::outputDeviceName() const {
    return m_concerns->output.outputDeviceName();
}
QAbstractListModel* LibraryViewModel::availableOutputDevices() {
    return &m_concerns->outputDeviceList;
}
QString LibraryViewModel::selectedOutputDeviceName() const {
    return m_concerns->output.selectedOutputDeviceName().value_or(QString());
}

QString LibraryViewModel::signalPathDescription() const {
    const auto item = m_concerns->queue.currentItem();
    return item ? halvane::signalPathDescription(*item, m_concerns->engine.fileSampleRate(),
                                                 m_concerns->engine.outputSampleRate())
                : QString();
}

void LibraryViewModel::selectOutputDevice(quint32 id) {
    const auto& devices = m_concerns->output.availableOutputDevices();
    const auto device =
        std::find_if(devices.cbegin(), devices.cend(),
                     [&](const AudioOutput::OutputDevice& other) { return other.id == id; });
    if (device != devices.cend())
        m_concerns->output.selectOutputDevice(*device);
}

void LibraryViewModel::selectSystemDefaultOutput() {
    m_concerns->output.selectOutputDevice(std::nullopt);
}

} // namespace halvane
