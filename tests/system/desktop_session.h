// SPDX-License-Identifier: MIT
#pragma once

#include "support/private_bus.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace halvane::test {

/// A desktop of the test's own: a display, a session bus and home folders, and no sound server.
class DesktopSession {
  public:
    explicit DesktopSession(const QString& screen = QStringLiteral("1600x1000"));

    PrivateBus bus;
    QTemporaryDir home;
    QProcessEnvironment environment;

    /// What a program printed, and how it ended.
    struct Outcome {
        int exitCode = -1; ///< -1 also when it did not end by itself
        QString output;
        QString errors;
        qint64 milliseconds = 0;
    };
    Outcome run(const QString& program, const QStringList& arguments, int milliseconds = 20'000);
    /// Runs a program beside the test and keeps what it prints.
    class Listener;
    std::unique_ptr<Listener> listen(const QString& program, const QStringList& arguments);
    /// What the program under test has logged.
    [[nodiscard]] QString log() const;
    /// An audio file of this many seconds, tagged with the title and a cover, in a folder that is
    /// made if need be; its path.
    QString makeTrack(const QString& name, int seconds, const QString& title,
                      const QString& album = QStringLiteral("Album"));

  private:
    std::unique_ptr<ChildProcess> m_display;
};

class DesktopSession::Listener {
  public:
    Listener(const QString& program, const QStringList& arguments,
             const QProcessEnvironment& environment, const QString& outputFile)
        : m_outputFile(outputFile)
        , m_process(program, arguments, environment, outputFile) {}

    /// How often it has printed this so far.
    [[nodiscard]] qsizetype count(const QString& text) const;

  private:
    QString m_outputFile;
    ChildProcess m_process;
};

/// The program, started on such a desktop.
class RunningProgram {
  public:
    RunningProgram(DesktopSession& session, const QStringList& arguments = {});
    ~RunningProgram();

    /// Waits until it answers to all that a desktop asks of it; not on a session without a bus.
    bool isReady();
    [[nodiscard]] qint64 processId() const { return m_process.processId(); }
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }
    void terminate() { m_process.terminate(); }
    void signal(int number);
    /// How it ended, once it has; none when it does not.
    std::optional<int> exitCode();
    /// What a media client says, without the line's end.
    QString ask(const QStringList& playerctlArguments);
    /// Asks until the answer is this one.
    bool answers(const QStringList& playerctlArguments, const QString& expected);

  private:
    DesktopSession& m_session;
    QProcess m_process;
};

} // namespace halvane::test
