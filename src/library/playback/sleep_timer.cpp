// SPDX-License-Identifier: MIT
#include "library/playback/sleep_timer.h"

#include "library/playback/transport.h"
#include "library/status_line.h"
#include "library/user/language_setting.h"
#include "presentation/l10n.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

constexpr std::array usualMinutes{15, 30, 45, 60, 90};

} // namespace

SleepTimer::SleepTimer(Transport& transport, Clock& clock, StatusLine& status,
                       const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_transport(transport)
    , m_clock(clock)
    , m_status(status)
    , m_language(language) {
}

void SleepTimer::setMinutes(int minutes) {
    m_minutes = std::clamp(minutes, 0, longestMinutes);
    m_timer.reset();
    if (m_minutes > 0)
        m_timer = m_clock.after(std::chrono::minutes(m_minutes), [this] { end(); });
    m_status.show(L10n::sleepTimer(m_minutes, m_language.resolvedLanguage()), false);
    Q_EMIT minutesChanged();
}

void SleepTimer::advance() {
    const auto next =
        std::ranges::find_if(usualMinutes, [this](int usual) { return usual > m_minutes; });
    setMinutes(next == usualMinutes.end() ? 0 : *next);
}

void SleepTimer::end() {
    m_minutes = 0;
    if (m_transport.isPlaying())
        m_transport.togglePlayback();
    Q_EMIT minutesChanged();
}

} // namespace halvane
