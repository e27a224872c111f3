// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace halvane {

/// A length or position as every list and clock shows it: 3:07, or 1:02:05 from one hour on. The
/// seconds are finite and cut to whole ones. Any thread.
QString formatDuration(double seconds);

} // namespace halvane
