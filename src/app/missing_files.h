// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

namespace halvane {

/// The paths of the local files and folders that are not there. One on a disk that does not answer
/// within a second counts as there. Any thread; it needs no application object.
QStringList missingFiles(const QList<QUrl>& files);

} // namespace halvane
