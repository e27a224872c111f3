// SPDX-License-Identifier: MIT
#include "gallery/gallery_environment.h"

namespace halvane::test {

using namespace Qt::StringLiterals;

TimedOutput::TimedOutput() {
    m_timer.setInterval(20);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { pull(); });
}

Result<> TimedOutput::open(const StreamFormat& format, RenderSource& source) {
    close();
    m_format = format;
    m_source = &source;
    m_frames = 0;
    return {};
}

void TimedOutput::freeze() {
    m_isFrozen = true;
    m_timer.stop();
}

void TimedOutput::close() {
    pause();
    m_source = nullptr;
}

Result<> TimedOutput::start() {
    m_since.start();
    m_isRunning = true;
    if (!m_isFrozen)
        m_timer.start();
    return {};
}

void TimedOutput::pause() {
    m_isRunning = false;
    m_timer.stop();
}

void TimedOutput::pull() {
    const auto frames = static_cast<std::size_t>(m_since.restart() * m_format.sampleRate / 1000);
    m_block.resize(frames * static_cast<std::size_t>(m_format.channels));
    m_source->render(m_block.data(), frames);
    m_frames += static_cast<std::int64_t>(frames);
}

std::vector<AudioOutput::OutputDevice> ListedDevices::outputDevices() const {
    return {{1, u"Built-in Audio"_s}, {2, u"USB DAC"_s}, {3, u"HDMI / DisplayPort 3 Output"_s}};
}

std::optional<QString> ListedDevices::deviceName(std::uint32_t id) const {
    for (const auto& device : outputDevices())
        if (device.id == id)
            return device.name;
    return {};
}

} // namespace halvane::test
