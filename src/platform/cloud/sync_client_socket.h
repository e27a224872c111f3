// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

namespace halvane {

/// Asks the sync clients that listen in `runtimeFolder` (one socket a client, "*/socket") to
/// download files. Each file is asked of the client whose folder holds it. Speaks the clients' line
/// protocol: "COMMAND:argument\n" in UTF-8. A client that does not answer within `patience` is left
/// alone. Returns how many files were asked for. Blocks, so it belongs on a worker.
int requestDownloads(const QString& runtimeFolder, const QStringList& files,
                     std::chrono::milliseconds patience);

} // namespace halvane
