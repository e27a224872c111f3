// SPDX-License-Identifier: MIT
#include "support/child_process.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <csignal>
#include <sys/prctl.h>

namespace halvane::test {

ChildProcess::ChildProcess(const QString& program, const QStringList& arguments,
                           const QProcessEnvironment& environment, const QString& outputFile,
                           const QString& errorFile) {
    m_process.setProcessEnvironment(environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(outputFile);
    if (errorFile.isEmpty())
        m_process.setProcessChannelMode(QProcess::MergedChannels);
    else
        m_process.setStandardErrorFile(errorFile);
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(program, arguments);
    m_process.waitForStarted();
}

ChildProcess::~ChildProcess() {
    kill();
}

bool ChildProcess::isRunning() const {
    return m_process.state() == QProcess::Running;
}

void ChildProcess::kill() {
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void ChildProcess::terminate() {
    if (!isRunning())
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5'000))
        kill();
}

void ChildProcess::freeze() {
    ::kill(static_cast<pid_t>(pid()), SIGSTOP);
}

void ChildProcess::thaw() {
    ::kill(static_cast<pid_t>(pid()), SIGCONT);
}

bool waitFor(const std::function<bool()>& condition, int milliseconds) {
    QElapsedTimer elapsed;
    elapsed.start();
    // Wakes the loop, so that a condition that no event announces is looked at again.
    QTimer tick;
    tick.start(2);
    while (!condition()) {
        if (elapsed.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace halvane::test
