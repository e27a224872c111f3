// SPDX-License-Identifier: MIT
#include "library/status_line.h"

#include "platform/thread_check.h"

#include <utility>

using namespace std::chrono_literals;

namespace halvane {

StatusLine::StatusLine(Clock& clock, QObject* parent)
    : QObject(parent)
    , m_clock(clock) {
}

void StatusLine::show(const QString& text, bool isError) {
    put(text, isError, false);
}

void StatusLine::showWithUndo(const QString& text) {
    put(text, false, true);
}

void StatusLine::withdrawUndo() {
    if (m_offersUndo)
        put({}, false, false);
}

void StatusLine::put(const QString& text, bool isError, bool offersUndo) {
    assertOwnThread(*this);
    const bool wasError = std::exchange(m_isError, isError);
    const bool offeredUndo = std::exchange(m_offersUndo, offersUndo);
    if (wasError != isError)
        Q_EMIT isErrorChanged();
    setText(text);
    if (offeredUndo != offersUndo)
        Q_EMIT offersUndoChanged();
    scheduleDismissal();
}

void StatusLine::setHeld(bool held) {
    if (std::exchange(m_isHeld, held) == held)
        return;
    scheduleDismissal();
    Q_EMIT isHeldChanged();
}

void StatusLine::scheduleDismissal() {
    m_dismissal =
        m_isHeld ? nullptr : m_clock.after(m_offersUndo ? 8s : 4s, [this] { setText({}); });
}

void StatusLine::add(const QString& text) {
    const bool isBeneathError = m_isError && !m_text.isEmpty();
    show(isBeneathError ? m_text + u'\n' + text : text, isBeneathError);
}

void StatusLine::setText(const QString& text) {
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();
}

} // namespace halvane
