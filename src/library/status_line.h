// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QObject>
#include <QString>

namespace halvane {

/// The one message to the user. The newest replaces the one before it and stays for four seconds,
/// or for eight if it offers to take back what it tells of. Main thread.
class StatusLine : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString lastImportMessage READ text NOTIFY textChanged)
    Q_PROPERTY(bool statusIsError READ isError NOTIFY isErrorChanged)
    Q_PROPERTY(bool offersUndo READ offersUndo NOTIFY offersUndoChanged)
    Q_PROPERTY(bool isHeld WRITE setHeld READ isHeld NOTIFY isHeldChanged)

  public:
    /// The clock must outlive this.
    explicit StatusLine(Clock& clock, QObject* parent = nullptr);

    /// Empty when there is nothing to say.
    [[nodiscard]] const QString& text() const { return m_text; }
    /// Whether the newest message is an error, also after it has gone.
    [[nodiscard]] bool isError() const { return m_isError; }

    /// What the message tells of can be taken back, as the newest step of the history.
    [[nodiscard]] bool offersUndo() const { return m_offersUndo; }

    /// The pointer is on the message, which stays for as long and its whole time after that.
    [[nodiscard]] bool isHeld() const { return m_isHeld; }
    void setHeld(bool held);

    void show(const QString& text, bool isError);
    void showWithUndo(const QString& text);
    /// The history has another newest step.
    void withdrawUndo();
    /// Says this too: beneath an error that is still shown, which it must not hide, and otherwise
    /// in the place of the message before.
    void add(const QString& text);

  Q_SIGNALS:
    void textChanged();
    void isErrorChanged();
    void offersUndoChanged();
    void isHeldChanged();

  private:
    void scheduleDismissal();
    void put(const QString& text, bool isError, bool offersUndo);
    void setText(const QString& text);

    Clock& m_clock;
    QString m_text;
    bool m_isError = false;
    bool m_offersUndo = false;
    bool m_isHeld = false;
    std::unique_ptr<Timer> m_dismissal;
};

} // namespace halvane
