// SPDX-License-Identifier: MIT
#pragma once

#include "model/file_url.h"

#include <QHash>
#include <QSet>

#include <stop_token>
#include <vector>

namespace halvane {

/// The files that are known under another path: a link leads to them, or to a folder above them.
/// Gives the known path by the one in `files`, both standardized. Only files of one name are
/// compared, so that few are looked at. Those of a disk that does not answer count as different.
/// Any thread but the main one.
QHash<QString, QString> knownTwins(const std::vector<FileUrl>& files, const QSet<QString>& known,
                                   const std::stop_token& stop);

} // namespace halvane
