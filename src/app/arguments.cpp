// SPDX-License-Identifier: MIT
#include "app/arguments.h"

#include "app/remote/remote_action.h"
#include "app/remote/status_report.h"
#include "platform/journal_log.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const QCommandLineOption help({u"h"_s, u"help"_s}, u"List the options and end."_s);
const QCommandLineOption version({u"v"_s, u"version"_s}, u"Print the version and end."_s);
const QCommandLineOption action(u"action"_s,
                                u"Ask the running player, started if need be, for one of the "
                                "actions below. Can be given several times."_s,
                                u"ACTION"_s);
const QCommandLineOption status(u"status"_s,
                                u"Print what the running player plays and end: as text (the "
                                "default), as json, or in a format such as "
                                "'{artist} - {title}'."_s,
                                u"FORMAT"_s);
const QCommandLineOption screenshots(u"screenshots"_s,
                                     u"Save a picture of every window to a folder and end."_s,
                                     u"DIR"_s);
const QCommandLineOption
    level(u"log"_s, u"Log from this level on: debug, info (the default), warning or error."_s,
          u"LEVEL"_s, u"info"_s);

Arguments complaint(const QString& text) {
    return {.task = Arguments::Task::complain,
            .text = u"halvane: %1\nhalvane --help lists the options.\n"_s.arg(text),
            .screenshotsFolder = {},
            .request = {},
            .skipped = {}};
}

// What the toolkit takes for itself, with one dash or two. It gets the whole command line as well.
QStringList withoutToolkits(const QStringList& commandLine) {
    static const QStringList flags{u"reverse"_s, u"nograb"_s, u"dograb"_s};
    static const QStringList withValue{u"session"_s,
                                       u"display"_s,
                                       u"platform"_s,
                                       u"platformpluginpath"_s,
                                       u"platformtheme"_s,
                                       u"plugin"_s,
                                       u"qwindowgeometry"_s,
                                       u"geometry"_s,
                                       u"qwindowicon"_s,
                                       u"icon"_s,
                                       u"qwindowtitle"_s,
                                       u"title"_s,
                                       u"name"_s,
                                       u"fontengine"_s,
                                       u"dpi"_s};
    QStringList rest = commandLine.mid(0, 1);
    for (qsizetype word = 1; word < commandLine.size(); ++word) {
        const QString& argument = commandLine[word];
        if (argument == "--"_L1)
            return rest + commandLine.mid(word);
        const QString name = argument.startsWith("--"_L1) ? argument.mid(2)
                             : argument.startsWith(u'-')  ? argument.mid(1)
                                                          : QString();
        if (withValue.contains(name))
            ++word;
        else if (!flags.contains(name))
            rest.append(argument);
    }
    return rest;
}

// A file name that can't be decoded would be opened under another name.
bool isUndecodable(const QString& argument) {
    return argument.contains(QChar::ReplacementCharacter);
}

void addFile(Arguments& result, const QString& argument, const QString& folder) {
    const auto url = QUrl::fromUserInput(argument, folder, QUrl::AssumeLocalFile);
    if (url.isLocalFile() && !isUndecodable(argument))
        result.request.files.append(url);
    else
        result.skipped.append(argument);
}

// The parser knows the program's name only once there is an application object.
QString helpText(const QCommandLineParser& parser) {
    const auto text = parser.helpText();
    return u"Usage: halvane [options] [FILE...]"_s + text.mid(text.indexOf(u'\n'));
}

// Files that are opened are played, so they need no action that asks for that.
Arguments withActions(Arguments result, const QStringList& actions) {
    for (const auto& text : actions) {
        const auto read = readAction(text);
        if (!read)
            return complaint(read.failure().text);
        if (result.request.files.isEmpty() || !isDoneByOpening(*read))
            result.request.actions.append(text);
    }
    return result;
}

// The format may be left out, which the toolkit's parser does not know.
QStringList withStatusFormat(QStringList commandLine) {
    const auto option = u"--status"_s;
    const auto at = commandLine.indexOf(option);
    const bool hasFormat =
        at + 1 < commandLine.size() && !commandLine.value(at + 1).startsWith(u'-');
    if (at >= 0 && !hasFormat)
        commandLine[at] = option + u"=text"_s;
    return commandLine;
}

} // namespace

Arguments parsedArguments(const QStringList& commandLine, const QString& folder) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Plays a local, high-fidelity music library. The files and folders are added to it, and "
        "the first new one is played."_s);
    parser.addOptions({help, version, action, status, level, screenshots});
    parser.addPositionalArgument(u"FILE"_s, u"Audio files, folders or file:// URLs."_s,
                                 u"[FILE...]"_s);
    if (!parser.parse(withStatusFormat(withoutToolkits(commandLine))))
        return complaint(parser.errorText());

    Arguments result;
    if (parser.isSet(help) || parser.isSet(version)) {
        result.task = Arguments::Task::print;
        result.text = parser.isSet(help)
                          ? helpText(parser) + u"\nActions:\n"_s + actionHelp()
                          : u"Halvane %1\n"_s.arg(QCoreApplication::applicationVersion());
        return result;
    }
    const auto lowest = logLevel(parser.value(level));
    if (!lowest)
        return complaint(u"\"%1\" is no log level"_s.arg(parser.value(level)));
    result.logLevel = *lowest;
    if (parser.isSet(status)) {
        if (parser.isSet(action) || !parser.positionalArguments().isEmpty())
            return complaint(u"--status only asks; it goes with no action and no file"_s);
        result.task = Arguments::Task::status;
        result.text = parser.value(status);
        const auto checked = checkStatusFormat(result.text);
        return checked ? result : complaint(checked.failure().text);
    }
    if (parser.isSet(screenshots)) {
        result.task = Arguments::Task::screenshots;
        result.screenshotsFolder = QDir(folder).absoluteFilePath(parser.value(screenshots));
    }
    for (const auto& argument : parser.positionalArguments())
        addFile(result, argument, folder);
    return withActions(result, parser.values(action));
}

} // namespace halvane
