// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/single_instance.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace halvane {

/// What the program was started with.
struct Arguments {
    enum class Task {
        play,        ///< the ordinary start
        print,       ///< text for standard output, then end
        status,      ///< what the running instance plays, in the format that `text` is
        complain,    ///< text for standard error, then end: the arguments make no sense
        screenshots, ///< pictures of the windows into a folder, then end
    };

    Task task = Task::play;
    QString text;
    QString screenshotsFolder;
    QtMsgType logLevel = QtInfoMsg;
    StartRequest request;
    QStringList skipped; ///< arguments that name no file of this machine
};

/// Reads the command line. Relative paths are taken from `folder`.
/// Needs no application object.
Arguments parsedArguments(const QStringList& commandLine, const QString& folder);

} // namespace halvane
