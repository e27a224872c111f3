// SPDX-License-Identifier: MIT
// The lists that follow from rules. Pure; any thread.
#pragma once

#include "library/catalog/catalog_search.h"
#include "model/live_list.h"

namespace halvane {

/// Whether an item of the sidebar is such a list.
bool isLiveList(SidebarItem item);

/// The rule of a list that every library has: of what is added, played or rated.
LiveList standardLiveList(SidebarItem item);

/// The rows of a list in its order. Of equal ones the first of the library comes first. `said` is
/// asked for what LiveOrder and the terms of a search name.
std::vector<quint32> rowsOfLiveList(const LiveList& list, const Catalog& catalog,
                                    const NumbersOf& said, const QDateTime& now);

} // namespace halvane
