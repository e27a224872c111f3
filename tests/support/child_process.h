// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>

namespace halvane::test {

/// A program that a test runs beside itself. It is ended with the object, and by the kernel should
/// the test itself be ended.
class ChildProcess {
  public:
    /// Starts the program; what it writes to both its outputs goes to the file.
    ChildProcess(const QString& program, const QStringList& arguments,
                 const QProcessEnvironment& environment, const QString& outputFile,
                 const QString& errorFile = {});
    ~ChildProcess();

    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] qint64 pid() const { return m_process.processId(); }
    /// Ends it at once, as a crash would, and waits until it is gone.
    void kill();
    /// Asks it to end and waits until it is gone.
    void terminate();
    /// Stops it where it is, as a program that hangs; it still holds its sockets.
    void freeze();
    void thaw();

  private:
    QProcess m_process;
};

/// Runs the event loop until the condition holds; false when it does not within the time.
bool waitFor(const std::function<bool()>& condition, int milliseconds = 30'000);

} // namespace halvane::test
