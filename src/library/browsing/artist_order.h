// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/catalog.h"

namespace halvane {

/// Sorts artists by their sort names as the reader's language does. Guests stay behind those who
/// lead an album. Any thread.
void sortForReaders(std::vector<const CatalogArtist*>& artists);

} // namespace halvane
