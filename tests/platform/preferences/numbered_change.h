// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"

namespace halvane::test {

/// Makes one change to preferences that its number alone decides: of every kind, on few enough keys
/// and entries that they meet. Two stores that made the same changes hold the same.
void makeNumberedChange(Preferences& preferences, quint64 number);

/// Everything under the keys of those changes, as text; equal texts mean equal contents.
QString numberedContents(Preferences& preferences);

} // namespace halvane::test
