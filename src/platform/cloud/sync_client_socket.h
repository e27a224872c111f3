// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

namespace halvane {

/// Asks the sync clients that listen in `runtimeFolder` (one socket a client, "*/socket") to
/// download files, each the client whose folder holds it. Speaks the clients' line protocol:
/// "COMMAND:argument\n" in UTF-8. A client that does not answer within `patience` is left alone.
/// Blocks: for a worker thread. Returns how many files were asked for.
int requestDownloads(const QString& runtimeFolder, const QStringList& files,
                     std::chrono::milliseconds patience);

} // namespace halvane
