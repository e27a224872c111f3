// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>

namespace halvane::fuzz {

/// Puts the input where the readers look for it: a file of the extension that the program was built
/// for, in a memory-backed folder of this process. The same path each time.
QString writeScratchFile(const std::uint8_t* data, std::size_t size);

/// The folder of that file.
QString scratchFolder();

} // namespace halvane::fuzz
