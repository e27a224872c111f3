// SPDX-License-Identifier: MIT
#pragma once

#include "presentation/l10n.h"

#include <QObject>

#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace halvane {

/// What the user has done that can be taken back, and what of it can be done once more. A step is
/// what undoes it and what redoes it, and holds all that either needs. Steps are undone from the
/// newest on, so that each finds what it left. The oldest of very many are forgotten. Main thread.
class UndoHistory : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)

  public:
    static constexpr std::size_t mostSteps = 50;

    /// What a step has changed.
    enum class Subject { queue, library, playlists };

    using Action = std::function<void()>;

    struct Step {
        L10nKey name; ///< of the command, as a menu says it
        Subject subject;
        Action undo;
        Action redo; ///< null: it can't be done once more
    };

    using QObject::QObject;

    [[nodiscard]] bool canUndo() const { return !m_done.empty(); }
    [[nodiscard]] bool canRedo() const { return !m_undone.empty(); }
    /// The command that undo() takes back, or that redo() does once more.
    [[nodiscard]] std::optional<L10nKey> undoName() const;
    [[nodiscard]] std::optional<L10nKey> redoName() const;

    /// The user has done something.
    void add(Step step);
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// The steps of a subject have nothing left that they could change.
    void forget(Subject subject);

  Q_SIGNALS:
    void changed();

  private:
    std::deque<Step> m_done;    ///< the newest last
    std::vector<Step> m_undone; ///< the next to be done once more last
};

} // namespace halvane
