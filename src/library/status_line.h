// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QObject>
#include <QString>

namespace halvane {

/// The one message to the user. The newest replaces the one before it and stays for four seconds.
/// Main thread.
class StatusLine : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString lastImportMessage READ text NOTIFY textChanged)
    Q_PROPERTY(bool statusIsError READ isError NOTIFY isErrorChanged)

  public:
    /// The clock must outlive this.
    explicit StatusLine(Clock& clock, QObject* parent = nullptr);

    /// Empty when there is nothing to say.
    [[nodiscard]] const QString& text() const { return m_text; }
    /// Whether the newest message is an error, also after it has gone.
    [[nodiscard]] bool isError() const { return m_isError; }

    void show(const QString& text, bool isError);

  Q_SIGNALS:
    void textChanged();
    void isErrorChanged();

  private:
    void setText(const QString& text);

    Clock& m_clock;
    QString m_text;
    bool m_isError = false;
    std::unique_ptr<Timer> m_dismissal;
};

} // namespace halvane
