// SPDX-License-Identifier: MIT
#include "platform/sound/silent_output.h"

namespace halvane {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {
constexpr auto blockTime = 100ms;
}

Result<> SilentOutput::open(const StreamFormat& format, RenderSource& source) {
    close();
    m_source = &source;
    m_blockFrames = std::size_t(format.sampleRate) * std::size_t(blockTime.count()) / 1000;
    m_block.resize(m_blockFrames * std::size_t(format.channels));
    m_heard.reset(format.sampleRate);
    return {};
}

void SilentOutput::close() {
    pause();
    m_source = nullptr;
}

Result<> SilentOutput::start() {
    if (!isOpen())
        return Failure{u"no stream is open"_s};
    if (isRunning())
        return {};
    const double now = m_clock.now();
    m_heard.run(double(m_heard.heard(now)), now);
    m_timer = m_clock.every(blockTime, [this] { pull(); });
    pull();
    return {};
}

void SilentOutput::pause() {
    if (!isRunning())
        return;
    m_timer.reset();
    m_heard.hold(m_clock.now());
}

void SilentOutput::flush() {
    m_heard.skipToRendered();
    const double now = m_clock.now();
    if (isRunning())
        m_heard.run(double(m_heard.heard(now)), now);
}

/// Keeps one block ahead of what has been heard. A late timer makes up for the time it has missed,
/// but a machine that slept does not play what it slept through.
void SilentOutput::pull() {
    constexpr int mostBlocks = 10;
    const double now = m_clock.now();
    for (int i = 0; i < mostBlocks; ++i) {
        if (m_heard.rendered() - m_heard.heard(now) >= std::int64_t(m_blockFrames))
            return;
        m_source->render(m_block.data(), m_blockFrames);
        m_heard.addRendered(std::int64_t(m_blockFrames));
    }
    m_heard.run(double(m_heard.heard(now)), now);
}

Result<> SilentOutput::setDevice(std::optional<std::uint32_t> id) {
    if (id)
        return Failure{u"there is no sound server"_s};
    return {};
}

} // namespace halvane
