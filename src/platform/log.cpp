// SPDX-License-Identifier: MIT
#include "platform/log.h"

namespace halvane {

Q_LOGGING_CATEGORY(libraryLog, "library", QtInfoMsg)

} // namespace halvane
