// SPDX-License-Identifier: MIT
#include "system/desktop_session.h"

#include <QDBusConnectionInterface>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <stdexcept>
#include <sys/prctl.h>

namespace halvane::test {

using namespace Qt::StringLiterals;

namespace {

QString contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

DesktopSession::DesktopSession(const QString& screen)
    : environment(QProcessEnvironment::systemEnvironment()) {
    const auto number = home.filePath(u"display"_s);
    m_display = std::make_unique<ChildProcess>(
        u"sh"_s,
        QStringList{u"-c"_s,
                    u"exec Xvfb -displayfd 3 -screen 0 %1x24 -nolisten tcp -noreset 3>%2"_s.arg(
                        screen, number)},
        environment, home.filePath(u"display.log"_s));
    QString display;
    const bool ready = waitFor([&] {
        QFile file(number);
        display = file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
        return display.endsWith(u'\n');
    });
    if (!ready)
        throw std::runtime_error("the private display does not start");
    environment.insert(u"DISPLAY"_s, u':' + display.trimmed());
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"LIBGL_ALWAYS_SOFTWARE"_s, u"1"_s);
    environment.insert(u"PULSE_SERVER"_s, u"unix:"_s + home.filePath(u"no-sound-server"_s));
    environment.remove(u"WAYLAND_DISPLAY"_s);
    for (const auto& [variable, folder] :
         {std::pair(u"XDG_CONFIG_HOME"_s, u"config"_s), std::pair(u"XDG_DATA_HOME"_s, u"data"_s),
          std::pair(u"XDG_STATE_HOME"_s, u"state"_s), std::pair(u"XDG_CACHE_HOME"_s, u"cache"_s),
          std::pair(u"XDG_RUNTIME_DIR"_s, u"runtime"_s)}) {
        QDir(home.path()).mkdir(folder);
        environment.insert(variable, home.filePath(folder));
    }
    QFile::setPermissions(home.filePath(u"runtime"_s),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

DesktopSession::Outcome DesktopSession::run(const QString& program, const QStringList& arguments,
                                            int milliseconds) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(home.path());
    QElapsedTimer since;
    since.start();
    process.start(program, arguments);
    const bool ended =
        waitFor([&] { return process.state() == QProcess::NotRunning; }, milliseconds);
    Outcome outcome;
    outcome.milliseconds = since.elapsed();
    if (!ended) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        outcome.exitCode = process.exitCode();
    }
    outcome.output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

std::unique_ptr<DesktopSession::Listener> DesktopSession::listen(const QString& program,
                                                                 const QStringList& arguments) {
    return std::make_unique<Listener>(program, arguments, environment,
                                      home.filePath(program + u".out"_s));
}

qsizetype DesktopSession::Listener::count(const QString& text) const {
    return contentsOf(m_outputFile).count(text);
}

QString DesktopSession::log() const {
    return contentsOf(home.filePath(u"halvane.log"_s));
}

QString DesktopSession::makeTrack(const QString& name, int seconds, const QString& title,
                                  const QString& album) {
    const auto path = home.filePath(name);
    QDir().mkpath(QFileInfo(path).path());
    const auto outcome = run(u"ffmpeg"_s, {u"-v"_s,
                                           u"error"_s,
                                           u"-f"_s,
                                           u"lavfi"_s,
                                           u"-i"_s,
                                           u"sine=frequency=440:duration=%1"_s.arg(seconds),
                                           u"-f"_s,
                                           u"lavfi"_s,
                                           u"-i"_s,
                                           u"color=red:size=64x64:rate=1:duration=1"_s,
                                           u"-c:v"_s,
                                           u"png"_s,
                                           u"-disposition:v"_s,
                                           u"attached_pic"_s,
                                           u"-metadata"_s,
                                           u"title="_s + title,
                                           u"-metadata"_s,
                                           u"artist=Artist"_s,
                                           u"-metadata"_s,
                                           u"album="_s + album,
                                           path});
    if (outcome.exitCode != 0)
        throw std::runtime_error(outcome.errors.toStdString());
    return path;
}

RunningProgram::RunningProgram(DesktopSession& session, const QStringList& arguments)
    : m_session(session) {
    m_process.setProcessEnvironment(session.environment);
    m_process.setWorkingDirectory(session.home.path());
    m_process.setStandardErrorFile(session.home.filePath(u"halvane.log"_s), QIODevice::Append);
    m_process.setChildProcessModifier([] {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::signal(SIGINT, SIG_DFL); // a shell's background job ignores it
    });
    m_process.start(QStringLiteral(HALVANE_PROGRAM), arguments);
}

bool RunningProgram::isReady() {
    auto bus = m_session.bus.connect();
    // It takes its own name last, when it answers to everything else.
    return waitFor(
        [&] { return bus.interface()->isServiceRegistered(u"org.halvane.Halvane"_s).value(); },
        30'000);
}

RunningProgram::~RunningProgram() {
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void RunningProgram::signal(int number) {
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

std::optional<int> RunningProgram::exitCode() {
    if (!waitFor([this] { return !isRunning(); }) || m_process.exitStatus() != QProcess::NormalExit)
        return {};
    return m_process.exitCode();
}

QString RunningProgram::ask(const QStringList& playerctlArguments) {
    return m_session.run(u"playerctl"_s, QStringList{u"--player=halvane"_s} + playerctlArguments)
        .output.trimmed();
}

bool RunningProgram::answers(const QStringList& playerctlArguments, const QString& expected) {
    return waitFor([&] { return ask(playerctlArguments) == expected; });
}

} // namespace halvane::test
