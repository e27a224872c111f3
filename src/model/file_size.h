// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace halvane {

/// "8.4 MB": decimal units, one decimal from megabytes on.
QString byteCountText(qint64 bytes);

} // namespace halvane
