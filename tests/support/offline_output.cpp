// SPDX-License-Identifier: MIT
#include "support/offline_output.h"

#include <QCoreApplication>

#include <algorithm>

namespace halvane::test {

void OfflineOutput::pull(std::size_t frames) {
    render(frames, true);
}

void OfflineOutput::pullHurried(std::size_t frames) {
    render(frames, false);
}

void OfflineOutput::render(std::size_t frames, bool wait) {
    if (wait && m_source && !m_running) { // a start may have been put off until the sound is there
        m_source->awaitFrames(1);
        QCoreApplication::processEvents();
    }
    while (frames > 0 && m_running) {
        const auto count = std::min(frames, blockFrames);
        const auto samples = count * std::size_t(m_format.channels);
        if (wait)
            m_source->awaitFrames(count);
        m_block.assign(samples, -7.0f); // whatever render leaves unfilled shows
        if (enterRender)
            enterRender();
        m_source->render(m_block.data(), count);
        if (leaveRender)
            leaveRender();
        m_rendered += std::int64_t(count);
        m_recording.insert(m_recording.end(), m_block.begin(), m_block.end());
        frames -= count;
    }
}

void OfflineOutput::hear(std::int64_t frames) {
    if (m_running)
        m_heard = std::min<std::int64_t>(m_heard + frames, m_rendered);
}

void OfflineOutput::vanish() {
    m_gone = true;
    m_running = false;
    m_source = nullptr;
}

void OfflineOutput::comeBack() {
    m_gone = false;
    changeConfiguration();
}

void OfflineOutput::changeConfiguration() {
    Q_EMIT configurationChanged();
}

Result<> OfflineOutput::open(const StreamFormat& format, RenderSource& source) {
    if (m_gone)
        return Failure{QStringLiteral("Connection refused")};
    if (openFailure)
        return Failure{*openFailure};
    if (failOpensOfDevice && !devices.empty() && devices.back() == failOpensOfDevice)
        return Failure{QStringLiteral("No such device")};
    ++opens;
    m_format = format;
    m_source = &source;
    m_rendered = m_heard = 0;
    return {};
}

void OfflineOutput::close() {
    m_running = false;
    m_source = nullptr;
}

Result<> OfflineOutput::start() {
    if (!isOpen())
        return Failure{QStringLiteral("No stream")};
    if (startFailure)
        return Failure{*startFailure};
    ++starts;
    m_running = true;
    return {};
}

/// What has been rendered and not been heard; how many frames.
std::size_t OfflineOutput::takeBack() {
    if (!takesBack || !m_running)
        return 0;
    if (enterRender)
        enterRender();
    const auto frames = m_source->rewind(std::size_t(m_rendered - m_heard));
    if (leaveRender)
        leaveRender();
    m_rendered -= std::int64_t(frames);
    m_recording.resize(m_recording.size() - frames * std::size_t(m_format.channels));
    return frames;
}

void OfflineOutput::revise() {
    if (const auto frames = takeBack(); frames > 0)
        pull(frames);
}

void OfflineOutput::pause() {
    const auto size = m_recording.size();
    if (const auto frames = takeBack(); frames > 0) {
        const std::int64_t heard = m_rendered;
        m_recording.resize(size);
        m_source->rest(m_recording.data() + size - frames * std::size_t(m_format.channels), frames);
        m_rendered += std::int64_t(frames);
        const auto end = std::int64_t(RenderSource::changeSeconds * m_format.sampleRate);
        m_heard = std::min(heard + end, m_rendered.load());
    }
    m_running = false;
}

void OfflineOutput::flush() {
    ++flushes;
    if (!takesBack) // otherwise only silence is queued
        m_heard = m_rendered.load();
}

Result<> OfflineOutput::setDevice(std::optional<std::uint32_t> id) {
    if (deviceFailure)
        return Failure{*deviceFailure};
    devices.push_back(id);
    return {};
}

} // namespace halvane::test
