// SPDX-License-Identifier: MIT
#include "library/undo_history.h"

#include "platform/thread_check.h"

namespace halvane {

std::optional<L10nKey> UndoHistory::undoName() const {
    return m_done.empty() ? std::nullopt : std::optional(m_done.back().name);
}

std::optional<L10nKey> UndoHistory::redoName() const {
    return m_undone.empty() ? std::nullopt : std::optional(m_undone.back().name);
}

void UndoHistory::add(Step step) {
    assertOwnThread(*this);
    m_done.push_back(std::move(step));
    if (m_done.size() > mostSteps)
        m_done.pop_front();
    m_undone.clear();
    Q_EMIT changed();
}

void UndoHistory::undo() {
    assertOwnThread(*this);
    if (m_done.empty())
        return;
    Step step = std::move(m_done.back());
    m_done.pop_back();
    step.undo();
    // What came after a step can't be done without it.
    if (step.redo)
        m_undone.push_back(std::move(step));
    else
        m_undone.clear();
    Q_EMIT changed();
}

void UndoHistory::redo() {
    assertOwnThread(*this);
    if (m_undone.empty())
        return;
    Step step = std::move(m_undone.back());
    m_undone.pop_back();
    step.redo();
    m_done.push_back(std::move(step));
    Q_EMIT changed();
}

void UndoHistory::forget(Subject subject) {
    assertOwnThread(*this);
    const auto isOfIt = [subject](const Step& step) { return step.subject == subject; };
    if (std::erase_if(m_done, isOfIt) + std::erase_if(m_undone, isOfIt) > 0)
        Q_EMIT changed();
}

} // namespace halvane
