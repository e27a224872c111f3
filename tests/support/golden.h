// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <span>

namespace halvane::test {

/// Expects samples to be those kept under `name` in tests/audio/golden, within `tolerance`. On a
/// difference the new ones are left beside the old, as NAME.new.txt: look at both, and if the new
/// ones are right, let them take the old ones' place.
void expectGolden(const char* name, std::span<const float> samples, float tolerance = 1e-6f);

} // namespace halvane::test
