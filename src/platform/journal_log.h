// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace halvane {

/// The level of a word: "debug", "info", "warning" or "error"; none for any other.
std::optional<QtMsgType> logLevel(const QString& word);

/// Sends the program's log, from this level on, to the journal where there is one and otherwise, or
/// when it is looked at in a terminal, to standard error. A message that ends the program while
/// it starts (the toolkit's, when there is no display) is printed, with exit code 1. Once, at
/// start.
void installLog(QtMsgType lowest);

} // namespace halvane
