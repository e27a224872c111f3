// SPDX-License-Identifier: MIT
// The lists that follow from what is added, played and rated. Pure; any thread.
#pragma once

#include "library/catalog/catalog_search.h"
#include "model/enums.h"

namespace halvane {

/// Whether an item of the sidebar is such a list.
bool isLiveList(SidebarItem item);

/// The rows of such a list, in its order, of the number by which it goes: the date on which a track
/// was added or last played, its plays, its stars. What has no number, or too few stars, is not in
/// it. Of equal ones the first of the library comes first.
std::vector<quint32> rowsOfLiveList(SidebarItem list, std::vector<RowNumber> numbers);

/// When each row was added, in whole seconds since 2001-01-01 UTC.
std::vector<RowNumber> datesAdded(const TrackRows& rows);

} // namespace halvane
