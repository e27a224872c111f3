// SPDX-License-Identifier: MIT
#include "library/status_line.h"

#include "platform/thread_check.h"

using namespace std::chrono_literals;

namespace halvane {

StatusLine::StatusLine(Clock& clock, QObject* parent)
    : QObject(parent)
    , m_clock(clock) {
}

void StatusLine::show(const QString& text, bool isError) {
    assertOwnThread(*this);
    if (m_isError != isError) {
        m_isError = isError;
        Q_EMIT isErrorChanged();
    }
    setText(text);
    m_dismissal = m_clock.after(4s, [this] { setText({}); });
}

void StatusLine::setText(const QString& text) {
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();
}

} // namespace halvane
