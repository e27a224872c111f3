// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace halvane {

/// The program's one log, category "library". Goes to the journal where there is one, otherwise to
/// standard error. Any thread but the audio thread.
Q_DECLARE_LOGGING_CATEGORY(libraryLog)

} // namespace halvane
