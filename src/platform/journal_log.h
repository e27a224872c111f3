// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace halvane {

/// The level of a word: "debug", "info", "warning" or "error"; none for any other.
std::optional<QtMsgType> logLevel(const QString& word);

/// Sends the program's log, from this level on, to the journal. Without a journal, or when standard
/// error is a terminal, the log goes to standard error. A message that ends the program while it
/// starts, such as the toolkit's without a display, is printed, and the exit code is 1. Called
/// once, at start.
void installLog(QtMsgType lowest);

} // namespace halvane
