// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace halvane {

/// Whether a file that is missing may come back by itself, because the drive or share that it was
/// on is not attached. Waits for the disk; any thread.
bool isWhereADriveWas(const QString& path);

/// Whether drives and shares are attached in this folder, or on it. Pure.
bool isDrivePlace(const QString& folder);

} // namespace halvane
