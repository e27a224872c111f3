// SPDX-License-Identifier: MIT
// The program's entry point: the order in which it begins.
#include "app/arguments.h"
#include "app/folders.h"
#include "app/missing_files.h"
#include "app/program.h"
#include "app/remote/status_report.h"
#include "app/second_start.h"
#include "app/windows/renderer_choice.h"
#include "platform/journal_log.h"
#include "platform/log.h"
#include "views/view_module.h"

#include <QDir>
#include <QGuiApplication>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

constexpr int usageError = 2;

void print(FILE* stream, const QString& text) {
    std::fputs(text.toLocal8Bit().constData(), stream);
}

// Whether that leaves nothing to do: all files that the program was given are not there.
bool complainedOfMissing(const StartRequest& request) {
    const QStringList missing = missingFiles(request.files);
    for (const QString& path : missing)
        print(stderr, u"halvane: no such file or folder: %1\n"_s.arg(path));
    return !missing.isEmpty() && missing.size() == request.files.size() &&
           request.actions.isEmpty();
}

// What can be done without a display; none when the program is to go on.
std::optional<int> doneEarly(const Arguments& arguments) {
    switch (arguments.task) {
    case Arguments::Task::print:
        print(stdout, arguments.text);
        return EXIT_SUCCESS;
    case Arguments::Task::complain:
        print(stderr, arguments.text);
        return usageError;
    case Arguments::Task::status:
        print(stdout, statusReport(runningPlayer(), arguments.text));
        return EXIT_SUCCESS;
    case Arguments::Task::screenshots:
        return {};
    case Arguments::Task::play:
        break;
    }
    if (complainedOfMissing(arguments.request))
        return EXIT_FAILURE;
    return leftToAnother(arguments.request) ? std::optional(EXIT_SUCCESS) : std::nullopt;
}

QStringList commandLine(int argc, char** argv) {
    QStringList words;
    std::transform(argv, argv + argc, std::back_inserter(words),
                   [](const char* word) { return QString::fromLocal8Bit(word); });
    return words;
}

bool hasDisplay() {
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

int run(const Arguments& arguments, int argc, char** argv) {
    QGuiApplication::setDesktopFileName(u"org.halvane.Halvane"_s);
    QGuiApplication application(argc, argv);
    chooseRenderer();
    const auto views = [](QQmlEngine& engine, LibraryViewModel& library) {
        return std::make_shared<views::ViewModule>(engine, library);
    };
    Program program(arguments, views::ViewModule::root(), views);
    return program.run();
}

} // namespace

// There is one application object in a run, and none before it is clear that a window will show:
// the end of any takes the views out of every screen reader's sight, for good.
int main(int argc, char** argv) {
    mendFolderVariables();
    QThread::currentThread(); // the first thread that the toolkit meets is its main thread
    QCoreApplication::setApplicationName(u"Halvane"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(HALVANE_VERSION));
    auto arguments = parsedArguments(commandLine(argc, argv), QDir::currentPath());
    arguments.request.activationToken =
        qEnvironmentVariable("XDG_ACTIVATION_TOKEN", qEnvironmentVariable("DESKTOP_STARTUP_ID"));
    installLog(arguments.logLevel);
    for (const auto& skipped : arguments.skipped)
        qCWarning(libraryLog,
                  "can't be opened: %s: not a file of this machine, or its name is not valid UTF-8",
                  qUtf8Printable(skipped));
    if (const auto result = doneEarly(arguments))
        return *result;
    if (!hasDisplay()) {
        print(stderr, u"halvane: no display: start it in a desktop session\n"_s);
        return EXIT_FAILURE;
    }
    const int result = run(arguments, argc, argv);
    // A reader that a disk holds up is left behind, and must not meet libraries that are being
    // unloaded.
    std::fflush(nullptr);
    std::_Exit(result);
}
